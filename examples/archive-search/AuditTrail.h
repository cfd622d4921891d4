#pragma once

#include "SignedInUser.h"

#include <Vokit/ActionLog>
#include <Vokit/Settings>

#include <QSettings>
#include <QStringList>

#include <optional>

/// What reports tell of the audit log.
struct AuditReport
{
    QString file;
    QString user;
    bool suspended = false;
    std::optional<QStringList> entries; ///< a line of prose each, if asked for
    bool complete = true;               ///< false if the file could not be read to its end
};

/**
 * This program's side of the audit log: signs the user in, keeps the log's configuration in the
 * user's settings, and turns its signals into warnings. Nothing that befalls the log or the
 * settings stops a search.
 *
 * One object at a time: the log is that of the process.
 */
class AuditTrail
{
public:
    using Warn = void (*)(const QString &message);

    /// Reads the settings, then applies the options; both hold from the first entry on.
    AuditTrail(const AuditOptions &options, Warn warn);
    /// Keeps the settings.
    ~AuditTrail();
    AuditTrail(const AuditTrail &) = delete;
    AuditTrail &operator=(const AuditTrail &) = delete;

    /// Also where the file turns out to be unusable: then in the one that takes its place.
    void log(const vo::LogEntry &entry);

    AuditReport report() const;
    /// With all entries of the log, those of earlier runs included.
    AuditReport fullReport();

private:
    void listen();
    void configure(const AuditOptions &options);
    void lose(const QString &reason);

    Warn m_warn;
    SignedInUser m_user;
    QSettings m_store;
    vo::Settings m_settings;
    vo::ActionLog *m_log;
    bool m_mustKeep;     ///< the settings have been changed by an option
    bool m_lost = false; ///< the entry in hand
};
