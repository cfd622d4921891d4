#include "CsvLine.h"

#include <algorithm>

namespace {

QString quotedIfNeeded(const QString &field)
{
    const auto needsQuotes = [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\r') ||
               c == QLatin1Char('\n');
    };
    if (std::none_of(field.begin(), field.end(), needsQuotes))
        return field;
    QString quoted = field;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

QByteArray csvLine(const QStringList &fields)
{
    QStringList parts;
    for (const QString &field : fields)
        parts.append(quotedIfNeeded(field));
    return (parts.join(QLatin1Char(',')) + QLatin1String("\r\n")).toUtf8();
}
