#include <Vokit/Vokit.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <QRandomGenerator>

using vo::ProsaLogWriter;
using vo::XMLLogWriter;

namespace {

QDateTime start()
{
    return {QDate(2026, 11, 21), QTime(15, 4, 5, 678)};
}

/// A log in memory.
struct Xml
{
    QBuffer buffer;
    QTextStream stream{&buffer};
    XMLLogWriter writer{&stream, "not used", start()};

    Xml() { buffer.open(QIODevice::WriteOnly); }
    QByteArray text() const { return buffer.data(); }
    QByteArray take()
    {
        buffer.seek(0);
        const QByteArray text = buffer.data();
        buffer.buffer().clear();
        return text;
    }
};

const QByteArray gHeader =
    R"(<?xml version="1.0" encoding="UTF-8"?><Entries Version="v0.1" LogFile="" Date="2026-11-21T15:04:05")";
const QByteArray gTime = R"( Time="21 Nov 2026 15:04:05")";

/// An entry of one value.
class OneValue : public vo::LogEntry
{
public:
    OneValue(quint32 id, vo::LogValue &value)
        : m_id(id)
    {
        setTime(start());
        append(&value);
    }
    vo::FourChars id() const override { return m_id; }
    vo::LogCategory category() const override { return vo::LogCatNone; }
    QString descriptionText() const override { return {}; }
    QString action() const override { return QString::fromUtf8("\xc3\xa9tat"); }

private:
    vo::FourChars m_id;
};

QByteArray doneXml(const QByteArray &text)
{
    return R"(<Entry ID="ExpD")" + gTime + " Text=\"" + text + "\"/>";
}

void write(vo::ILogWriter &writer, const QString &text)
{
    const ExportDoneLogEntry entry(text);
    entry.setTime(start());
    entry.writeTo(writer);
}

/// Counts what reaches it, and fails as often as it is told.
class Device : public QIODevice
{
public:
    Device() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
    QList<QByteArray> writes;
    int failures = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        if (failures > 0) {
            --failures;
            return -1;
        }
        writes.append(QByteArray(data, static_cast<int>(size)));
        return size;
    }
};

} // namespace

class tst_LogWriters : public QObject
{
    Q_OBJECT

private slots:
    void startDocument_data();
    void startDocument();
    void noEntry();
    void entries();
    void value_data();
    void value();
    void names_data();
    void names();
    void escapesAsQtDoes();
    void halfAPairHarmsNothing();
    void endDocument_data();
    void endDocument();
    void nextDocument();
    void openRootTagStaysBehind();
    void noDevice();
    void closedDevice();
    void failedWrite();
    void oneWriteForAnEntry();
    void settings();

    void prose_data();
    void prose();
    void proseHasNoDocument();
    void proseOfLibraryClass();
};

void tst_LogWriters::startDocument_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<QByteArray>("attributes");
    const auto row = [](const char *name, const char *application, const char *language,
                        const QDateTime &date, const char *attributes) {
        QTest::newRow(attributes) << name << application << language << date
                                  << QByteArray(attributes);
    };
    const QDateTime utc(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC);
    row("", "", "", start(), R"(LogFile="" Date="2026-11-21T15:04:05")");
    row("/logs/a.vol", "", "", start(), R"(LogFile="/logs/a.vol" Date="2026-11-21T15:04:05")");
    row("a", "7.1", "12", start(),
        R"(LogFile="a" Date="2026-11-21T15:04:05" ApplicationVersion="7.1" LanguageVersion="12")");
    row("a", "7.1", "", start(),
        R"(LogFile="a" Date="2026-11-21T15:04:05" ApplicationVersion="7.1")");
    row("a", "", "12", start(), R"(LogFile="a" Date="2026-11-21T15:04:05" LanguageVersion="12")");
    row("a", " ", "", start(), R"(LogFile="a" Date="2026-11-21T15:04:05" ApplicationVersion=" ")");
    row("\"<&>\xc3\xa9", "<", "&", utc,
        "LogFile=\"&quot;&lt;&amp;&gt;\xc3\xa9\" Date=\"2026-01-02T03:04:05Z\" "
        "ApplicationVersion=\"&lt;\" LanguageVersion=\"&amp;\"");
    row("a", "", "", QDateTime(), R"(LogFile="a" Date="")");
}

void tst_LogWriters::startDocument()
{
    QFETCH(QString, name);
    QFETCH(QString, application);
    QFETCH(QString, language);
    QFETCH(QDateTime, date);
    QFETCH(QByteArray, attributes);
    Xml xml;
    XMLLogWriter writer(&xml.stream, "not used", date);
    writer.setStartDocumentName(name);
    writer.setAppVersion(application);
    writer.setLngVersion(language);
    writer.writeStartDocument();
    QCOMPARE(xml.text(),
             R"(<?xml version="1.0" encoding="UTF-8"?><Entries Version="v0.1" )" + attributes);
}

void tst_LogWriters::noEntry()
{
    Xml xml;
    xml.writer.writeStartDocument();
    QCOMPARE(xml.text(), gHeader);
}

void tst_LogWriters::entries()
{
    Xml xml;
    xml.writer.writeStartDocument();
    write(xml.writer, "one");
    QCOMPARE(xml.text(), gHeader + ">" + doneXml("one"));
    write(xml.writer, "");
    QCOMPARE(xml.text(), gHeader + ">" + doneXml("one") + R"(<Entry ID="ExpD")" + gTime + "/>");
    // A writer that is new to the file just goes on.
    XMLLogWriter other(&xml.stream, "", start());
    write(other, "two");
    QVERIFY(xml.text().endsWith("/>" + doneXml("two")));
}

void tst_LogWriters::value_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char *name, const QString &text, const char *written) {
        QTest::newRow(name) << text << QByteArray(written);
    };
    row("markup", "<&>\"'", "&lt;&amp;&gt;&quot;'");
    row("white space", " \t\n\r\r\n ", " &#9;&#10;&#13;&#13;&#10; ");
    row("entity", "&lt;&#0;", "&amp;lt;&amp;#0;");
    row("control", QString::fromLatin1("a\0\1\10\13\14\16\37b", 9), "ab");
    row("only control", QString(QChar(1)), "");
    row("delete and C1", QString(QChar(0x7F)) + QChar(0x85), "\x7f\xc2\x85");
    row("FFFD to FFFF", QString("a") + QChar(0xFFFD) + QChar(0xFFFE) + QChar(0xFFFF) + "b",
        "a\xef\xbf\xbd"
        "b");
    row("byte order mark", QString(QChar(0xFEFF)) + "a",
        "\xef\xbb\xbf"
        "a");
    row("pair", QString::fromUtf8("\xf0\x9f\x8e\xa5"), "\xf0\x9f\x8e\xa5");
    row("high alone", QString("a") + QChar(0xD83C) + "b", "a?b");
    row("low alone", QString(QChar(0xDFA5)), "?");
    row("high last", QString("a") + QChar(0xD83C), "a?");
    row("wrong way round", QString(QChar(0xDFA5)) + QChar(0xD83C), "??");
    row("two high", QString(QChar(0xD83C)) + QChar(0xD83C) + QChar(0xDFA5), "?\xf0\x9f\x8e\xa5");
    row("parted", QString(QChar(0xD83C)) + QChar(1) + QChar(0xDFA5), "??");
    row("parted by markup", QString(QChar(0xD83C)) + '<' + QChar(0xDFA5), "?&lt;?");
    row("placeholders", "%1 %n", "%1 %n");
}

void tst_LogWriters::value()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, written);
    Xml xml;
    write(xml.writer, text);
    QCOMPARE(xml.take(), doneXml(written));
    write(xml.writer, "next");
    QCOMPARE(xml.take(), doneXml("next"));
}

void tst_LogWriters::names_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("asValue");
    const auto row = [](quint32 id, const QByteArray &name, const QByteArray &asValue) {
        QTest::addRow("%08x", id) << id << name << asValue;
    };
    row(0x54657874, "Text", "Text");
    row(0x746F2020, "to  ", "to  ");
    row(0x20202020, "    ", "    ");
    row(0x00737263, QByteArray("\0src", 4), "src");
    row(0x3C223E26, "<\">&", "&lt;&quot;&gt;&amp;");
    row(0xE9747A7F, "\xc3\xa9tz\x7f", "\xc3\xa9tz\x7f");
    row(0xFF80C0BF, "\xc3\xbf\xc2\x80\xc3\x80\xc2\xbf", "\xc3\xbf\xc2\x80\xc3\x80\xc2\xbf");
}

void tst_LogWriters::names()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, asValue);
    Xml xml;
    vo::TLogValue<int> value(id, "long name", -5);
    const OneValue entry(id, value);
    entry.writeTo(xml.writer);
    QCOMPARE(xml.take(), "<Entry ID=\"" + asValue + '"' + gTime + ' ' + name + "=\"-5\"/>");
    value.setValue(0);
    entry.setTime(QDateTime());
    entry.setUser("ann");
    entry.writeTo(xml.writer);
    QCOMPARE(xml.take(), "<Entry ID=\"" + asValue + "\" User=\"ann\"/>");
}

// Whatever the characters, as long as the pairs are whole.
void tst_LogWriters::escapesAsQtDoes()
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        for (int i = 0; i < 12; ++i) {
            const uint limit = random.generate() % 3 == 0 ? 0x110000
                               : random.generate() % 2    ? 0x80
                                                          : 0x3000;
            const uint c = random.generate() % limit;
            if (c < 0xD800 || c > 0xDFFF)
                text += QString::fromUcs4(&c, 1);
        }
        QByteArray expected;
        QXmlStreamWriter qt(&expected);
        qt.writeStartElement("Entry");
        qt.writeAttribute("ID", "ExpD");
        qt.writeAttribute("Time", "21 Nov 2026 15:04:05");
        if (!text.isEmpty())
            qt.writeAttribute("Text", text);
        qt.writeEndElement();
        Xml xml;
        write(xml.writer, text);
        QCOMPARE(xml.text(), expected);
    }
}

void tst_LogWriters::halfAPairHarmsNothing()
{
    Xml xml;
    xml.writer.setStartDocumentName(QString("a") + QChar(0xD83C));
    xml.writer.writeStartDocument();
    xml.take();
    write(xml.writer, QString(QChar(0xD83C)));
    xml.take();
    // Nor does the next value complete it.
    write(xml.writer, QString(QChar(0xDFA5)));
    QCOMPARE(xml.take(), doneXml("?"));
    write(xml.writer, QString::fromUtf8("\xf0\x9f\x8e\xa5"));
    QCOMPARE(xml.take(), doneXml("\xf0\x9f\x8e\xa5"));
}

void tst_LogWriters::endDocument_data()
{
    QTest::addColumn<int>("entries");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("three") << 3;
}

// As Qt does it, byte for byte.
void tst_LogWriters::endDocument()
{
    QFETCH(int, entries);
    Xml xml;
    QByteArray expected;
    QXmlStreamWriter qt(&expected);
    xml.writer.writeStartDocument();
    qt.writeStartDocument("1.0");
    qt.writeStartElement("Entries");
    qt.writeAttribute("Version", "v0.1");
    qt.writeAttribute("LogFile", "");
    qt.writeAttribute("Date", "2026-11-21T15:04:05");
    for (int i = 0; i < entries; ++i) {
        write(xml.writer, "x");
        qt.writeStartElement("Entry");
        qt.writeAttribute("ID", "ExpD");
        qt.writeAttribute("Time", "21 Nov 2026 15:04:05");
        qt.writeAttribute("Text", "x");
        qt.writeEndElement();
    }
    xml.writer.writeEndDocument();
    qt.writeEndDocument();
    QCOMPARE(xml.text(), expected);
    QVERIFY(xml.text().endsWith(entries ? "</Entries>\n" : "/>\n"));
}

// The name is that of the new file, the date that of the writer.
void tst_LogWriters::nextDocument()
{
    Xml xml;
    xml.writer.setStartDocumentName("a");
    xml.writer.writeStartDocument();
    write(xml.writer, "1");
    QBuffer second;
    second.open(QIODevice::WriteOnly);
    xml.writer.setDevice(&second);
    xml.writer.setStartDocumentName("b");
    xml.writer.setAppVersion("2");
    xml.writer.writeStartDocument();
    write(xml.writer, "2");
    write(xml.writer, "3");
    QVERIFY(xml.text().endsWith(doneXml("1")));
    QCOMPARE(second.data(), QByteArray(gHeader).replace("LogFile=\"\"", "LogFile=\"b\"") +
                                " ApplicationVersion=\"2\">" + doneXml("2") + doneXml("3"));
}

void tst_LogWriters::openRootTagStaysBehind()
{
    Xml xml;
    xml.writer.writeStartDocument();
    QBuffer second;
    second.open(QIODevice::WriteOnly);
    xml.writer.setDevice(&second);
    xml.writer.writeStartDocument();
    QCOMPARE(xml.text(), gHeader);
    QCOMPARE(second.data(), gHeader);
    write(xml.writer, "x");
    QCOMPARE(xml.text(), gHeader);
    QCOMPARE(second.data(), gHeader + ">" + doneXml("x"));
}

void tst_LogWriters::noDevice()
{
    XMLLogWriter writer(nullptr, "", start());
    QVERIFY(!writer.device());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writer.setDevice(&buffer);
    QCOMPARE(writer.device(), static_cast<QIODevice *>(&buffer));
    writer.writeStartDocument();
    write(writer, "x");
    QCOMPARE(buffer.data(), gHeader + ">" + doneXml("x"));
}

// Nothing is written, and no file made.
void tst_LogWriters::closedDevice()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("a.vol"));
    QTextStream stream(&file);
    XMLLogWriter writer(&stream, "", start());
    writer.writeStartDocument();
    write(writer, "x");
    writer.writeEndDocument();
    QVERIFY(!file.isOpen());
    QVERIFY(!file.exists());
}

void tst_LogWriters::failedWrite()
{
    Device device;
    XMLLogWriter writer(nullptr, "", start());
    writer.setDevice(&device);
    writer.writeStartDocument();
    device.failures = 2;
    write(writer, "lost");
    write(writer, "lost too");
    write(writer, "kept");
    write(writer, "kept too");
    QCOMPARE(device.writes.join(), gHeader + ">" + doneXml("kept") + doneXml("kept too"));
}

// So that a crash leaves whole entries.
void tst_LogWriters::oneWriteForAnEntry()
{
    Device device;
    XMLLogWriter writer(nullptr, "", start());
    writer.setDevice(&device);
    writer.writeStartDocument();
    write(writer, "one");
    write(writer, QString(100000, 'x'));
    QCOMPARE(device.writes,
             (QList<QByteArray>{gHeader, ">" + doneXml("one"), doneXml(QByteArray(100000, 'x'))}));
}

void tst_LogWriters::settings()
{
    const Xml xml;
    QVERIFY(!xml.writer.autoFormatting());
    QCOMPARE(xml.writer.autoFormattingIndent(), 0);
}

void tst_LogWriters::prose_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<char>("separator");
    QTest::addColumn<QString>("written");
    QTest::newRow("values") << "a" << -7 << start() << '|'
                            << "text: a|line: -7|from: 21 Nov 2026 15:04:05|";
    QTest::newRow("none") << "" << 0 << QDateTime() << ' ' << "text:  line: 0 from:  ";
    QTest::newRow("plain") << "<\"&%1\n"
                           << 1000000 << QDateTime() << '\n'
                           << "text: <\"&%1\n\nline: 1000000\nfrom: \n";
}

void tst_LogWriters::prose()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QFETCH(QDateTime, date);
    QFETCH(char, separator);
    QString written;
    QTextStream stream(&written);
    ProsaLogWriter writer(stream, separator);
    writer.writeAttribute(vo::TLogValue<QString>(1, "text", text));
    writer.writeAttribute(vo::TLogValue<int>(2, "line", number));
    writer.writeAttribute(vo::TLogValue<QDateTime>(3, "from", date));
    stream.flush();
    QTEST(written, "written");
}

void tst_LogWriters::proseHasNoDocument()
{
    QString written;
    QTextStream stream(&written);
    ProsaLogWriter writer(stream, ';');
    writer.setStartDocumentName("a");
    writer.setAppVersion("b");
    writer.setLngVersion("c");
    writer.writeStartDocument();
    writer.writeStartElement(ExportDoneLogEntry("x"));
    writer.writeEndDocument();
    stream.flush();
    QCOMPARE(written, QString());
    vo::TLogValue<QString> value(1, "v", "x");
    writer.writeEndElement(OneValue(1, value));
    // The end of the line flushes.
    QCOMPARE(written, QString::fromUtf8("\xc3\xa9tat\n"));
}

void tst_LogWriters::proseOfLibraryClass()
{
    QString written;
    QTextStream stream(&written);
    ProsaLogWriter writer(stream, ' ');
    const ParseXMLLogEntry problem("bad", "", 1, 0);
    problem.setTime(start());
    problem.writeTo(writer);
    write(writer, "3 clips");
    QCOMPARE(written, QString("Time: 21 Nov 2026 15:04:05 User:  source: bad error:  line: 1 "
                              "colunm: 0 Action log error\n"
                              "Time: 21 Nov 2026 15:04:05 User:  text: 3 clips Export done\n"));
}

QTEST_GUILESS_MAIN(tst_LogWriters)
#include "tst_LogWriters.moc"
