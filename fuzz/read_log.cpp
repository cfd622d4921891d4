#include "Fuzz.h"

#include <Vokit/ActionLog>
#include <Vokit/ExportLogEntries>

#include <QDir>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <algorithm>

using fuzz::require;
using vo::ActionLog;
using vo::LogEntry;

namespace {

QString text()
{
    return QStringLiteral("behind whatever stood there");
}

// A folder of its own for each run; where the memory is a disk, there.
const QString &folder()
{
    static const QTemporaryDir dir((QDir(QStringLiteral("/dev/shm")).exists()
                                        ? QStringLiteral("/dev/shm")
                                        : QDir::tempPath()) +
                                   QStringLiteral("/read_log-XXXXXX"));
    static const QString path = dir.path();
    return path;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void clear()
{
    QDir dir(folder());
    const QStringList names = dir.entryList(QDir::Files);
    for (const QString &name : names)
        dir.remove(name);
}

void fill(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "no room");
}

// Whether a tag has its end: a ">" that stands in no value.
bool isClosed(const QByteArray &tag)
{
    char quote = 0;
    for (const char c : tag) {
        if (quote)
            quote = c == quote ? 0 : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return true;
    }
    return false;
}

// Where the torn entry begins that the bytes may end in, as a crash leaves it; their size for none.
int tornEntry(const QByteArray &bytes)
{
    const QByteArray name("<Entry ");
    const int open = bytes.lastIndexOf('<');
    const QByteArray tag = bytes.mid(std::max(open, 0));
    const bool isTorn =
        open >= 0 && !isClosed(tag) && (tag.startsWith(name) || name.startsWith(tag));
    return isTorn ? open : bytes.size();
}

// Where the last element begins, that of an end tag, too: nothing ahead of it is ever touched.
int lastElement(const QByteArray &bytes)
{
    const int tag = std::max(bytes.lastIndexOf('<'), 0);
    return bytes.mid(tag, 2) == "</" ? std::max(bytes.lastIndexOf('<', tag - 1), 0) : tag;
}

// Without the white space at the end, which goes with a torn entry.
QByteArray trimmedEnd(const QByteArray &bytes)
{
    return ('x' + bytes).trimmed().mid(1);
}

// With the end tag of an entry whole that the bytes may break off in.
QByteArray withEndTag(const QByteArray &bytes)
{
    const QByteArray endTag("</Entry>");
    const int torn = bytes.lastIndexOf("</");
    return torn >= 0 && endTag.startsWith(bytes.mid(torn)) ? bytes.left(torn) + endTag : bytes;
}

// Whether an entry can stand behind the bytes: they are a log as far as they go, and their root is
// open. Asked of Qt alone.
bool takesAnEntry(QByteArray bytes)
{
    bytes = withEndTag(bytes.left(tornEntry(bytes))).replace('\r', QByteArray()); // as text is read
    QByteArray text("last");
    while (bytes.contains(text))
        text += '!';
    QXmlStreamReader reader(bytes + "<Entry ID=\"ExpD\" Text=\"" + text + "\"/>");
    int depth = 0;
    bool isLast = false;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            ++depth;
            isLast = depth > 1 && reader.name() == QLatin1String("Entry") &&
                     reader.attributes().value(QLatin1String("Text")) == QLatin1String(text);
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
            if (reader.name() == QLatin1String("Entries"))
                return false;
        }
    }
    return isLast && reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
}

bool endsWithTheEntry(const ActionLog &log)
{
    if (log.entries().isEmpty())
        return false;
    auto *const last = dynamic_cast<ExportDoneLogEntry *>(log.entries().last());
    return last && last->logValue(QStringLiteral("Text"))->toString() == text();
}

} // namespace

// Any bytes as the log file that a process finds when it starts.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    fuzz::silenceQt();
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString path = folder() + QStringLiteral("/Client.vol");
    clear();
    fill(path, bytes);

    bool isBad = false;
    {
        ActionLog log(path);
        QObject::connect(&log, &ActionLog::errorXml, &log, [&isBad] { isBad = true; });
        QObject::connect(&log, &ActionLog::errorFile, &log,
                         [] { require(false, "the file could not be used"); });
        log.setSplitPolicy(ActionLog::SplitNone, 0);
        log.setSuspended(false);
        log.log(ExportDoneLogEntry(text()));
        const QStringList aside = QDir(folder()).entryList({"*.vol.corrupt"});
        require(isBad == (aside.size() == 1), "a bad file is moved aside, and no other one");
        if (isBad) {
            require(contents(folder() + QLatin1Char('/') + aside.first()) == bytes,
                    "a bad file was not kept as it was");
            require(!QFile::exists(path), "a bad file still stands");
            log.log(ExportDoneLogEntry(text()));
        }
        require(endsWithTheEntry(log), "the entry is not in the list");
    }

    const QByteArray grown = contents(path);
    require(isBad || grown.startsWith(trimmedEnd(bytes.left(lastElement(bytes)))),
            "what stood there has changed");
    ActionLog next(path);
    bool isReadable = true;
    try {
        next.readLog();
    } catch (const vo::ActionLogXmlException &) {
        isReadable = false;
    }
    require(isReadable || !isBad, "the file that takes a bad one's place is bad");
    if (isBad || bytes.isEmpty() || takesAnEntry(bytes))
        require(isReadable && endsWithTheEntry(next), "the entry can't be read again");
    return 0;
}
