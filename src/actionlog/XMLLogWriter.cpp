#include <Vokit/XMLLogWriter>

#include <Vokit/LogEntry>

#include <QFileDevice>
#include <QTextStream>

#include <algorithm>

namespace vo {

namespace {

constexpr int gUsualElementSize = 1024;
constexpr char gDeclaration[] = R"(<?xml version="1.0" encoding="UTF-8"?>)";
constexpr char gRoot[] = "Entries";
constexpr char gEntry[] = "Entry";

QTextStream *orUnbound(QTextStream *stream)
{
    static QTextStream sActionLog; // no device yet
    return stream ? stream : &sActionLog;
}

// What stands in a value in place of a character, or null for the character itself.
const char *escapeOf(ushort unit)
{
    switch (unit) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    case 0xFFFE:
    case 0xFFFF:
        return "";
    default:
        return unit < 0x20 ? "" : nullptr;
    }
}

bool isPlain(QChar c)
{
    return c.unicode() < 0x80 && !escapeOf(c.unicode());
}

void appendEscaped(QByteArray &bytes, const QString &text)
{
    const QChar *unit = text.begin();
    while (true) {
        const QChar *end = std::find_if_not(unit, text.end(), isPlain);
        const int size = bytes.size();
        bytes.resize(size + static_cast<int>(end - unit));
        std::transform(unit, end, bytes.data() + size, [](QChar c) { return c.toLatin1(); });
        if (end == text.end())
            return;
        unit = end;
        if (const char *const escape = escapeOf(unit->unicode())) {
            bytes.append(escape);
            ++unit;
            continue;
        }
        // Beyond ASCII: the whole run, so that surrogates stay together.
        end = std::find_if(unit, text.end(),
                           [](QChar c) { return isPlain(c) || escapeOf(c.unicode()); });
        bytes.append(QStringView(unit, end).toUtf8());
        unit = end;
    }
}

// Identifiers are bytes; what is beyond ASCII among them is Latin-1.
void appendName(QByteArray &bytes, FourChars id)
{
    char name[1 + 2 * sizeof(quint32)];
    char *end = name;
    *end++ = ' ';
    for (int shift = 24; shift >= 0; shift -= 8) {
        const quint32 byte = id.value() >> shift & 0xFF;
        if (byte < 0x80) {
            *end++ = static_cast<char>(byte);
        } else {
            *end++ = static_cast<char>(0xC0 | byte >> 6);
            *end++ = static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    bytes.append(name, static_cast<int>(end - name));
}

} // namespace

XMLLogWriter::XMLLogWriter(QTextStream *stream, const QString & /*name*/,
                           const QDateTime &startDate)
    : LogWriter(stream)
    , QXmlStreamWriter(orUnbound(stream)->device())
    , mStartDate(startDate)
{
    setAutoFormatting(false);
    setAutoFormattingIndent(0);
    mBytes.reserve(gUsualElementSize);
}

XMLLogWriter::~XMLLogWriter() = default;

void XMLLogWriter::setDevice(QIODevice *device)
{
    QXmlStreamWriter::setDevice(device);
}

void XMLLogWriter::writeStartDocument()
{
    writeStartDocumentWithNextEntry();
    handOver();
    mStartOfDocument.clear(); // told once, whether the device took it or not
}

void XMLLogWriter::writeStartDocumentWithNextEntry()
{
    mBytes.resize(0);
    mBytes.append(gDeclaration).append('<').append(gRoot);
    appendAttribute("Version", QStringLiteral("v0.1"));
    appendAttribute("LogFile", mStartDocumentName);
    appendAttribute("Date", mStartDate.toString(Qt::ISODate));
    if (!mAppVersion.isEmpty())
        appendAttribute("ApplicationVersion", mAppVersion);
    if (!mLngVersion.isEmpty())
        appendAttribute("LanguageVersion", mLngVersion);
    leaveDocument();
    mStartOfDocument = mBytes;
    mBytes.resize(0);
    ++mRootDepth;
    mStartTagIsOpen = true;
}

void XMLLogWriter::leaveDocument()
{
    mStartOfDocument.clear();
    mEntryDepth = 0;
    mStartTagIsOpen = false;
}

void XMLLogWriter::writeEndDocument()
{
    while (mEntryDepth > 0 || mRootDepth > 0)
        endElement();
    mBytes.append('\n');
    handOver();
}

void XMLLogWriter::writeStartElement(const LogEntry &entry)
{
    if (mStartTagIsOpen)
        mBytes.append('>');
    mBytes.append('<').append(gEntry).append(" ID=\"");
    appendEscaped(mBytes, entry.id().toString());
    mBytes.append('"');
    ++mEntryDepth;
    mStartTagIsOpen = true;
}

void XMLLogWriter::writeEndElement(const LogEntry & /*entry*/)
{
    endElement();
    if (mEntryDepth == 0)
        handOver();
}

void XMLLogWriter::writeAttribute(const LogValue &value)
{
    if (!value.hasValue() || !mStartTagIsOpen)
        return;
    appendName(mBytes, value.id());
    appendValue(value.toString());
    if (mEntryDepth == 0)
        handOver();
}

void XMLLogWriter::appendAttribute(const char *name, const QString &value)
{
    mBytes.append(' ').append(name);
    appendValue(value);
}

void XMLLogWriter::appendValue(const QString &value)
{
    mBytes.append("=\"");
    appendEscaped(mBytes, value);
    mBytes.append('"');
}

void XMLLogWriter::endElement()
{
    if (mEntryDepth == 0 && mRootDepth == 0)
        return;
    const bool isEntry = mEntryDepth > 0;
    if (mStartTagIsOpen)
        mBytes.append("/>");
    else
        mBytes.append("</").append(isEntry ? gEntry : gRoot).append('>');
    --(isEntry ? mEntryDepth : mRootDepth);
    mStartTagIsOpen = false;
}

void XMLLogWriter::handOver()
{
    const bool closesRootTag = mBytes.startsWith('>');
    mBytes.prepend(mStartOfDocument);
    if (writeWhole())
        mStartOfDocument.clear();
    else if (closesRootTag)
        mStartTagIsOpen = true; // on the device, it still is
    mBytes.resize(0);
}

bool XMLLogWriter::writeWhole()
{
    QIODevice *const target = device();
    if (!target || !target->isWritable())
        return false;
    auto *const file = qobject_cast<QFileDevice *>(target);
    if (file)
        file->flush(); // write() alone would pass over what a short write has left behind
    const qint64 start = target->pos();
    const qint64 written = target->write(mBytes);
    if (written == mBytes.size())
        return true;
    if (file && written > 0) {
        file->resize(start);
        file->seek(start);
    }
    return false;
}

} // namespace vo
