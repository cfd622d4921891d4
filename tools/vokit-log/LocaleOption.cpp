#include "LocaleOption.h"

#include "UsageFailure.h"

#include <QLocale>

namespace {

// The codeset and the variant say nothing of dates.
QString withoutCodeset(const QString &name)
{
    QString plain = name.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
    return plain.replace(QLatin1Char('-'), QLatin1Char('_'));
}

// For a country that it doesn't know Qt gives another one, and for a language "C".
bool isKnown(const QString &name)
{
    const QStringList wanted = withoutCodeset(name).split(QLatin1Char('_'));
    const QStringList found = QLocale(name).name().split(QLatin1Char('_'));
    if (found.size() == 1)
        return wanted.first() == QLatin1String("C") || wanted.first() == QLatin1String("POSIX");
    return wanted.first() == found.first() && (wanted.size() == 1 || wanted.last() == found.last());
}

void use(const QString &name)
{
    if (!isKnown(name)) {
        throw UsageFailure(
            QStringLiteral("'%1' is no known locale: use one such as de_DE, or C").arg(name));
    }
    qputenv("LC_ALL", name.toUtf8());
}

} // namespace

void takeLocale(QStringList &arguments)
{
    const QString option = QStringLiteral("--locale");
    for (int i = 0; i < arguments.size() && arguments.at(i) != QLatin1String("--");) {
        const QString argument = arguments.at(i);
        if (argument == option && i + 1 == arguments.size())
            throw UsageFailure(QStringLiteral("--locale needs a name, such as de_DE"));
        if (argument == option) {
            use(arguments.at(i + 1));
            arguments.removeAt(i + 1);
        } else if (argument.startsWith(option + QLatin1Char('='))) {
            use(argument.mid(option.size() + 1));
        } else {
            ++i;
            continue;
        }
        arguments.removeAt(i);
    }
}
