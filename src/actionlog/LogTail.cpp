#include "actionlog/LogTail_p.h"

#include <QFile>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <cctype>
#include <functional>

namespace vo {

namespace {

constexpr int gBlockSize = 4096;
constexpr int gTags = 3; // the torn one, the one that it ends, and the one in front of both

// The end of the file from its last three tags on, with its position.
QByteArray lastTags(QFile &file, qint64 *position)
{
    QByteArray tail;
    qint64 start = file.size();
    while (start > 0 && tail.count('<') < gTags) {
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

// Whether this is an entry's start tag that breaks off, or one with no more than blanks behind it.
bool isTornEntry(const QByteArray &tag)
{
    static const QByteArray name("<Entry");
    const bool isEntry = tag.size() <= name.size()
                             ? name.startsWith(tag)
                             : tag.startsWith(name) && !std::isalnum(uchar(tag.at(name.size())));
    if (!isEntry)
        return false;
    const int end = endOfTag(tag);
    return end < 0 || (tag.at(end - 2) != '/' && tag.mid(end).trimmed().isEmpty());
}

bool isTornEndTag(const QByteArray &tag)
{
    return tag.startsWith("</") && QByteArray("</Entry").startsWith(tag.trimmed());
}

// The element that is open at a position; null where no other one can stand in it, as in a comment.
QString openElement(QFile &file, qint64 position)
{
    QXmlStreamReader reader;
    QStringList open;
    int count = 0;
    const auto follow = [&] {
        while (!reader.atEnd()) {
            const auto token = reader.readNext();
            if (token == QXmlStreamReader::StartElement) {
                open.append(reader.name().toString());
                ++count;
            } else if (token == QXmlStreamReader::EndElement) {
                open.removeLast();
            }
        }
    };
    file.seek(0);
    while (position > 0) {
        QByteArray block = file.read(std::min<qint64>(position, gBlockSize));
        if (block.isEmpty())
            return {};
        position -= block.size();
        reader.addData(block.replace('\r', QByteArray())); // as QIODevice::Text reads it
        follow();                                          // a block at a time is held
    }
    reader.addData("    "); // Qt reads nothing of less than four bytes
    follow();
    const QString name = open.isEmpty() ? QString() : open.last();
    const int countBefore = count;
    reader.addData("<Entry/>");
    follow();
    return count > countBefore ? name : QString();
}

// Where the torn entry begins that the text ends in; the text's size for none.
// Nothing else is torn off: a comment without an end, say, may hold entries worth saving.
int tornEntry(const QByteArray &text, const std::function<QString(int)> &openElementAt)
{
    const int last = text.lastIndexOf('<');
    if (last < 0)
        return text.size();
    if (isTornEntry(text.mid(last)))
        return openElementAt(last).isNull() ? text.size() : last;
    if (!isTornEndTag(text.mid(last)))
        return text.size();
    const int start = last > 0 ? text.lastIndexOf('<', last - 1) : -1;
    if (start >= 0 && isTornEntry(text.mid(start, last - start)) && !openElementAt(start).isNull())
        return start;
    // An entry that holds more: that stays, and the next entry stands behind it.
    return openElementAt(last) == QLatin1String("Entry") ? last : text.size();
}

} // namespace

qint64 LogTail::wholeSize(QFile &file)
{
    qint64 start = 0;
    QByteArray tail = lastTags(file, &start);
    const int torn = tornEntry(tail, [&](int offset) { return openElement(file, start + offset); });
    if (torn == tail.size())
        return start + torn;
    tail.truncate(torn);
    while (!tail.isEmpty() && std::isspace(uchar(tail.back())))
        tail.chop(1);
    return start + tail.size();
}

} // namespace vo
