#include <Vokit/ActionLog>

#include <Vokit/XMLLogReader>
#include <Vokit/XMLLogWriter>

#include <QMutexLocker>
#include <QTextStream>

#include <algorithm>
#include <cctype>
#include <vector>

namespace vo {

namespace {

constexpr int gBlockSize = 4096;

// The end of the file from its last tag but one on, with its position.
QByteArray lastTags(QFile &file, qint64 *position)
{
    QByteArray tail;
    qint64 start = file.size();
    while (start > 0 && tail.count('<') < 2) {
        const qint64 size = std::min<qint64>(start, gBlockSize);
        start -= size;
        file.seek(start);
        tail.prepend(file.read(size));
    }
    *position = start;
    return tail;
}

// Behind the tag's ">", which a value may hold, too; -1 for a tag without an end.
int endOfTag(const QByteArray &tag)
{
    char quote = 0;
    for (int i = 0; i < tag.size(); ++i) {
        const char c = tag.at(i);
        if (quote)
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return i + 1;
    }
    return -1;
}

// Where the torn entry begins that a text ends in; -1 if it ends otherwise. Nothing else is torn
// off: what is not whole, such as a comment without an end, may hold entries worth saving.
int tornEntry(const QByteArray &text)
{
    static const QByteArray name("<Entry");
    static const QByteArray endTag("</Entry>");
    int begin = text.lastIndexOf('<');
    if (begin > 0 && text.mid(begin, 2) == "</" && endTag.startsWith(text.mid(begin)))
        begin = text.lastIndexOf('<', begin - 1);
    const QByteArray tag = text.mid(std::max(begin, 0));
    const bool isEntry =
        begin >= 0 && (tag.size() <= name.size()
                           ? name.startsWith(tag)
                           : tag.startsWith(name) && !std::isalnum(uchar(tag.at(name.size()))));
    if (!isEntry)
        return -1;
    const int end = endOfTag(tag);
    const bool isTorn =
        end < 0 || (tag.at(end - 2) != '/' && endTag.startsWith(tag.mid(end).trimmed()));
    return isTorn ? begin : -1;
}

} // namespace

bool ActionLog::open(QFile &file, QIODevice::OpenMode mode)
{
    if (file.isOpen() || file.open(mode))
        return true;
    if (!mFile.headerCompatible) {
        throw ActionLogFileException(
            tr("Action log '%1' invalid header version.").arg(file.fileName()), file.fileName(),
            ActionLogFileException::eInvalidHeader);
    }
    throw ActionLogFileException(tr("Could not open file '%1'").arg(file.fileName()),
                                 file.fileName(), ActionLogFileException::eOpenFailed);
}

bool ActionLog::openForReading(QIODevice::OpenMode mode)
{
    return open(mFile, mode | QIODevice::Text);
}

void ActionLog::initWriting()
{
    if (!mStream)
        mStream = std::make_unique<QTextStream>(&mFile);
    if (mWriter)
        return;
    mWriter =
        std::make_unique<XMLLogWriter>(mStream.get(), QString(), QDateTime::currentDateTime());
    mWriter->setStartDocumentName(mFile.fileName());
    mWriter->setAppVersion(mAppVersion);
    mWriter->setLngVersion(mLngVersion);
}

bool ActionLog::openForWriting()
{
    initWriting();
    if (!mFile.isOpen()) {
        startFile();
        mWriter->writeStartDocument();
    }
    return true;
}

void ActionLog::startFile()
{
    open(mFile, QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Text);
    mMayBeTorn = false;
    mWholeSize = 0;
    mWriter->setStartDocumentName(mFileInfo.absoluteFilePath());
}

void ActionLog::prepareFile()
{
    if (!mFile.isOpen())
        readEntries(QIODevice::ReadWrite);
    initWriting();
    if (!mFile.isOpen()) {
        startFile();
        mWriter->writeStartDocumentWithNextEntry();
    }
    if (mMayBeTorn)
        cutTornEntry();
}

void ActionLog::close()
{
    if (!mFile.isOpen())
        return;
    const bool isWhole = flush();
    mFile.close();
    if (!isWhole) // a full disk, and what it took may be part of an entry
        mFile.resize(mWholeSize);
}

// One call hands over one block of the buffer, and a short write leaves two behind.
bool ActionLog::flush()
{
    const bool isDone = mFile.flush() && mFile.flush();
    if (isDone)
        mWholeSize = mFile.pos();
    return isDone;
}

void ActionLog::readLog()
{
    const QMutexLocker locker(mMutex.get());
    if (!mFile.exists())
        return;
    const bool writable = isWritable();
    readEntries(writable ? QIODevice::ReadWrite : QIODevice::ReadOnly);
    if (!writable)
        close();
}

bool ActionLog::readEntries(QIODevice::OpenMode mode)
{
    const bool fromStart = !mFile.isOpen();
    openForReading(mode);
    if (mFile.size() == 0) {
        close();
        return true;
    }
    XMLLogReader reader(&mFile);
    std::vector<std::unique_ptr<LogEntry>> found;
    while (!reader.atEnd() && reader.error() == QXmlStreamReader::NoError) {
        if (LogEntry *const entry = reader.readNextLogEntry())
            found.emplace_back(entry);
    }
    if (mode == QIODevice::ReadOnly)
        close();
    else
        seekToEnd();
    if (fromStart) {
        const bool hasTail = reader.error() == QXmlStreamReader::PrematureEndOfDocumentError &&
                             reader.endOfWhole() >= 0 &&
                             reader.characterOffset() > reader.endOfWhole();
        mMayBeTorn = hasTail && mFile.isOpen();
    }
    // Not before all is read: a slot may log.
    for (std::unique_ptr<LogEntry> &entry : found)
        append(entry.release());
    switch (reader.error()) {
    case QXmlStreamReader::UnexpectedElementError:
    case QXmlStreamReader::CustomError:
    case QXmlStreamReader::NotWellFormedError: {
        const auto line = static_cast<int>(reader.lineNumber());
        const auto column = static_cast<int>(reader.columnNumber());
        throw ActionLogXmlException(
            tr("Error reading log file '%1'; Line '%2'; Column '%3'")
                .arg(reader.errorString(), QString::number(line), QString::number(column)),
            reader.errorString(), line, column);
    }
    case QXmlStreamReader::PrematureEndOfDocumentError: // the end of every live log
    case QXmlStreamReader::NoError:
        break;
    }
    return true;
}

// An entry that a crash or a full disk cut short would make all that follows it unreadable.
void ActionLog::cutTornEntry()
{
    mFile.setTextModeEnabled(false); // positions are those of bytes
    mMayBeTorn = false;
    qint64 start = 0;
    QByteArray tail = lastTags(mFile, &start);
    const int torn = tornEntry(tail);
    if (torn >= 0) {
        tail.truncate(torn);
        while (!tail.isEmpty() && std::isspace(uchar(tail.back())))
            tail.chop(1);
        mFile.resize(start + tail.size());
    }
    mFile.setTextModeEnabled(true);
    seekToEnd();
}

void ActionLog::seekToEnd()
{
    mWholeSize = mFile.size();
    mFile.seek(mWholeSize);
}

bool ActionLog::backupFile(QString &name)
{
    name = mFileInfo.absolutePath() + QLatin1Char('/') + name;
    if (!isWritable() || QFile::exists(name))
        return false;
    const QIODevice::OpenMode mode = mFile.openMode();
    close();
    // By name: what lies on the disk, and not what the file's own open() would read.
    if (QFile::copy(mFile.fileName(), name)) {
        mFile.remove();
        return true;
    }
    // As it was, so that its entries are not read a second time.
    if (mode != QIODevice::NotOpen && mFile.open(mode & ~QIODevice::Truncate))
        seekToEnd();
    return false;
}

bool ActionLog::finalize(QFile &file)
{
    return !open(file, QIODevice::ReadWrite | QIODevice::Text);
}

// Asked afresh: a QFileInfo keeps what it saw first.
bool ActionLog::isWritable() const
{
    return QFileInfo(mFileInfo.filePath()).isWritable();
}

} // namespace vo
