#pragma once

#include <Vokit/vokit_export.h>

#include <QXmlStreamReader>

class QFile;

namespace vo {

class LogEntry;

/**
 * Reads a log file entry by entry.
 *
 * @code
 * XMLLogReader reader(&file);
 * while (!reader.atEnd() && reader.error() == QXmlStreamReader::NoError) {
 *     if (LogEntry *entry = reader.readNextLogEntry())
 *         entries.append(entry);
 * }
 * @endcode
 *
 * A live log is never closed, so error() is PrematureEndOfDocumentError at the end of a good one.
 */
class VOKIT_EXPORT XMLLogReader : public QXmlStreamReader
{
public:
    /// @param file not owned; may be null
    explicit XMLLogReader(QFile *file);
    ~XMLLogReader();

    /**
     * The next entry, the caller's; null where there is none: for a class that isn't registered,
     * and at the end.
     *
     * A value that the class doesn't have ends the reading of its element: what stands behind it
     * stays as in a new entry. Text that is not well-formed gives a ParseXMLLogEntry that says so.
     */
    LogEntry *readNextLogEntry();

    /// The entry that the attributes of an "Entry" element say, as readNextLogEntry() gives it.
    static LogEntry *entryOf(const QXmlStreamAttributes &attributes);

    /// True at the end of the text and behind the end of the root element.
    bool atEnd() const;

    /// Behind what the root holds as a whole, entries above all, or behind its start tag; as
    /// characterOffset() counts. -1 before that.
    qint64 endOfWhole() const { return mEndOfWhole; }

private:
    bool failed() const;

    QFile *const mFile;
    int mDepth = 0;
    qint64 mEndOfWhole = -1;
    bool mRootClosed = false;
};

} // namespace vo
