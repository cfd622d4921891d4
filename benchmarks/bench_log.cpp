#include "LogContestant.h"
#include "Report.h"

#include <Vokit/ActionLog>
#include <Vokit/ILogUserSource>
#include <Vokit/XMLLogWriter>

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <QXmlStreamWriter>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

using namespace vo;

namespace {

constexpr int gEntries = 20000;
constexpr int gSplitSize = 1024 * 1024;
constexpr int gWatchedEntries = 100; ///< after each of them, the file must have grown
constexpr char gSpdlogPattern[] = "%d %b %Y %H:%M:%S %v";
constexpr int gSpdlogPrefix = 21; ///< characters before %v

std::vector<LogContestant> &contestants()
{
    static std::vector<LogContestant> all;
    return all;
}

const std::vector<std::unique_ptr<ExportStartLogEntry>> &entries()
{
    static const auto all = [] {
        std::vector<std::unique_ptr<ExportStartLogEntry>> made;
        for (const Export &record : preparedExports().records)
            made.push_back(toEntry(record));
        return made;
    }();
    return all;
}

QString logFile(const QString &directory)
{
    return directory + QStringLiteral("/log.vol");
}

class SignedIn : public ILogUserSource
{
public:
    QString primaryName() const override { return m_primary; }
    QString secondaryName() const override { return m_secondary; }

private:
    const QString m_primary = QString::fromUtf8(gPrimaryName);
    const QString m_secondary = QString::fromUtf8(gSecondaryName);
};

class LibrarySink : public LogSink
{
public:
    LibrarySink(const QString &directory, ActionLog::ESplitPolicy policy)
        : m_log(logFile(directory))
    {
        m_log.setUserSource(&m_user);
        m_log.setSplitPolicy(policy, gSplitSize);
        m_log.setSuspended(false);
        // An archive is named by the application and the second, and a client doesn't fill two in
        // one second: here, each gets a name of its own.
        nameNextArchive();
        QObject::connect(&m_log, &ActionLog::logEntriesRemoved, [this] { nameNextArchive(); });
    }

    void append(std::size_t index) override { m_log.log(*entries()[index]); }

private:
    void nameNextArchive() { QCoreApplication::setApplicationName(QString::number(++m_archives)); }

    SignedIn m_user;
    ActionLog m_log;
    int m_archives = 0;
};

enum class Dates { Formatted, Finished };

class XmlWriterSink : public LogSink
{
public:
    XmlWriterSink(const QString &directory, Dates dates)
        : m_file(logFile(directory))
        , m_dates(dates)
    {
        require(m_file.open(QIODevice::WriteOnly | QIODevice::Text), "log: no file");
        m_xml.setDevice(&m_file);
        m_xml.writeStartDocument();
        m_xml.writeStartElement(QStringLiteral("Entries"));
        m_xml.writeAttribute(QStringLiteral("Version"), QStringLiteral("v0.1"));
    }

    void append(std::size_t index) override
    {
        const PreparedExports &all = preparedExports();
        const Export &record = all.records[index];
        const bool finished = m_dates == Dates::Finished;
        m_xml.writeStartElement(QStringLiteral("Entry"));
        m_xml.writeAttribute(QStringLiteral("ID"), QStringLiteral("ExpS"));
        m_xml.writeAttribute(QStringLiteral("Time"),
                             finished ? all.times[index] : toShortText(record.time));
        m_xml.writeAttribute(QStringLiteral("User"), record.user);
        m_xml.writeAttribute(QStringLiteral("Text"), record.text);
        m_xml.writeAttribute(QStringLiteral("Form"), record.format);
        m_xml.writeAttribute(QStringLiteral("srcP"), record.source);
        m_xml.writeAttribute(QStringLiteral("dstP"), record.dest);
        m_xml.writeAttribute(QStringLiteral("from"),
                             finished ? all.froms[index] : toShortText(record.from));
        m_xml.writeAttribute(QStringLiteral("to"),
                             finished ? all.tos[index] : toShortText(record.to));
        m_xml.writeEndElement();
        m_file.flush();
    }

private:
    QFile m_file;
    QXmlStreamWriter m_xml;
    const Dates m_dates;
};

class SpdlogSink : public LogSink
{
public:
    explicit SpdlogSink(const spdlog::sink_ptr &sink)
        : m_logger("bench", sink)
    {
        m_logger.set_pattern(gSpdlogPattern);
        m_logger.flush_on(spdlog::level::info);
    }

    void append(std::size_t index) override { m_logger.info(preparedExports().lines[index]); }

private:
    spdlog::logger m_logger;
};

// What the library writes, entry by entry; the start of the document stands ahead of the first.
const std::vector<QByteArray> &finishedBytes()
{
    static const auto all = [] {
        std::vector<QByteArray> made;
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QTextStream stream(&buffer);
        XMLLogWriter writer(&stream, QString(), QDateTime::currentDateTime());
        writer.writeStartDocumentWithNextEntry();
        for (std::size_t i = 0; i < entries().size(); ++i) {
            entries()[i]->setTime(preparedExports().records[i].time);
            entries()[i]->setUser(preparedExports().records[i].user);
            entries()[i]->writeTo(writer);
            made.push_back(buffer.data());
            buffer.seek(0);
            buffer.buffer().clear();
        }
        return made;
    }();
    return all;
}

class WriteSink : public LogSink
{
public:
    explicit WriteSink(const QString &directory)
        : m_file(::open(QFile::encodeName(logFile(directory)).constData(),
                        O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644))
    {
        require(m_file >= 0, "log: no file");
        finishedBytes();
    }
    ~WriteSink() override { ::close(m_file); }

    void append(std::size_t index) override
    {
        const QByteArray &bytes = finishedBytes()[index];
        require(::write(m_file, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
                    bytes.size(),
                "log: write failed");
    }

private:
    const int m_file;
};

QStringList readEntries(const QByteArray &file)
{
    const QTemporaryDir directory;
    QFile copy(logFile(directory.path()));
    copy.open(QIODevice::WriteOnly);
    copy.write(file);
    copy.close();
    ActionLog log(copy.fileName());
    log.readLog();
    QStringList lines;
    for (const LogEntry *entry : log.entries()) {
        if (entry->time().isValid())
            lines.append(toLine(*entry));
    }
    return lines;
}

QStringList readLines(const QByteArray &file)
{
    QStringList lines = QString::fromUtf8(file).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString &line : lines)
        line.remove(0, gSpdlogPrefix);
    return lines;
}

// Beside the program: a file in memory costs less than one on a disk.
QString pathTemplate()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/log-XXXXXX");
}

QFileInfoList filesIn(const QTemporaryDir &directory)
{
    return QDir(directory.path()).entryInfoList(QDir::Files);
}

qint64 sizeOf(const QFileInfoList &files)
{
    qint64 size = 0;
    for (const QFileInfo &file : files)
        size += file.size();
    return size;
}

void check(const LogContestant &contestant)
{
    const QTemporaryDir directory(pathTemplate());
    {
        const std::unique_ptr<LogSink> sink = contestant.begin(directory.path());
        for (int i = 0; i < gEntries; ++i) {
            const bool watched = i < gWatchedEntries;
            const qint64 before = watched ? sizeOf(filesIn(directory)) : 0;
            sink->append(static_cast<std::size_t>(i));
            require(!watched || sizeOf(filesIn(directory)) > before, "log: not flushed");
        }
    }
    QStringList lines;
    for (const QFileInfo &info : filesIn(directory)) {
        QFile file(info.filePath());
        require(file.open(QIODevice::ReadOnly), "log: a file can't be read");
        lines += contestant.read(file.readAll());
    }
    QStringList expected;
    for (const std::string &line : preparedExports().lines)
        expected.append(QString::fromStdString(line));
    lines.sort();
    expected.sort();
    require(lines == expected, contestant.name);
}

void measure(benchmark::State &state, const LogContestant &contestant)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            const QTemporaryDir directory(pathTemplate());
            std::unique_ptr<LogSink> sink = contestant.begin(directory.path());
            state.ResumeTiming();
            for (std::size_t i = 0; i < gEntries; ++i)
                sink->append(i);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    reportTimePerItem(state, gEntries);
}

template <class Sink, typename... Arguments>
void add(const char *name, QStringList (*read)(const QByteArray &), Arguments... arguments)
{
    addContestant(
        {name,
         [=](const QString &directory) { return std::make_unique<Sink>(directory, arguments...); },
         read});
}

void addSpdlog(const char *name, spdlog::sink_ptr (*open)(const std::string &file))
{
    addContestant({name,
                   [open](const QString &directory) {
                       return std::make_unique<SpdlogSink>(open(logFile(directory).toStdString()));
                   },
                   readLines});
}

} // namespace

const PreparedExports &preparedExports()
{
    static const PreparedExports all = [] {
        PreparedExports made;
        made.records = exports(gEntries);
        for (const Export &record : made.records) {
            made.times.push_back(toShortText(record.time));
            made.froms.push_back(toShortText(record.from));
            made.tos.push_back(toShortText(record.to));
            made.lines.push_back(toLine(record).toStdString());
        }
        return made;
    }();
    return all;
}

bool addContestant(LogContestant contestant)
{
    contestants().push_back(std::move(contestant));
    return true;
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (QStorageInfo(QCoreApplication::applicationDirPath()).fileSystemType() == "tmpfs")
        std::fputs("bench_log: the files lie in memory, where a flush costs less\n", stderr);
    add<LibrarySink>("log/library", readEntries, ActionLog::SplitNone);
    add<LibrarySink>("log/library_split", readEntries, ActionLog::SplitBySize);
    add<XmlWriterSink>("log/xml_writer_dates", readEntries, Dates::Formatted);
    add<XmlWriterSink>("log/xml_writer_finished", readEntries, Dates::Finished);
    add<WriteSink>("log/write", readEntries);
    addSpdlog("log/spdlog", [](const std::string &file) -> spdlog::sink_ptr {
        return std::make_shared<spdlog::sinks::basic_file_sink_mt>(file);
    });
    addSpdlog("log/spdlog_split", [](const std::string &file) -> spdlog::sink_ptr {
        return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(file, gSplitSize, 100);
    });
    for (const LogContestant &contestant : contestants()) {
        check(contestant);
        benchmark::RegisterBenchmark(
            (contestant.name + zoneSuffix()).c_str(),
            [&contestant](benchmark::State &state) { measure(state, contestant); })
            ->Iterations(3);
    }
    return runBenchmarks(argc, argv);
}
