#include <Vokit/ActionLog>

#include "actionlog/LogTail_p.h"

#include <Vokit/XMLLogReader>
#include <Vokit/XMLLogWriter>

#include <QMutexLocker>
#include <QTextStream>

#include <vector>

namespace vo {

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
        if (mWriter && reader.endOfWhole() >= 0)
            mWriter->leaveDocument(); // another program's, if the one begun here was still open
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
    const qint64 size = LogTail::wholeSize(mFile);
    if (size < mFile.size())
        mFile.resize(size);
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
