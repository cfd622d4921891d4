#include <Vokit/ActionLog>

#include "actionlog/LocalClock_p.h"

#include <Vokit/XMLLogWriter>

#include <QCoreApplication>
#include <QLocale>
#include <QMutexLocker>
#include <QTextStream>

namespace vo {

namespace {

// Digits are 0 to 9 in every locale: these names are looked for by scripts.
QString stamp(const QDateTime &time, const char *format)
{
    return QLocale::c().toString(time, QLatin1String(format));
}

QString asideName(const QFileInfo &file, const char *suffix)
{
    return file.baseName() + QLatin1Char(' ') +
           stamp(QDateTime::currentDateTime(), "yyyy-MM-dd hh-mm-ss") + QLatin1String(suffix);
}

} // namespace

ActionLog::ActionLog(const QString &fileName)
    : mMutex(std::make_unique<QMutex>(QMutex::Recursive))
{
    mFile.setFileName(fileName);
    mFileInfo.setFile(mFile);
    mCustomFileInfo.setFile(mFile);
}

ActionLog::~ActionLog()
{
    mWriter.reset();
    mStream.reset();
    mMutex.reset();
    close();
    qDeleteAll(mEntries);
}

void ActionLog::setVersions(const QString &application, const QString &language)
{
    mAppVersion = application;
    mLngVersion = language;
}

void ActionLog::incompatibleHeader() {}

void ActionLog::log(const LogEntry &entry)
{
    if (mSuspended)
        return;
    const QMutexLocker locker(mMutex.get());
    try {
        writeEntry(entry);
    } catch (const ActionLogFileException &e) {
        handle(e);
    } catch (const ActionLogXmlException &e) {
        handle(e);
    } catch (const ActionLogImpersonateException &e) {
        handle(e);
    }
}

void ActionLog::writeEntry(const LogEntry &entry)
{
    const QDateTime now = LocalClock::now();
    entry.setTime(now);
    entry.setUser(userName());
    mCurrentEntryTime = now;
    mPreviousEntryTime = mEntries.isEmpty() ? now : mEntries.last()->time();
    split();
    prepareFile();
    entry.writeTo(*mWriter);
    flush(); // a full disk passes in silence
    if (LogEntry *const kept = entry.clone())
        append(kept);
}

void ActionLog::handle(const ActionLogFileException &e)
{
    if (e.type() != ActionLogFileException::eInvalidHeader) {
        if (!isDefaultFile())
            setFileInfo(defaultFileInfo());
        emit errorFile(e.file(), e.type());
        return;
    }
    QString name = asideName(mFileInfo, ".vol.invalidHeader");
    if (backupFile(name))
        emit errorFile(e.file(), e.type());
    else
        emit errorFile(name, ActionLogFileException::eBackupFailed);
}

void ActionLog::handle(const ActionLogXmlException &e)
{
    QString name = asideName(mFileInfo, ".vol.corrupt");
    emit errorXml(e.error(), e.line(), e.colum());
    if (!backupFile(name))
        emit errorFile(name, ActionLogFileException::eBackupFailed);
}

void ActionLog::handle(const ActionLogImpersonateException &e)
{
    setFileInfo(defaultFileInfo());
    emit errorLogon(e.user(), e.error());
}

void ActionLog::append(LogEntry *entry)
{
    std::unique_ptr<LogEntry> owned(entry); // a slot may throw
    const int index = mEntries.size();
    emit addingLogEntries(index, index);
    mEntries.append(owned.release());
    emit logEntriesAdded(index, index);
}

void ActionLog::removeAllLogEntries()
{
    const int count = mEntries.size();
    if (count == 0)
        return;
    emit removingLogEntries(0, count);
    while (!mEntries.isEmpty())
        delete mEntries.takeLast();
    emit logEntriesRemoved(0, count);
}

bool ActionLog::deleteEntries(QList<LogEntry *> &list)
{
    // Only an entry that is the last one left goes: a log is not thinned.
    for (LogEntry *const entry : qAsConst(list)) {
        if (mEntries.size() != 1 || mEntries.first() != entry)
            continue;
        emit removingLogEntries(0, 0);
        delete entry;
        mEntries.removeFirst();
        emit logEntriesRemoved(0, 0);
    }
    return true;
}

bool ActionLog::backupEntries(QList<LogEntry *> &list, const QString &fileName)
{
    QFile file(fileName);
    if (!file.exists())
        open(file, QIODevice::WriteOnly | QIODevice::Text);
    QTextStream stream(&file);
    XMLLogWriter writer(&stream, QString(), QDateTime::currentDateTime());
    writer.writeStartDocument();
    for (const LogEntry *entry : qAsConst(list))
        entry->writeTo(writer);
    writer.writeEndDocument();
    file.close();
    return true;
}

void ActionLog::setSplitPolicy(ESplitPolicy policy, int size)
{
    mSplitPolicy = policy;
    mSplitSize = size;
}

bool ActionLog::split()
{
    if (!isAtItsEnd())
        return true;
    QString name = archiveName();
    const bool moved = backupFile(name);
    if (moved)
        removeAllLogEntries();
    return moved || mSplitPolicy != SplitBySize;
}

// The plain numbers are compared, without the year: a log goes on from December into January.
bool ActionLog::isAtItsEnd() const
{
    const QDate current = mCurrentEntryTime.date();
    const QDate previous = mPreviousEntryTime.date();
    switch (mSplitPolicy) {
    case SplitDaily:
        return current.dayOfYear() > previous.dayOfYear();
    case SplitWeekly:
        return current.weekNumber() > previous.weekNumber();
    case SplitMonthly:
        return current.month() > previous.month();
    case SplitBySize:
        return mFile.size() > mSplitSize;
    case SplitNone:
        break;
    }
    return false;
}

QString ActionLog::archiveName() const
{
    const int week = mPreviousEntryTime.date().weekNumber();
    QString name = mFileInfo.baseName();
    QString time;
    switch (mSplitPolicy) {
    case SplitDaily:
        time = stamp(mPreviousEntryTime, "yyyy-%1-dd").arg(week);
        break;
    case SplitWeekly:
        time = stamp(mPreviousEntryTime, "yyyy-%1").arg(week);
        break;
    case SplitMonthly:
        // The name of the month is the user's.
        time = stamp(mPreviousEntryTime, "yyyy-") +
               mPreviousEntryTime.date().toString(QStringLiteral("MMM"));
        break;
    case SplitBySize:
    case SplitNone:
        name = QCoreApplication::applicationName();
        time = stamp(QDateTime::currentDateTime(), "yyyy-MM-dd hh-mm-ss");
        break;
    }
    return name + QLatin1Char(' ') + time + QLatin1String(".vol");
}

} // namespace vo
