#include "Check.h"
#include "Console.h"
#include "LocaleOption.h"
#include "Recover.h"
#include "Report.h"
#include "Show.h"
#include "UsageFailure.h"

#include <QCoreApplication>

#include <algorithm>
#include <csignal>

namespace {

constexpr Verb gVerbs[] = {
    {"show", "print the entries, those of a damaged file included", &show},
    {"check", "tell how each file is", &check},
    {"recover", "write all whole entries to a new file", &recover},
    {"report", "count the entries", &report},
};

QString usage()
{
    QString text = QStringLiteral("Usage: vokit-log VERB [OPTION...] FILE...\n"
                                  "Reads audit logs, whole or damaged. Never writes to them.\n\n"
                                  "Verbs:\n");
    for (const Verb &verb : gVerbs) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QLatin1String(verb.name), -7)
                    .arg(QLatin1String(verb.summary));
    }
    return text + QStringLiteral("\n--locale NAME, such as de_DE, reads the dates of files that a "
                                 "system of another locale\nwrote. "
                                 "\"vokit-log VERB --help\" tells more. Exit codes: 0 intact, 1 "
                                 "torn at the end, 2 damaged,\n3 unusable, 4 wrong use.\n");
}

ExitCode run(const QStringList &arguments)
{
    const QString word = arguments.value(1);
    if (word == QLatin1String("--help") || word == QLatin1String("-h") ||
        word == QLatin1String("help")) {
        writeOutput(usage().toUtf8());
        return Intact;
    }
    if (word == QLatin1String("--version") || word == QLatin1String("-v")) {
        const QString version = QCoreApplication::applicationVersion();
        writeOutput(QStringLiteral("vokit-log %1\n").arg(version).toUtf8());
        return Intact;
    }
    const auto *const verb = std::find_if(std::begin(gVerbs), std::end(gVerbs), [&](const Verb &v) {
        return word == QLatin1String(v.name);
    });
    if (verb != std::end(gVerbs))
        return verb->run(arguments.mid(1));
    throw UsageFailure((word.isEmpty() ? QStringLiteral("no verb is given")
                                       : QStringLiteral("there is no verb '%1'").arg(word)) +
                       QStringLiteral("; see vokit-log --help"));
}

} // namespace

int main(int argc, char *argv[])
{
    prepareConsole();
    // Without it, the C library looks at /etc/localtime for each date: half of all time.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
    QCoreApplication::setApplicationName(QStringLiteral("vokit-log")); // begins each warning
    QCoreApplication::setApplicationVersion(QStringLiteral(VOKIT_VERSION));
    // Qt complains of texts without a place for each value, which logs have.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is no error
    const QCoreApplication application(argc, argv);
    try {
        QStringList arguments = QCoreApplication::arguments();
        takeLocale(arguments);
        return run(arguments);
    } catch (const UsageFailure &failure) {
        warn(failure.message());
        return WrongUse;
    } catch (const Failure &failure) {
        warn(failure.message());
        return Unusable;
    }
}
