#include "VolReading.h"

#include <Vokit/Vokit.h>

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

using vo::ActionLog;
using vo::VolFile;

namespace {

const QString gText = QString::fromUtf8(" <&>\"'\t\r\n \xC3\xA9\xF0\x9F\x8E\xA5%1 ]]> --> ");

std::vector<std::unique_ptr<vo::LogEntry>> allClasses(const QString &text)
{
    const QDateTime date(QDate(2026, 5, 3), QTime(1, 2, 3));
    std::vector<std::unique_ptr<vo::LogEntry>> list;
    list.push_back(std::make_unique<vo::ActionLogContextSwitchEntry>(text, text));
    list.push_back(
        std::make_unique<ExportStartLogEntry>(text, text, text, text, date, QDateTime()));
    list.push_back(
        std::make_unique<ExportWrittenLogEntry>(text, text, text, text, QDateTime(), date));
    list.push_back(std::make_unique<ExportDoneLogEntry>(text));
    list.push_back(std::make_unique<ExportErrorLogEntry>(text));
    list.push_back(std::make_unique<ExportAbortLogEntry>(text));
    list.push_back(std::make_unique<ExportRenameLogEntry>(text, text, QString(), text));
    list.push_back(std::make_unique<ParseXMLLogEntry>(text, text, -1, 1234567));
    for (const auto &entry : list) {
        entry->setTime(date);
        entry->setUser(text);
    }
    return list;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

/// VolFile beside XMLLogReader: on files that are there, and on all that the library writes.
class tst_VolOracle : public QObject
{
    Q_OBJECT

private slots:
    void theOracleComplains_data();
    void theOracleComplains();
    void storedLogs_data();
    void storedLogs();
    void fuzzCorpus_data();
    void fuzzCorpus();
    void writer_data();
    void writer();
    void renamed();
    void liveLog();
    void backup();
};

void tst_VolOracle::theOracleComplains_data()
{
    QTest::addColumn<QByteArray>("readBytes");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray log = R"(<Entries><Entry ID="ExpD" Text="a"/></Entries>)";
    const auto row = [&log](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << log << bytes;
    };
    row("other value", R"(<Entries><Entry ID="ExpD" Text="b"/></Entries>)");
    row("other class", R"(<Entries><Entry ID="ExpE" Text="a"/></Entries>)");
    row("an entry more", R"(<Entries><Entry ID="ExpD" Text="a"/><Entry ID="ExpD"/></Entries>)");
    row("an entry less", "<Entries></Entries>");
    row("open root", R"(<Entries><Entry ID="ExpD" Text="a"/>)");
    row("not well-formed", R"(<Entries><Entry ID="ExpD" Text="a"/></Log>)");
    row("bytes in front", "x" + log);
    row("bytes behind", log + "x");
}

// A reading of one file is held against another one.
void tst_VolOracle::theOracleComplains()
{
    QFETCH(QByteArray, readBytes);
    QFETCH(QByteArray, bytes);
    const test::VolReading reading = test::readVol(readBytes);
    QCOMPARE(test::disagreement(reading, readBytes), QString());
    QVERIFY(!test::disagreement(reading, bytes).isEmpty());
}

void tst_VolOracle::storedLogs_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator files(STORED_LOGS, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(files.fileName())) << path;
    }
}

void tst_VolOracle::storedLogs()
{
    QFETCH(QString, path);
    const QByteArray bytes = contents(path);
    if (!path.endsWith("rename.vol")) {
        QCOMPARE(test::complaint(bytes), QString());
        return;
    }
    // Where XMLLogReader stops: the entry comes, and all behind it.
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::misreading(reading, bytes), QString());
    QCOMPARE(reading.gapCount, 1);
    QCOMPARE(int(reading.firstGap.kind), int(vo::VolGap::IllegalCharacter));
    QCOMPARE(reading.firstGap.length, 4);
    QCOMPARE(reading.entryCount, 3);
    QCOMPARE(reading.entries().at(1).toLogEntry()->description(),
             QString("'/media/usb/old.avi' to '/media/usb/new.avi'."));
}

void tst_VolOracle::fuzzCorpus_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator files(FUZZ_CORPUS, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.contains("_log/") || path.contains("vol_file/"))
            QTest::newRow(qPrintable(files.fileName())) << path;
    }
}

void tst_VolOracle::fuzzCorpus()
{
    QFETCH(QString, path);
    QCOMPARE(test::disagreement(contents(path)), QString());
}

void tst_VolOracle::writer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isEnded");
    for (const bool isEnded : {false, true}) {
        const char *const end = isEnded ? "ended" : "live";
        QTest::addRow("no entry, %s", end) << "" << 0 << isEnded;
        QTest::addRow("empty values, %s", end) << "" << 8 << isEnded;
        QTest::addRow("odd text, %s", end) << gText << 8 << isEnded;
        QTest::addRow("long text, %s", end) << gText.repeated(500) << 8 << isEnded;
        QTest::addRow("what XML doesn't know, %s", end)
            << QString("a\x01") + QChar(0) + QChar(0xFFFE) + QChar(0xD800) << 8 << isEnded;
    }
}

void tst_VolOracle::writer()
{
    QFETCH(QString, text);
    QFETCH(int, count);
    QFETCH(bool, isEnded);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, "", QDateTime(QDate(2026, 11, 21), QTime(15, 4)));
    writer.setStartDocumentName(text);
    writer.setAppVersion(text);
    writer.writeStartDocument();
    QCOMPARE(test::complaint(buffer.data()), QString());
    for (const auto &entry : allClasses(text)) {
        if (--count < 0)
            break;
        entry->writeTo(writer);
        QCOMPARE(test::complaint(buffer.data()), QString());
    }
    if (isEnded)
        writer.writeEndDocument();
    QCOMPARE(test::complaint(buffer.data()), QString());
    const test::VolReading reading = test::readVol(buffer.data());
    QCOMPARE(reading.condition, isEnded ? VolFile::Complete : VolFile::Live);
}

void tst_VolOracle::renamed()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, "", QDateTime());
    writer.writeStartDocument();
    const ExportRenameLogEntry rename("'%1%2' to '%1%3'.", "/media/", gText, "new.avi");
    rename.setUser("ann");
    rename.writeTo(writer);
    ExportDoneLogEntry(gText).writeTo(writer);
    const test::VolReading reading = test::readVol(buffer.data());
    QCOMPARE(test::misreading(reading, buffer.data()), QString());
    QCOMPARE(reading.entryCount, 2);
    QCOMPARE(reading.gapCount, 1);
    const std::unique_ptr<vo::LogEntry> entry = reading.entries().at(0).toLogEntry();
    for (int i = 0; i < rename.values().size(); ++i)
        QCOMPARE(entry->values().at(i)->toString(), rename.values().at(i)->toString());
}

// As it is on disk behind each entry, and when a second process goes on.
void tst_VolOracle::liveLog()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.vol");
    for (int session = 0; session < 2; ++session) {
        ActionLog log(path);
        log.setSplitPolicy(ActionLog::SplitNone, 0);
        log.setSuspended(false);
        for (const auto &entry : allClasses(gText)) {
            log.log(*entry);
            QCOMPARE(test::complaint(contents(path)), QString());
        }
    }
    const test::VolReading reading = test::readVol(contents(path));
    QCOMPARE(reading.entryCount, 16);
    QCOMPARE(reading.condition, VolFile::Live);
}

void tst_VolOracle::backup()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("b.vol");
    ActionLog log(folder.filePath("a.vol"));
    log.setSuspended(false);
    for (const auto &entry : allClasses(gText))
        log.log(*entry);
    QList<vo::LogEntry *> list = log.entries();
    QVERIFY(log.backupEntries(list, path));
    QCOMPARE(test::complaint(contents(path)), QString());
    QCOMPARE(test::readVol(contents(path)).condition, VolFile::Complete);
    QCOMPARE(test::readVol(contents(path)).entryCount, 8);
}

QTEST_GUILESS_MAIN(tst_VolOracle)
#include "tst_VolOracle.moc"
