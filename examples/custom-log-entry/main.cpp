#include "DoorOpenedLogEntry.h"

#include <Vokit/ActionLog>

#include <QCoreApplication>
#include <QTextStream>

// custom-log-entry FILE DOOR SECONDS: logs that a door stood open, then prints all that the log
// holds, the entries of earlier runs included.
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTextStream output(stdout);
    QTextStream errors(stderr);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = false;
    const int seconds = arguments.value(3).toInt(&isNumber);
    if (arguments.size() != 4 || !isNumber) {
        errors << "usage: custom-log-entry FILE DOOR SECONDS\n";
        return 2;
    }

    vo::ActionLog log(arguments.at(1));
    bool failed = false;
    QObject::connect(&log, &vo::ActionLog::errorFile, [&](const QString &file) {
        errors << "custom-log-entry: cannot use '" << file << "'\n";
        failed = true;
    });
    QObject::connect(&log, &vo::ActionLog::errorXml, [&](const QString &error) {
        errors << "custom-log-entry: the log was damaged and is set aside: " << error << '\n';
        failed = true;
    });
    log.setSuspended(false);
    log.log(DoorOpenedLogEntry(arguments.at(2), seconds));

    for (const vo::LogEntry *entry : log.entries()) {
        output << entry->time().toString(Qt::ISODate) << "  " << entry->action() << ": "
               << entry->description() << '\n';
    }
    return failed ? 1 : 0;
}
