#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// What the program under test did: all that a caller sees of it. The build names it in PROGRAM.
struct ProgramRun
{
    int exitCode = -1; ///< -1 for a crash
    QByteArray output;
    QByteArray errors;
    QJsonObject json;

    QJsonArray array(const char *key) const { return json.value(QLatin1String(key)).toArray(); }
    qint64 number(const char *key) const
    {
        return json.value(QLatin1String(key)).toVariant().toLongLong();
    }

    /// The paths of the listed matches, sorted: the order of a walk is the file system's.
    QStringList paths() const
    {
        QStringList result;
        const QJsonArray matches = array("matches");
        for (const QJsonValue &match : matches)
            result.append(match.toObject().value(QStringLiteral("path")).toString());
        result.sort();
        return result;
    }
};

/// A process that permissions bind even when root runs the tests.
class BoundProcess : public QProcess
{
protected:
    void setupChildProcess() override
    {
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    }
};

/// A home for the log and the settings of all runs that ask for none of their own. No run comes
/// near the real one.
inline QString scratchHome()
{
    static const QTemporaryDir folder;
    if (!folder.isValid())
        qFatal("no temporary folder: %s", qPrintable(folder.errorString()));
    return folder.path();
}

inline ProgramRun resultOf(QProcess &process, const QString &program, const QStringList &arguments,
                           const QByteArray &input = {}, const QString &home = scratchHome())
{
    ProgramRun run;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_STATE_HOME"), home + QStringLiteral("/state"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    run.json = QJsonDocument::fromJson(run.output).object();
    return run;
}

inline ProgramRun runProgram(const QStringList &arguments, const QByteArray &input = {},
                             const QString &home = scratchHome())
{
    BoundProcess process;
    return resultOf(process, QStringLiteral(PROGRAM), arguments, input, home);
}

/// The script finds the program in $0, and the arguments in $1 and so on.
inline ProgramRun runScript(const char *script, const QStringList &arguments,
                            const QString &home = scratchHome())
{
    BoundProcess process;
    return resultOf(process, QStringLiteral("/bin/sh"),
                    QStringList{"-c", script, PROGRAM} + arguments, {}, home);
}

/// The master side of a new terminal, and the name of the side that a program uses; -1 for none.
inline int openTerminal(QString &name)
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0)
        return -1;
    name = QString::fromLatin1(::ptsname(master));
    return master;
}

inline qint64 utc(const char *date)
{
    return QDateTime::fromString(QLatin1String(date), Qt::ISODateWithMs).toMSecsSinceEpoch();
}

inline qint64 daysAgo(double days)
{
    return QDateTime::currentMSecsSinceEpoch() - static_cast<qint64>(days * 24 * 60 * 60 * 1000);
}

inline QByteArray contentOf(const QString &file)
{
    QFile reader(file);
    return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray("(unreadable)");
}

/// A temporary folder with files of given names, sizes and dates.
class Tree
{
public:
    Tree()
    {
        if (!m_folder.isValid())
            qFatal("no temporary folder: %s", qPrintable(m_folder.errorString()));
    }
    // By "rm", since Qt doesn't find the names that aren't UTF-8.
    ~Tree() { QProcess::execute("rm", {"-rf", "--", path()}); }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    QString path(const QString &name = QString()) const { return m_folder.filePath(name); }

    /// Makes the folders above it as well. The name is in the bytes of the file system.
    void addFile(const QByteArray &name, qint64 size = 0, qint64 modifiedMilliseconds = 0) const
    {
        const QByteArray file = bytes(name);
        QDir().mkpath(path(QFileInfo(QString::fromUtf8(name)).path()));
        const int descriptor = ::open(file.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0640);
        QVERIFY2(descriptor >= 0 && ::ftruncate(descriptor, size) == 0, file.constData());
        const timespec time{modifiedMilliseconds / 1000, modifiedMilliseconds % 1000 * 1000000};
        const timespec times[] = {time, time};
        QCOMPARE(::futimens(descriptor, times), 0);
        ::close(descriptor);
    }

    void addLink(const char *target, const QByteArray &name) const
    {
        QCOMPARE(::symlink(target, bytes(name).constData()), 0);
    }

    void setMode(const QByteArray &name, mode_t mode) const
    {
        QCOMPARE(::chmod(bytes(name).constData(), mode), 0);
    }

    QByteArray bytes(const QByteArray &name) const { return path().toUtf8() + '/' + name; }

private:
    QTemporaryDir m_folder;
};
