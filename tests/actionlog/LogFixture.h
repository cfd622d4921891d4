#pragma once

#include "TestClock.h"

#include <Vokit/ActionLog>
#include <Vokit/LogEntryOf>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace test {

/// An entry class of an application.
class Remark : public vo::LogEntryOf<Remark, 0x526D726B, vo::LogCatSystem>
{
public:
    explicit Remark(const QString &text)
        : mText(0x54657874, "text", text)
    {
        append(&mText);
    }
    static vo::LogEntry *create() { return new Remark(QString()); }
    const QString &text() const { return mText.value(); }

    static constexpr const char *sAction = "Remarked";
    static constexpr const char *sDescriptionText = "%1";

private:
    static const vo::LogEntryRegistrar sRegistrar;
    vo::TLogValue<QString> mText;
};
inline const vo::LogEntryRegistrar Remark::sRegistrar = Remark::registrar();

/**
 * A directory for the files of one test: the user's log files lie in its "state". No user is signed
 * in, and the clock stands at noon of 5 March 2026.
 *
 * Texts that it gives have "~" in place of the directory.
 */
class LogFixture
{
public:
    LogFixture()
    {
        // Another user has to get through to what is below.
        QFile::setPermissions(m_dir.path(), QFile::Permissions(QFlag(0x7755)));
        qputenv("XDG_STATE_HOME", QFile::encodeName(path("state")));
        qunsetenv("USERNAME");
        QCoreApplication::setOrganizationName("Maker");
        QCoreApplication::setApplicationName("Voco");
        TestClock::set(QDateTime(QDate(2026, 3, 5), QTime(12, 0)));
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString defaultFile() const { return path("state/Maker/Voco/Voco.vol"); }
    void makeDefaultDirectory() const { QDir().mkpath(path("state/Maker/Voco")); }

    QString withoutPath(QString text) const { return text.replace(m_dir.path(), "~"); }

    static QByteArray contents(const QString &fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    static void write(const QString &fileName, const QByteArray &bytes)
    {
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s: not written", qPrintable(fileName));
    }

    /// How a log file begins, without the ">" that the first entry brings.
    static QByteArray head(const QString &fileName)
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Entries Version=\"v0.1\" LogFile=\"" +
               fileName.toUtf8() + "\" Date=\"2026-03-05T12:00:00\"";
    }
    static QByteArray entry(const QByteArray &text)
    {
        return "<Entry ID=\"Rmrk\" Time=\"5 Mar 2026 12:00:00\" Text=\"" + text + "\"/>";
    }

    /// A log file in short: "Log(~/F.vol): one, two, ALog" with the texts of remarks and the ids of
    /// other entries; "Open(...)" if its root tag has no ">". What is no log is given as it is.
    QString summary(const QByteArray &bytes) const
    {
        static const QRegularExpression start(
            "^<\\?xml version=\"1.0\" encoding=\"UTF-8\"\\?><Entries Version=\"v0.1\" "
            "LogFile=\"([^\"]*)\" Date=\"[^\"]*\"(>?)");
        static const QRegularExpression element("\\G<Entry ID=\"(....)\" Time=\"[^\"]*\"(?: "
                                                "User=\"[^\"]*\")?(?: Text=\"([^\"]*)\")?[^<>]*/>");
        const QString text = withoutPath(QString::fromUtf8(bytes));
        const QRegularExpressionMatch head = start.match(text);
        if (!head.hasMatch())
            return text;
        int position = head.capturedEnd();
        QStringList entries;
        for (;;) {
            const QRegularExpressionMatch match = element.match(text, position);
            if (!match.hasMatch())
                break;
            entries << (match.capturedLength(2) ? match.captured(2) : match.captured(1));
            position = match.capturedEnd();
        }
        const QString rest = text.mid(position);
        return (head.capturedLength(2) ? "Log(" : "Open(") + head.captured(1) + ")" +
               (entries.isEmpty() ? "" : ": " + entries.join(", ")) +
               (rest.isEmpty() ? "" : " + " + rest);
    }

    /// Every file below the directory by name: "F.vol = " and its summary.
    QStringList disk() const
    {
        QStringList files;
        QDirIterator it(m_dir.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            files << withoutPath(file).mid(2) + " = " + summary(contents(file));
        }
        files.sort();
        return files;
    }

private:
    QTemporaryDir m_dir;
};

/// The entries of a log in short, as in LogFixture::summary().
inline QStringList entries(const vo::ActionLog &log)
{
    QStringList texts;
    for (const vo::LogEntry *entry : log.entries()) {
        const auto *remark = dynamic_cast<const Remark *>(entry);
        texts << (remark && !remark->text().isEmpty() ? remark->text() : entry->id().toString());
    }
    return texts;
}

/// Every signal of a log in order, with its arguments.
class SignalRecord
{
public:
    SignalRecord(vo::ActionLog &log, const LogFixture &fixture)
    {
        using vo::ActionLog;
        const auto rows = [this](const char *name) {
            return [this, name](int first, int last) {
                m_calls << QString("%1(%2, %3)").arg(name).arg(first).arg(last);
            };
        };
        QObject::connect(&log, &ActionLog::addingLogEntries, rows("adding"));
        QObject::connect(&log, &ActionLog::logEntriesAdded, rows("added"));
        QObject::connect(&log, &ActionLog::removingLogEntries, rows("removing"));
        QObject::connect(&log, &ActionLog::logEntriesRemoved, rows("removed"));
        QObject::connect(&log, &ActionLog::errorLogon, [this](const QString &user, int error) {
            m_calls << QString("errorLogon(%1, %2)").arg(user).arg(error);
        });
        QObject::connect(
            &log, &ActionLog::errorFile, [this, &fixture](const QString &file, int type) {
                m_calls << QString("errorFile(%1, %2)").arg(fixture.withoutPath(file)).arg(type);
            });
        QObject::connect(
            &log, &ActionLog::errorXml, [this](const QString &error, int line, int column) {
                m_calls << QString("errorXml(%1, %2, %3)").arg(error).arg(line).arg(column);
            });
        QObject::connect(&log, &ActionLog::switchedFileHandle, [this](const QString &name) {
            m_calls << QString("switched(%1)").arg(name);
        });
    }

    /// Those since the last time.
    QStringList take()
    {
        QStringList calls;
        calls.swap(m_calls);
        return calls;
    }

private:
    QStringList m_calls;
};

/// Runs a check in a process of a user who isn't root, and gives what it returns: empty for no
/// complaint.
inline QString asNobody(const std::function<QString()> &check)
{
    constexpr unsigned nobody = 65534;
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child < 0)
        return "no process";
    if (child == 0) {
        QString complaint = "can't change the user";
        if (getuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0))
            complaint = check();
        const QByteArray bytes = complaint.toUtf8();
        const bool told = ::write(ends[1], bytes.constData(), size_t(bytes.size())) >= 0;
        _exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    QByteArray text;
    char buffer[4096];
    for (ssize_t n; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, int(n));
    ::close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? QString::fromUtf8(text)
                                                         : "the process broke down";
}

} // namespace test
