#include "AuditTrail.h"

#include "LogTurn.h"
#include "Options.h"

#include <Vokit/ProsaLogWriter>

#include <QCoreApplication>
#include <QLocale>
#include <QTextStream>

using vo::ActionLog;
using vo::ActionLogFileException;

namespace {

QString prose(const vo::LogEntry &entry)
{
    QString line;
    QTextStream stream(&line);
    vo::ProsaLogWriter writer(stream, '|');
    entry.writeTo(writer);
    stream.flush();
    line.chop(1); // the line feed
    return line;
}

QString unusableFileText(const QString &file, int type)
{
    if (type == ActionLogFileException::eBackupFailed) {
        const QString folder = QFileInfo(file).absolutePath(); // the name changes with each second
        return QStringLiteral("cannot set the log aside in '%1'; it goes on as it is").arg(folder);
    }
    if (type == ActionLogFileException::eInvalidHeader)
        return QStringLiteral("the log '%1' is of an unknown version and goes aside").arg(file);
    const QString defaultFile = ActionLog::defaultFileInfo().absoluteFilePath();
    if (QFileInfo(file).absoluteFilePath() == defaultFile)
        return QStringLiteral("cannot open the log '%1'; nothing is logged").arg(file);
    return QStringLiteral("cannot open the log '%1'; '%2' takes its place").arg(file, defaultFile);
}

} // namespace

AuditTrail::AuditTrail(const AuditOptions &options, Warn warn)
    : m_warn(warn)
    , m_user(options)
    , m_store(QSettings::IniFormat, QSettings::UserScope, QCoreApplication::organizationName(),
              QCoreApplication::applicationName())
    , m_settings(&m_store)
    , m_log(ActionLog::getInstance())
    , m_mustKeep(options.split || !options.file.isEmpty())
{
    m_store.setFallbacksEnabled(false);
    listen();
    m_log->setUserSource(&m_user);
    m_log->setVersions(QCoreApplication::applicationVersion(), QLocale::system().name());
    // While the log is still suspended: to go where it has been all along is no entry.
    m_log->load(&m_settings);
    configure(options);
}

AuditTrail::~AuditTrail()
{
    m_log->save(&m_settings);
    m_settings.sync();
    if (m_mustKeep && m_store.status() != QSettings::NoError)
        m_warn(QStringLiteral("cannot keep the settings in '%1'").arg(m_settings.fileName()));
    ActionLog::deleteActionLog();
}

void AuditTrail::listen()
{
    QObject::connect(m_log, &ActionLog::errorFile, m_log,
                     [this](const QString &file, int type) { lose(unusableFileText(file, type)); });
    QObject::connect(
        m_log, &ActionLog::errorXml, m_log, [this](const QString &error, int line, int column) {
            const QString file = m_log->fileInfo().absoluteFilePath();
            lose(QStringLiteral("the log '%1' is damaged and goes aside: %2 (line %3, column %4)")
                     .arg(file, error, QString::number(line), QString::number(column)));
        });
    QObject::connect(m_log, &ActionLog::errorLogon, m_log, [this](const QString &user, int error) {
        lose(QStringLiteral("cannot log on as '%1' for the log (error code %2); the default file "
                            "takes its place")
                 .arg(user, QString::number(error)));
    });
}

void AuditTrail::lose(const QString &reason)
{
    m_lost = true;
    m_warn(reason);
}

void AuditTrail::configure(const AuditOptions &options)
{
    if (options.split)
        m_log->setSplitPolicy(options.split->policy,
                              options.split->size.value_or(m_log->splitSize()));
    m_log->setSuspended(options.noLog);
    if (options.file.isEmpty())
        return;
    const LogTurn turn(*m_log); // a file that is open takes note where logging goes from there
    m_log->setFileInfo(QFileInfo(options.file));
}

void AuditTrail::log(const vo::LogEntry &entry)
{
    const LogTurn turn(*m_log);
    m_lost = false;
    m_log->log(entry);
    if (m_lost)
        m_log->log(entry);
}

AuditReport AuditTrail::report() const
{
    AuditReport report;
    report.file = m_log->fileInfo().absoluteFilePath();
    report.user = m_log->userName();
    report.suspended = m_log->isSuspended();
    return report;
}

AuditReport AuditTrail::fullReport()
{
    const LogTurn turn(*m_log);
    AuditReport result = report();
    try {
        if (m_log->entries().isEmpty())
            m_log->readLog();
    } catch (const vo::ActionLogException &e) {
        m_warn(QStringLiteral("log '%1': %2").arg(result.file, e.message()));
        result.complete = false;
    }
    QStringList lines;
    for (const vo::LogEntry *entry : m_log->entries())
        lines.append(prose(*entry));
    result.entries = lines;
    return result;
}
