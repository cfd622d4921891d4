#include "CommonOptions.h"

#include "Console.h"
#include "UsageFailure.h"

namespace {

constexpr char gExitCodes[] =
    "\nExit codes, of several files that of the worst:\n"
    "  0  each file is complete, or a live log\n"
    "  1  one is torn at its end\n"
    "  2  one is damaged\n"
    "  3  one could not be read (the others are done), or the output not be written\n"
    "  4  wrong use; nothing was done\n";

// Qt's own text, but for the first line: that has no place for a verb.
QString helpText(const QCommandLineParser &parser, const VerbHelp &help)
{
    const QString text = parser.helpText();
    return QStringLiteral("Usage: vokit-log %1\n").arg(QLatin1String(help.usage)) +
           text.mid(text.indexOf(QLatin1Char('\n')) + 1) +
           QLatin1String(help.exitCodes ? help.exitCodes : gExitCodes) + QLatin1String(help.rest);
}

} // namespace

bool parseVerb(QCommandLineParser &parser, const QStringList &arguments, const VerbHelp &help)
{
    parser.setApplicationDescription(QLatin1String(help.description));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Log files; - is the standard input."));
    // The locale is for the help: takeLocale() has taken it out of the arguments.
    parser.addOptions({
        {QStringLiteral("locale"),
         QStringLiteral("The locale of the system that wrote the files, such as de_DE: dates stand "
                        "in its short format. If not given, that of this system."),
         QStringLiteral("NAME")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")},
    });
    const QString see = QStringLiteral("; see vokit-log %1 --help").arg(arguments.first());
    if (!parser.parse(arguments)) {
        QString error = parser.errorText();
        if (error.endsWith(QLatin1Char('.')))
            error.chop(1);
        throw UsageFailure(error + see);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        writeOutput(helpText(parser, help).toUtf8());
        return false;
    }
    if (parser.positionalArguments().isEmpty())
        throw UsageFailure(QStringLiteral("no file is given") + see);
    return true;
}

QString fileOf(const QCommandLineParser &parser, const QString &option)
{
    const QStringList names = parser.values(option);
    if (names.size() > 1)
        throw UsageFailure(QStringLiteral("--%1 is given more than once").arg(option));
    QString name = names.value(0);
    if (name.isEmpty())
        throw UsageFailure(QStringLiteral("--%1 needs the name of a file").arg(option));
    if (name.contains(QChar(QChar::ReplacementCharacter)))
        throw UsageFailure(QStringLiteral("--%1 '%2': the name is not UTF-8").arg(option, name));
    return name;
}

QString choiceOf(const QCommandLineParser &parser, const QString &option, const QStringList &words)
{
    if (!parser.isSet(option))
        return words.first();
    QString word = parser.value(option);
    if (!words.contains(word)) {
        throw UsageFailure(QStringLiteral("'%1' is nothing for --%2: use %3")
                               .arg(word, option, words.join(QLatin1String(", "))));
    }
    return word;
}
