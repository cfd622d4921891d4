#include "VolDevices.h"
#include "VolReading.h"

#include <Vokit/LogEntryOf>

#include <VokitExtras/VolWriter>

#include <QtTest>

using vo::VolFile;
using vo::VolWriter;

namespace {

/// A class with two identifiers that XML doesn't allow, and that become the same one.
class Odd : public vo::LogEntryOf<Odd, 0x4F646420, vo::LogCatSystem>
{
public:
    Odd()
        : m_first(0x00737263, "first", QString())
        , m_second(0x01737263, "second", QString())
        , m_taken(0x73726320, "taken", QString())
        , m_digits(0x31323320, "digits", QString())
        , m_none(0x00010203, "none", QString())
    {
        for (vo::LogValue *value : std::initializer_list<vo::LogValue *>{
                 &m_first, &m_second, &m_taken, &m_digits, &m_none})
            append(value);
    }
    static vo::LogEntry *create() { return new Odd; }

    static constexpr const char *sAction = "Odd";
    static constexpr const char *sDescriptionText = "%1%2%3%4%5";

private:
    static const vo::LogEntryRegistrar sRegistrar;
    vo::TLogValue<QString> m_first;
    vo::TLogValue<QString> m_second;
    vo::TLogValue<QString> m_taken;
    vo::TLogValue<QString> m_digits;
    vo::TLogValue<QString> m_none;
};
const vo::LogEntryRegistrar Odd::sRegistrar = Odd::registrar();

const QByteArray gDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
const QByteArray gEntry = R"(<Entry ID="ExpD"/>)";

QByteArray zeroed(QByteArray text)
{
    return text.replace('^', '\0');
}

/// All that can be read of some bytes, written anew.
QByteArray rescued(const QByteArray &bytes)
{
    const test::VolReading reading = test::readVol(bytes);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    VolWriter writer(&buffer);
    bool isDone =
        writer.writeStart(reading.headers.empty() ? vo::VolHeader() : reading.headers.back());
    for (const vo::VolEntry &entry : reading.entries())
        isDone = writer.write(entry) && isDone;
    return writer.writeEnd() && isDone ? buffer.data() : QByteArray("not written");
}

} // namespace

class tst_VolWriter : public QObject
{
    Q_OBJECT

private slots:
    void rescue_data();
    void rescue();
    void noHeader();
    void oddNames_data();
    void oddNames();
    void failingDevice();
    void bytesStay();
};

void tst_VolWriter::rescue_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("rescued");
    const auto row = [](const char *name, const QByteArray &bytes, const QByteArray &rescued) {
        QTest::newRow(name) << bytes << gDeclaration + rescued + "</Entries>\n";
    };
    const QByteArray root = R"(<Entries Version="v0.1" LogFile="a&amp;'b" Date="x">)";
    row("complete", gDeclaration + root + gEntry + "</Entries>", root + gEntry);
    row("live", root + gEntry, root + gEntry);
    row("no entry", root, root);
    row("header without its end", root.chopped(1), root);
    row("header without its end, a line feed", root.chopped(1) + " \n", root);
    row("header unfinished, an entry behind", root.chopped(1) + gEntry, root + gEntry);
    row("root without attributes", "<Entries>" + gEntry, "<Entries>" + gEntry);
    row("empty root", "<Entries/>", "<Entries>");
    row("empty root with attributes", R"(<Entries V="1" />)", R"(<Entries V="1" >)");
    row("single quotes and lines", "<Entries\nV='\"'>" + gEntry, "<Entries\nV='\"'>" + gEntry);
    row("the second of two headers", "<Entries>" + gEntry + root + gEntry, root + gEntry + gEntry);
    row("damage between", root + gEntry + "x<Entry ID=" + gEntry, root + gEntry + gEntry);
    row("bytes as they are", root + "<Entry\tID='Nope' a = \"&#65;>\"> </Entry >",
        root + "<Entry\tID='Nope' a = \"&#65;>\"> </Entry >");
}

void tst_VolWriter::rescue()
{
    QFETCH(QByteArray, bytes);
    const QByteArray written = rescued(bytes);
    QTEST(written, "rescued");
    QCOMPARE(test::complaint(written), QString());
    QCOMPARE(test::readVol(written).condition, VolFile::Complete);
    QCOMPARE(test::readByReader(written).error, QXmlStreamReader::NoError);
    QCOMPARE(rescued(written), written);
}

void tst_VolWriter::noHeader()
{
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    const QByteArray written = rescued("x" + gEntry);
    QCOMPARE(test::complaint(written), QString());
    const test::VolReading reading = test::readVol(written);
    QCOMPARE(reading.entryCount, 1);
    const vo::VolHeader &header = reading.headers.at(0);
    QCOMPARE(header.name(0) + '=' + header.value(0), QString("Version=v0.1"));
    QCOMPARE(header.name(1) + '=' + header.value(1), QString("LogFile="));
    QVERIFY(header.date() >= before && header.date() <= QDateTime::currentDateTime());
}

void tst_VolWriter::oddNames_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char *name, const QByteArray &entry, const QByteArray &written) {
        QTest::newRow(name) << zeroed(entry) << written;
    };
    row("behind the others", R"(<Entry ID="ExpR" Text="t" ^src="old" dest="new"/>)",
        R"(<Entry ID="ExpR" Text="t" dest="new" src="old"/>)");
    row("the name is taken", R"(<Entry ID="ExpR" ^src="old" src="x"/>)",
        R"(<Entry ID="ExpR" src="x" _src="old"/>)");
    row("the other quotes", R"(<Entry ID='ExpR' ^src='say "x"' />)",
        R"(<Entry ID='ExpR' src='say "x"'/>)");
    row("with an end tag", R"(<Entry ID="ExpR" ^src = "&lt;>"> </Entry>)",
        R"(<Entry ID="ExpR" src="&lt;>"/>)");
    row("the class has that name", R"(<Entry ID="Odd" ^src="1"/>)",
        R"(<Entry ID="Odd" _src="1"/>)");
    row("two that become one", "<Entry ID=\"Odd\" ^src=\"1\" \1src=\"2\"/>",
        R"(<Entry ID="Odd" _src="1" __src="2"/>)");
    row("one that says so in its value", "<Entry ID=\"Odd\" ^src=\" __src='\" \1src=\"2\"/>",
        R"(<Entry ID="Odd" _src=" __src='" ___src="2"/>)");
    row("a digit first", R"(<Entry ID="Odd" 123="1"/>)", R"(<Entry ID="Odd" _="1"/>)");
    row("nothing is left", "<Entry ID=\"Odd\" ^\1\2\3=\"1\"/>", R"(<Entry ID="Odd" _="1"/>)");
}

void tst_VolWriter::oddNames()
{
    QFETCH(QByteArray, entry);
    QFETCH(QByteArray, written);
    const vo::VolEntry read = test::readVol("<Entries>" + entry + gEntry).entries().at(0);
    QCOMPARE(read.bytes(), entry);
    QVERIFY(!read.isWellFormed());
    QCOMPARE(read.wellFormedBytes(), written);
    const QByteArray log = rescued("<Entries>" + entry + gEntry);
    QCOMPARE(test::complaint(log), QString());
    QCOMPARE(test::readByReader(log).error, QXmlStreamReader::NoError);
    const test::VolReading again = test::readVol(log);
    QCOMPARE(again.entryCount, 2);
    // All but the odd values are read as before.
    const vo::VolEntry saved = again.entries().at(0);
    QVERIFY(saved.isWellFormed());
    QCOMPARE(saved.attributeCount(), read.attributeCount());
}

void tst_VolWriter::failingDevice()
{
    const vo::VolEntry entry = test::readVol("<Entries>" + gEntry).entries().at(0);
    const int start = gDeclaration.size() + 9;
    const QByteArray header = "<Entries>";
    const vo::VolHeader known = test::readVol(header).headers.at(0);
    const auto verdicts = [&](int room) {
        test::BrokenDevice device({}, room);
        VolWriter writer(&device);
        QString text;
        text += writer.writeStart(known) ? 'S' : '-';
        text += writer.write(entry) ? 'E' : '-';
        text += writer.writeEnd() ? 'X' : '-';
        return text;
    };
    QCOMPARE(verdicts(0), QString("---"));
    QCOMPARE(verdicts(start - 1), QString("---"));
    QCOMPARE(verdicts(start), QString("S--"));
    QCOMPARE(verdicts(start + 17), QString("S--"));
    QCOMPARE(verdicts(start + 18), QString("SE-"));
    QCOMPARE(verdicts(start + 28), QString("SE-"));
    QCOMPARE(verdicts(start + 29), QString("SEX"));
}

void tst_VolWriter::bytesStay()
{
    const QByteArray entry = "<Entry ID=\"ExpD\"\n Text='\xC3\xA9 &#10; >' ></Entry >";
    const vo::VolEntry read = test::readVol("<Entries>" + entry).entries().at(0);
    QVERIFY(read.isWellFormed());
    QCOMPARE(read.wellFormedBytes(), entry);
}

QTEST_GUILESS_MAIN(tst_VolWriter)
#include "tst_VolWriter.moc"
