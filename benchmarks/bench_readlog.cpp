#include "Exports.h"
#include "Report.h"

#include <Vokit/ActionLog>
#include <Vokit/ExpressionOperators>
#include <Vokit/TypedProperties>
#include <Vokit/XMLLogWriter>
#include <VokitExtras/VolFile>
#include <VokitExtras/VolRow>

#include <pugixml.hpp>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cstring>

#include <malloc.h>

using namespace vo;

namespace {

constexpr int gEntries = 100000;

/// What a contestant has read; it goes when the clock stands.
class Reading
{
public:
    Reading() = default;
    virtual ~Reading() = default;
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    virtual void read(const QString &fileName) = 0;
    virtual bool hasRead(const std::vector<Export> &records) const = 0;
};

class LibraryReading : public Reading
{
public:
    void read(const QString &fileName) override
    {
        m_log = std::make_unique<ActionLog>(fileName);
        m_log->readLog();
    }

    bool hasRead(const std::vector<Export> &records) const override
    {
        const auto same = [](const LogEntry *entry, const Export &record) {
            return entry->time() == record.time && toLine(*entry) == toLine(record);
        };
        const QList<LogEntry *> &all = m_log->entries();
        return std::equal(all.begin(), all.end(), records.begin(), records.end(), same);
    }

private:
    std::unique_ptr<ActionLog> m_log;
};

/// For peers that touch each value and keep none.
class Walk : public Reading
{
public:
    bool hasRead(const std::vector<Export> &records) const override
    {
        qint64 length = 0;
        for (const Export &record : records) {
            for (const QString &value :
                 {QStringLiteral("ExpS"), toShortText(record.time), record.user, record.text,
                  record.format, record.source, record.dest, toShortText(record.from),
                  toShortText(record.to)})
                length += lengthOf(value);
        }
        return m_length == length;
    }

protected:
    virtual int lengthOf(const QString &value) const = 0;

    qint64 m_length = 0; ///< of all values
};

class XmlReaderWalk : public Walk
{
public:
    void read(const QString &fileName) override { m_length = walkedLength(fileName); }

private:
    int lengthOf(const QString &value) const override { return value.size(); }
};

class PugixmlWalk : public Walk
{
public:
    void read(const QString &fileName) override
    {
        QFile file(fileName);
        file.open(QIODevice::ReadOnly);
        m_text = file.readAll() + "</Entries>";
        m_document.load_buffer_inplace(m_text.data(), static_cast<std::size_t>(m_text.size()));
        for (const pugi::xml_node &entry : m_document.child("Entries").children("Entry")) {
            for (const pugi::xml_attribute &attribute : entry.attributes())
                m_length += static_cast<qint64>(std::strlen(attribute.value()));
        }
    }

private:
    int lengthOf(const QString &value) const override { return value.toUtf8().size(); }

    QByteArray m_text;
    pugi::xml_document m_document;
};

/// As a program does that shows a log, or makes sure of it.
class VolFileWalk : public Walk
{
public:
    void read(const QString &fileName) override
    {
        QFile file(fileName);
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        VolFile log(&file);
        while (log.readNext() == VolFile::Entry) {
            const VolEntry &entry = log.entry();
            for (int i = 0; i < entry.attributeCount(); ++i)
                m_length += entry.value(i).size();
        }
    }

private:
    int lengthOf(const QString &value) const override { return value.size(); }
};

/// As a program does that filters a log.
class VolRowsWalk : public Reading
{
public:
    void read(const QString &fileName) override
    {
        QFile file(fileName);
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        VolFile log(&file);
        VolRow row;
        const vogen::ExpressionHandle filter = vogen::StringProperty("source") == camera();
        while (log.readNext() == VolFile::Entry) {
            row.read(log.entry());
            m_matches += filter->evaluate(row.set(), nullptr).toBool() ? 1 : 0;
        }
    }

    bool hasRead(const std::vector<Export> &records) const override
    {
        return m_matches > 0 &&
               m_matches == std::count_if(records.begin(), records.end(), [](const Export &record) {
                   return record.source == camera();
               });
    }

private:
    static QString camera() { return QStringLiteral("Gate & hall, north/Camera 07"); }

    qint64 m_matches = 0;
};

template <class Kind>
std::unique_ptr<Reading> make()
{
    return std::make_unique<Kind>();
}

struct Contestant
{
    const char *name;
    std::unique_ptr<Reading> (*make)();
};

constexpr Contestant gContestants[] = {{"readlog/library", make<LibraryReading>},
                                       {"readlog/xml_reader", make<XmlReaderWalk>},
                                       {"readlog/pugixml", make<PugixmlWalk>},
                                       {"readlog/vol_file", make<VolFileWalk>},
                                       {"readlog/vol_rows", make<VolRowsWalk>}};

// As the library leaves a log: the root is never closed.
void writeLog(const QString &fileName, const std::vector<Export> &records)
{
    QFile file(fileName);
    require(file.open(QIODevice::WriteOnly | QIODevice::Text), "readlog: no file");
    QTextStream stream(&file);
    XMLLogWriter writer(&stream, QString(), QDateTime::currentDateTime());
    writer.writeStartDocument();
    for (const Export &record : records) {
        const std::unique_ptr<ExportStartLogEntry> entry = toEntry(record);
        entry->setTime(record.time);
        entry->setUser(record.user);
        entry->writeTo(writer);
    }
}

void check(const QString &fileName, const std::vector<Export> &records)
{
    for (const Contestant &contestant : gContestants) {
        const std::unique_ptr<Reading> reading = contestant.make();
        reading->read(fileName);
        require(reading->hasRead(records), contestant.name);
    }
}

qint64 bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
}

void measure(benchmark::State &state, const Contestant &contestant, const QString &fileName)
{
    double bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const qint64 before = bytesInUse();
        std::unique_ptr<Reading> reading = contestant.make();
        state.ResumeTiming();
        reading->read(fileName);
        state.PauseTiming();
        bytes = static_cast<double>(bytesInUse() - before);
        reading.reset();
        state.ResumeTiming();
    }
    reportTimePerItem(state, gEntries);
    state.counters["bytes_per_entry"] = bytes / gEntries;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir directory(QCoreApplication::applicationDirPath() +
                                  QStringLiteral("/readlog-XXXXXX"));
    const QString fileName = directory.filePath(QStringLiteral("log.vol"));
    {
        const std::vector<Export> records = exports(gEntries);
        writeLog(fileName, records);
        check(fileName, records);
    }
    for (const Contestant &contestant : gContestants) {
        benchmark::RegisterBenchmark(
            (contestant.name + zoneSuffix()).c_str(),
            [&](benchmark::State &state) { measure(state, contestant, fileName); })
            ->Iterations(1);
    }
    return runBenchmarks(argc, argv);
}
