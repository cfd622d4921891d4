#pragma once

#include <Vokit/ActionLogException>
#include <Vokit/FileEncrypt>
#include <Vokit/LogEntry>

#include <QFileInfo>
#include <QMutex>
#include <QObject>

#include <atomic>
#include <memory>

class QTextStream;

namespace vo {

class ILogUserSource;
class IPersistDestination;
class XMLLogWriter;

/**
 * The audit log of the client: who did what, and when.
 *
 * @code
 * ActionLog *log = ActionLog::getInstance();    // before a second thread can ask for it
 * log->setUserSource(&signedIn);
 * log->setSuspended(false);                     // a new log takes no entries
 * log->log(ExportDoneLogEntry("3 clips"));      // from any thread
 * @endcode
 *
 * An entry is on disk when log() returns, and a copy of it in entries(). The file is one line of
 * XML without an end tag, so that it can be appended to; see XMLLogWriter. It is split by date or
 * by size: the finished file is moved aside, under a name of its own in the same directory.
 *
 * Nothing that befalls the file stops the client. log() never throws on it: a file that can't be
 * read is moved aside, one that can't be opened gives way to the default file, and the signals
 * tell. A full disk passes in silence; what could not be written is in entries() all the same.
 *
 * Threads: log(), readLog(), activate(), switchFileHandle(), load() and save() hold one recursive
 * lock for their whole length. Signals are emitted under it, on the thread that logs: a slot may
 * log in its turn. All else belongs to one thread at a time, and whoever shows entries() relies on
 * the four signals about them.
 */
class VOKIT_EXPORT ActionLog : public QObject
{
    Q_OBJECT

public:
    /// When a log file ends. A number in the settings of clients; any other one means never.
    enum ESplitPolicy : int {
        SplitNone = 0,
        SplitDaily = 1,   ///< the day of the year is greater than that of the entry before
        SplitWeekly = 2,  ///< the week number is
        SplitMonthly = 4, ///< the month is
        SplitBySize = 8   ///< the file is larger than the split size
    };

    /// A log on a file, suspended, split at one mebibyte. Touches nothing on disk.
    explicit ActionLog(const QString &fileName);
    /// The file is left without an end tag.
    ~ActionLog() override;

    /// The log of the process, on the default file, whose directory is made. Its first call must be
    /// over before a second thread makes one.
    static ActionLog *getInstance();
    /// Ends it; a later getInstance() makes a new one.
    static void deleteActionLog();
    /// Organisation and application below the directory of the user's log files.
    static QFileInfo defaultFileInfo();

    // What the application tells the log.
    void setSuspended(bool suspended) { mSuspended = suspended; }
    bool isSuspended() const { return mSuspended; }
    /// Not owned; null for none.
    void setUserSource(ILogUserSource *source) { mUserSource = source; }
    /// For the start of the files; to be set before the first entry.
    void setVersions(const QString &application, const QString &language);

    /// Stamps time and user into the entry, writes it, and keeps a clone. Nothing while suspended.
    void log(const LogEntry &entry);

    /// All entries of the current file that were read or logged, oldest first; owned by the log.
    const QList<LogEntry *> &entries() const { return mEntries; }
    /// Reads the file into entries(), behind what is there. Throws ActionLogException.
    void readLog();
    /// Reads the file, or makes it, ahead of the first entry. Throws ActionLogException.
    void activate();
    /// Takes ownership of the entry, and writes nothing.
    void append(LogEntry *entry);
    void removeAllLogEntries();
    /// Removes the entries given, if entries() holds one alone; of several it removes none.
    /// entries() must not be empty.
    bool deleteEntries(QList<LogEntry *> &list);
    /// Writes entries to a new file of their own, a complete document. A file that exists is left
    /// alone, without a word. Throws ActionLogException.
    bool backupEntries(QList<LogEntry *> &list, const QString &fileName);

    QFileInfo fileInfo() const { return mFileInfo; }
    /// The last file chosen other than the default, also while logging has fallen back to that.
    QFileInfo customFileInfo() const { return mCustomFileInfo; }
    bool isOpen() const { return mFile.isOpen(); }
    bool defaultActive() const { return mDefaultActive; }
    void setDefaultActive(bool active) { mDefaultActive = active; }
    /// Moves the log to that file if it is another one, or if the account has changed.
    void setFileInfo(const QFileInfo &info);
    /// Moves the log, and says so in both files: in the old one if it is open.
    void switchFileHandle(const QString &newPath);

    ESplitPolicy splitPolicy() const { return mSplitPolicy; }
    int splitSize() const { return mSplitSize; }
    /// @param size in bytes
    void setSplitPolicy(ESplitPolicy policy, int size);

    /// "primary (secondary)" of the user source, else the environment's USERNAME and " (System)".
    QString userName();
    /// The account for the access to the file. Takes effect with the next setFileInfo().
    void setFileUserPassword(const QString &user, const QString &password);
    const QString &fileUser() const { return mUser; }

    /// Reads the configuration, and moves the log to where it says. The password stands in base64,
    /// which hides it from nobody.
    void load(IPersistDestination *destination);
    void save(IPersistDestination *destination);

    // The steps of the above. log() is what applications call.

    /// True, or throws. A file that is open stays as it is.
    bool open(QFile &file, QIODevice::OpenMode mode);
    bool openForReading(QIODevice::OpenMode mode);
    /// Opens the file truncated, with a header, unless it is open.
    bool openForWriting();
    void initWriting();
    /// Reads the file and leaves it open at its end, unless the mode is ReadOnly or it is empty.
    bool readEntries(QIODevice::OpenMode mode);
    /// Moves the file aside if it has come to its end.
    bool split();
    /// Moves the file aside, byte for byte. @p name becomes the absolute path. False, with the file
    /// as it was, if the name is taken or the file can't be moved.
    bool backupFile(QString &name);
    /// Opens the file and returns false; nothing more.
    bool finalize(QFile &file);
    void close();

public slots:
    void incompatibleHeader();

signals:
    void addingLogEntries(int first, int last);
    void logEntriesAdded(int first, int last);
    /// (0, count) for all, (i, i) for one.
    void removingLogEntries(int first, int last);
    void logEntriesRemoved(int first, int last);
    void errorLogon(QString user, int error);
    /// @param type an ActionLogFileException::eType
    void errorFile(QString file, int type);
    void errorXml(QString error, int line, int colum);
    /// @param fileName without its path
    void switchedFileHandle(QString fileName);

private:
    void writeEntry(const LogEntry &entry);
    void handle(const ActionLogFileException &e);
    void handle(const ActionLogXmlException &e);
    void handle(const ActionLogImpersonateException &e);
    void moveTo(const QFileInfo &info);

    void startFile();
    void prepareFile();
    void cutTornEntry();
    void seekToEnd();
    bool flush();
    bool isWritable() const;
    bool isDefaultFile() const;

    bool isAtItsEnd() const;
    QString archiveName() const;

    static const QString mLocalAppData;
    static constexpr int gDefaultSplitSize = 1048576;

    bool mDefaultActive = true;
    bool mUserPasswordChanged = false;
    QList<LogEntry *> mEntries;
    QDateTime mPreviousEntryTime;
    QDateTime mCurrentEntryTime;
    ILogUserSource *mUserSource = nullptr;
    QString mAppVersion;
    QString mLngVersion;
    std::unique_ptr<XMLLogWriter> mWriter;
    std::unique_ptr<QTextStream> mStream;
    FileEncrypt mFile;
    QFileInfo mFileInfo;
    QFileInfo mCustomFileInfo;
    std::unique_ptr<QMutex> mMutex;
    std::atomic<bool> mSuspended{true};
    ESplitPolicy mSplitPolicy = SplitBySize;
    int mSplitSize = gDefaultSplitSize;
    QString mPassword;
    QString mUser;
    bool mMayBeTorn = false; ///< the file was read, and ends with more than whole entries
    qint64 mWholeSize = 0;   ///< of the open file, as long as it held whole entries alone
};

} // namespace vo
