#include "Fuzz.h"

#include "extras/VolDevices.h"
#include "extras/VolReading.h"

#include <VokitExtras/VolRow>
#include <VokitExtras/VolWriter>

using fuzz::require;
using vo::VolFile;

namespace {

void requireSame(const test::VolReading &a, const test::VolReading &b, const char *what)
{
    require(test::told(a) == test::told(b) && a.condition == b.condition &&
                a.position == b.position,
            what);
}

// The file grows once, and then nobody writes any more.
test::VolReading inTwoParts(const QByteArray &bytes, int first)
{
    QByteArray part = bytes.left(first);
    QBuffer buffer(&part);
    buffer.open(QIODevice::ReadOnly);
    VolFile log(&buffer);
    log.setLive(true);
    test::VolReading reading;
    test::readOn(log, reading);
    require(reading.position <= first, "read beyond the end");
    part += bytes.mid(first);
    test::readOn(log, reading);
    log.setLive(false);
    test::readOn(log, reading);
    return reading;
}

void requireRows(const test::VolReading &reading)
{
    vo::VolRow row;
    for (const vo::VolEntry &entry : reading.entries()) {
        row.setReferenceDate(QDateTime(QDate(2026, 11, 21), QTime(12, 0)));
        row.read(entry);
        require(row.id() == entry.id().toString(), "the row is of another class");
        require(row.set().contains(QStringLiteral("id")) &&
                    row.set().contains(QStringLiteral("description")),
                "a row without its columns");
        require(row.set().contains(QStringLiteral("time")) == row.time().isValid(),
                "a time without a date");
        require(row.category().isEmpty() != entry.isKnown(), "a category of no class");
        require(row.values().size() <= static_cast<std::size_t>(entry.attributeCount()) + 6,
                "values from nowhere");
        row.description();
        for (const vo::VolRow::Value &value : row.values())
            require(value.value.isValid(), "a value that is none");
    }
}

// What is saved is a whole document, and all of it.
void requireRescue(const test::VolReading &reading)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    vo::VolWriter writer(&buffer);
    bool isDone =
        writer.writeStart(reading.headers.empty() ? vo::VolHeader() : reading.headers.back());
    for (const vo::VolEntry &entry : reading.entries()) {
        require(entry.isWellFormed() == (entry.bytes() == entry.wellFormedBytes()),
                "bytes that change, or should");
        isDone = writer.write(entry) && isDone;
    }
    require(writer.writeEnd() && isDone, "not written");
    const test::VolReading again = test::readVol(buffer.data());
    require(again.gapCount == 0 && again.condition == VolFile::Complete, "what was saved has gaps");
    require(again.entryCount == reading.entryCount, "not all was saved");
    require(test::disagreement(again, buffer.data()).isEmpty(), "not what XMLLogReader reads");
}

} // namespace

// Any bytes as a log file.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    constexpr int portions = 500;
    constexpr std::size_t few = 10;
    fuzz::silenceQt();
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    VolFile log(&buffer);
    test::VolReading reading;
    test::readOn(log, reading, size + few);
    require(reading.tokens.size() < size + few, "tokens without an end");
    require(log.readNext() == VolFile::End, "more behind the end");

    const QString wrong = test::disagreement(reading, bytes);
    require(wrong.isEmpty(), qPrintable(wrong));
    requireRescue(reading);
    requireRows(reading);

    test::Pipe pipe(bytes, bytes.size() / portions + 1);
    requireSame(test::readVol(&pipe), reading, "little at a time is something else");
    const int first = size == 0 ? 0 : static_cast<int>(data[size / 2] * size / 256);
    requireSame(inTwoParts(bytes, first), reading, "in two parts it is something else");
    return 0;
}
