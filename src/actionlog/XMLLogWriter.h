#pragma once

#include <Vokit/LogWriter>

#include <QByteArray>
#include <QDateTime>
#include <QXmlStreamWriter>

namespace vo {

/**
 * Writes the log file: one line of XML in UTF-8, a root element "Entries" and in it an empty
 * element "Entry" for each entry, with its values as attributes.
 *
 * The root's start tag stays open until the first entry, and the root itself for ever unless
 * writeEndDocument() is called: a log file is appended to.
 *
 * An entry reaches the device in one write, when its element ends, so that a crash leaves whole
 * entries and at most one torn one at the end. What a device can't take whole is taken back, if it
 * is a file; and a write that failed is no reason not to try the next one. The operations that
 * QXmlStreamWriter has under the same names take no part in this: don't mix them.
 *
 * A value may hold any text. Characters that XML 1.0 doesn't know are left out, and half of a
 * surrogate pair becomes "?". Names are not escaped.
 */
class VOKIT_EXPORT XMLLogWriter : public LogWriter, public QXmlStreamWriter
{
public:
    /**
     * @param stream its device is written to; null for none yet
     * @param startDate stands in each start of a document
     */
    XMLLogWriter(QTextStream *stream, const QString &name, const QDateTime &startDate);
    ~XMLLogWriter() override;

    /// Not owned. An entry that has begun goes to the device that is there when it ends.
    void setDevice(QIODevice *device);

    /// The declaration and the root's start tag, whatever was written before.
    void writeStartDocument() override;
    /// The same, handed over together with the next entry: a crash leaves none of it or all.
    void writeStartDocumentWithNextEntry();
    /// The device has become another document, whose root is open: nothing that the last one still
    /// had to get goes there.
    void leaveDocument();
    /// Closes all that is open.
    void writeEndDocument() override;
    void writeStartElement(const LogEntry &entry) override;
    void writeEndElement(const LogEntry &entry) override;
    /// Nothing for a value that has none.
    void writeAttribute(const LogValue &value) override;

private:
    void appendAttribute(const char *name, const QString &value);
    void appendValue(const QString &value);
    void endElement();
    void handOver();
    bool writeWhole();

    const QDateTime mStartDate;
    QByteArray mBytes;            ///< what the device doesn't have yet
    QByteArray mStartOfDocument;  ///< what goes ahead of that
    int mRootDepth = 0;           ///< how many documents were begun and not ended
    int mEntryDepth = 0;          ///< how many entries are open in the last of them
    bool mStartTagIsOpen = false; ///< that of the innermost element
};

} // namespace vo
