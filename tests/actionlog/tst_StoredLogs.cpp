#include <Vokit/Vokit.h>

#include <QBuffer>
#include <QtTest>

#include <memory>

/// The files in stored/ were made from the format, not by the library. Clients have such files: a
/// change that fails here loses their logs, so mend the change and not the file.
class tst_StoredLogs : public QObject
{
    Q_OBJECT

private slots:
    void written_data();
    void written();
    void read_data();
    void read();
    void continued();
};

namespace {

using Log = std::vector<std::unique_ptr<vo::LogEntry>>;

QDateTime afternoon()
{
    return {QDate(2026, 11, 21), QTime(15, 4, 5)};
}

template <class Entry, class... Values>
void add(Log &log, const char *user, const Values &...values)
{
    auto entry = std::make_unique<Entry>(values...);
    entry->setTime(afternoon());
    entry->setUser(QString::fromUtf8(user));
    log.push_back(std::move(entry));
}

Log allClasses()
{
    const QDateTime from(QDate(2026, 11, 20), QTime(8, 0));
    const QDateTime to(QDate(2026, 11, 20), QTime(9, 30, 59));
    const QDateTime zero = QDateTime::fromTime_t(0);
    Log log;
    add<vo::ActionLogContextSwitchEntry>(log, "ann (second)", "/logs/a.vol", "/logs/b.vol");
    add<ExportStartLogEntry>(
        log, "ann",
        "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'; Target='%3'.",
        "AVI", "Gate 1", "/media/usb", from, to);
    add<ExportWrittenLogEntry>(log, "ann", "Format='%1'; Source='%2'.", "unknown", "Gate 1", "",
                               zero, zero);
    add<ExportDoneLogEntry>(log, "", "3 clips");
    add<ExportErrorLogEntry>(log, "bob", "disk full");
    add<ExportAbortLogEntry>(log, "bob", "");
    add<ParseXMLLogEntry>(log, "Unknown", "Start tag expected.", "/logs/a.vol", 1, -7);
    add<ExportRenameLogEntry>(log, "ann", "'%1%2' to '%1%3'.", "/media/usb/", "", "new.avi");
    return log;
}

Log renamed()
{
    Log log;
    add<ExportDoneLogEntry>(log, "", "3 clips");
    add<ExportRenameLogEntry>(log, "ann", "'%1%2' to '%1%3'.", "/media/usb/", "old.avi", "new.avi");
    add<ExportErrorLogEntry>(log, "bob", "disk full");
    return log;
}

QString units(std::initializer_list<ushort> list)
{
    QString text; // not by a codec, which would take U+FFFE for a byte order mark
    for (const ushort unit : list)
        text += QChar(unit);
    return text;
}

QStringList texts()
{
    return {
        "<a href=\"x\">&amp;'</a>",
        "tab\tline\nreturn\r\n  blanks  ",
        QString::fromUtf8("é ß ñ Ω 东京 ") + units({0x202E, ' ', 0xA0, ' ', 0x85, ' ', 0x7F, ' '}) +
            QChar(0xFEFF),
        units({0xD83C, 0xDFA5, ' ', 0xDBFF, 0xDFFF}),
        units({'a', 0xD83C, 'b'}),
        units({0xDFA5}),
        units({0xDFA5, 0xD83C}),
        units({0xD83C, 0xD83C, 0xDFA5}),
        units({0xD83C, 1, 0xDFA5}),
        units({'a', 0, 1, 8, 0xB, 0xC, 0x1F, 'b'}),
        units({0xFFFE, 'c', 0xFFFF, 0xFFFD}),
        units({1, 2, 3}),
        "]]> <!-- --> <?x?> %1 &#0;",
    };
}

Log withTexts()
{
    Log log;
    for (const QString &text : texts())
        add<ExportDoneLogEntry>(log, "O'Hara & \"Söhne\" <x>", text);
    return log;
}

QByteArray stored(const char *name)
{
    QFile file(QStringLiteral(STORED_LOGS "/%1.vol").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

struct Header
{
    const char *name;
    const char *application;
    const char *language;
};

QByteArray written(const Header &header, const Log &log, bool ended)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, "", afternoon());
    writer.setStartDocumentName(QString::fromUtf8(header.name));
    writer.setAppVersion(header.application);
    writer.setLngVersion(header.language);
    writer.writeStartDocument();
    for (const auto &entry : log)
        entry->writeTo(writer);
    if (ended)
        writer.writeEndDocument();
    return buffer.data();
}

QString told(const vo::LogEntry &entry)
{
    QString text = entry.id().toString();
    for (const vo::LogValue *value : entry.values())
        text += '|' + value->toString();
    return text;
}

Log first(int count, Log log)
{
    log.resize(static_cast<std::size_t>(count));
    return log;
}

} // namespace

void tst_StoredLogs::written_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Header &header, const Log &log, bool ended) {
        QTest::newRow(name) << ::written(header, log, ended);
    };
    row("header", {"/logs/client.vol", "", ""}, {}, false);
    row("header-versions", {"/logs/client.vol", "7.1 \"beta\"", "de 12"}, {}, false);
    row("header-unnamed", {"", "", ""}, {}, false);
    row("entries", {"/logs/client.vol", "7.1", "12"}, allClasses(), false);
    row("rename", {"/logs/client.vol", "", ""}, renamed(), false);
    row("texts", {"/logs/é<&>\".vol", "", ""}, withTexts(), false);
    row("backup", {"", "", ""}, first(2, allClasses()), true);
}

void tst_StoredLogs::written()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytes, stored(QTest::currentDataTag()));
}

void tst_StoredLogs::read_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<int>("error");
    const auto row = [](const char *name, const Log &log, QXmlStreamReader::Error error) {
        QStringList entries;
        for (const auto &entry : log)
            entries.append(told(*entry));
        QTest::newRow(name) << entries << static_cast<int>(error);
    };
    const auto live = QXmlStreamReader::PrematureEndOfDocumentError;
    row("header", {}, live);
    row("header-versions", {}, live);
    row("header-unnamed", {}, live);
    row("entries", allClasses(), live);
    row("rename", first(1, renamed()), QXmlStreamReader::NotWellFormedError);
    row("backup", first(2, allClasses()), QXmlStreamReader::NoError);
    const QStringList asRead{
        texts().at(0),
        texts().at(1),
        texts().at(2),
        texts().at(3),
        "a?b",
        "?",
        "??",
        "?" + units({0xD83C, 0xDFA5}),
        "??",
        "ab",
        units({'c', 0xFFFD}),
        "",
        texts().at(12),
    };
    Log log;
    for (const QString &text : asRead)
        add<ExportDoneLogEntry>(log, "O'Hara & \"Söhne\" <x>", text);
    row("texts", log, live);
}

void tst_StoredLogs::read()
{
    QFile file(QStringLiteral(STORED_LOGS "/%1.vol").arg(QTest::currentDataTag()));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    vo::XMLLogReader reader(&file);
    QStringList entries;
    while (!reader.atEnd()) {
        const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
        // The last one tells why the reader stops.
        if (entry && reader.error() != QXmlStreamReader::NotWellFormedError)
            entries.append(told(*entry));
    }
    QTEST(entries, "entries");
    QTEST(static_cast<int>(reader.error()), "error");
}

// A writer that is new to a stored log goes on as the one before would have.
void tst_StoredLogs::continued()
{
    const QByteArray whole = stored("entries");
    const Log log = allClasses();
    const int split = whole.indexOf("<Entry ID=\"ExpE\"");
    QVERIFY(split > 0);
    QBuffer buffer;
    buffer.setData(whole.left(split));
    buffer.open(QIODevice::WriteOnly | QIODevice::Append);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, "", afternoon());
    for (std::size_t i = 4; i < log.size(); ++i)
        log.at(i)->writeTo(writer);
    QCOMPARE(buffer.data(), whole);
}

QTEST_GUILESS_MAIN(tst_StoredLogs)
#include "tst_StoredLogs.moc"
