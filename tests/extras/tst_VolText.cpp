#include "VolReading.h"

#include <QtTest>

using vo::VolFile;
using vo::VolGap;

namespace {

constexpr vo::FourChars gText = 0x54657874;
const QByteArray gRoot = "<Entries>";
const QByteArray gEntry = R"(<Entry ID="ExpD"/>)";
/// No gap at all.
constexpr int gNone = -1;

QByteArray zeroed(QByteArray text)
{
    return text.replace('^', '\0');
}

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

/// What may stand in an entry, and in which encoding. XMLLogReader is asked for each.
class tst_VolText : public QObject
{
    Q_OBJECT

private slots:
    void values_data();
    void values();
    void illegalValues_data();
    void illegalValues();
    void forms_data();
    void forms();
    void encodings_data();
    void encodings();
    void names_data();
    void names();
    void longNames_data();
    void longNames();
    void manyAttributes();
};

void tst_VolText::values_data()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &markup, const QString &text) {
        QTest::newRow(name) << markup << text;
    };
    row("empty", "", "");
    row("plain", "abc", "abc");
    row("named references", "&lt;&gt;&amp;&quot;&apos;", "<>&\"'");
    row("decimal", "&#65;&#0065;&#233;&#128293;", utf8("AAé\xF0\x9F\x94\xA5"));
    row("hexadecimal", "&#x41;&#xe9;&#xE9;&#x1F525;", utf8("Aéé\xF0\x9F\x94\xA5"));
    row("white references", "&#9;&#10;&#13;&#32;", "\t\n\r ");
    row("line breaks", "a\nb\r\nc\rd\te", "a b c d e");
    row("carriage returns", "\r\r\n\n\r", "    ");
    row("a return at the end", "a\r", "a ");
    row("blanks at the ends", "  a  ", "  a  ");
    row("brackets that close", "a>b/>c-->d]]>e?>", "a>b/>c-->d]]>e?>");
    row("the other quote", "O'Hara", "O'Hara");
    row("a reference that was escaped", "&amp;lt;", "&lt;");
    row("two bytes", "\xC2\x80\xDF\xBF", utf8("\xC2\x80\xDF\xBF"));
    row("three bytes", "\xE0\xA0\x80\xE6\x9D\xB1\xEF\xBF\xBD",
        utf8("\xE0\xA0\x80\xE6\x9D\xB1\xEF\xBF\xBD"));
    row("four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBD", utf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBD"));
    row("around the surrogates", "\xED\x9F\xBF\xEE\x80\x80", utf8("\xED\x9F\xBF\xEE\x80\x80"));
    row("byte order mark within", "a\xEF\xBB\xBF", QString("a") + QChar(0xFEFF));
    row("delete, and the other controls", "\x7F\xC2\x85\xC2\x9F", utf8("\x7F\xC2\x85\xC2\x9F"));
    row("no characters of Unicode", "\xEF\xB7\x90\xF0\x9F\xBF\xBE",
        utf8("\xEF\xB7\x90\xF0\x9F\xBF\xBE"));
    row("percent and backslash", "%1\\n", "%1\\n");
}

void tst_VolText::values()
{
    QFETCH(QByteArray, markup);
    const QByteArray bytes = gRoot + "<Entry ID=\"ExpD\" Text=\"" + markup + "\"/>" + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.gapCount, 0);
    QTEST(reading.entries().at(0).valueOf(gText), "text");
    const std::unique_ptr<vo::LogEntry> entry = reading.entries().at(0).toLogEntry();
    QTEST(entry->logValue(gText)->toString(), "text");
}

// One gap from "<" on; the entries around it come.
void tst_VolText::illegalValues_data()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<int>("kind");
    const auto character = [](const char *name, const QByteArray &markup) {
        QTest::newRow(name) << markup << int(VolGap::IllegalCharacter);
    };
    const auto torn = [](const char *name, const QByteArray &markup) {
        QTest::newRow(name) << markup << int(VolGap::TornEntry);
    };
    character("zero byte", zeroed("a^b"));
    character("control character", "a\x01");
    character("the last of them", "\x1F");
    character("vertical tab", "\v");
    character("a lead without what follows", "\xC3");
    character("a lead, then ASCII", "\xC3z");
    character("what follows without a lead", "\x80");
    character("overlong of two", "\xC0\x80");
    character("overlong of three", "\xE0\x9F\xBF");
    character("overlong of four", "\xF0\x8F\xBF\xBF");
    character("beyond Unicode", "\xF4\x90\x80\x80");
    character("five bytes", "\xF8\x88\x80\x80\x80");
    character("Latin-1", "caf\xE9");
    character("high surrogate", "\xED\xA0\x80");
    character("low surrogate", "\xED\xBF\xBF");
    character("a pair of surrogates", "\xED\xA0\xBC\xED\xBE\xA5");
    character("U+FFFE", "\xEF\xBF\xBE");
    character("U+FFFF", "\xEF\xBF\xBF");
    character("reference to zero", "&#0;");
    character("reference to a control character", "&#1;");
    character("reference to a surrogate", "&#xD800;");
    character("reference to U+FFFE", "&#xFFFE;");
    torn("unknown entity", "&nope;");
    torn("nameless entity", "&;");
    torn("ampersand", "a & b");
    torn("ampersand at the end", "a&");
    torn("reference without its end", "&lt");
    character("reference beyond Unicode", "&#x110000;");
    character("reference beyond all numbers", "&#99999999999999999999;");
    torn("reference without a number", "&#;");
    torn("reference without a hexadecimal number", "&#x;");
    torn("reference with another letter", "&#xG;");
    torn("reference of a capital X", "&#X41;");
    torn("negative reference", "&#-1;");
    torn("names in capitals", "&LT;");
}

void tst_VolText::illegalValues()
{
    QFETCH(QByteArray, markup);
    QFETCH(int, kind);
    const QByteArray entry = "<Entry ID=\"ExpD\" Text=\"" + markup + "\"/>";
    const QByteArray bytes = gRoot + gEntry + entry + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.entryCount, 2);
    QCOMPARE(reading.gapCount, 1);
    QCOMPARE(reading.firstGap.position, qint64(gRoot.size() + gEntry.size()));
    QCOMPARE(reading.firstGap.length, qint64(entry.size()));
    QCOMPARE(int(reading.firstGap.kind), kind);
    // The other reader stops there, too.
    QVERIFY(!test::readByReader(bytes).isWhole());
}

void tst_VolText::forms_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("isWhole");
    const auto whole = [](const char *name, const QByteArray &entry) {
        QTest::newRow(name) << entry << true;
    };
    const auto broken = [](const char *name, const QByteArray &entry) {
        QTest::newRow(name) << entry << false;
    };
    whole("end tag", R"(<Entry ID="ExpD"></Entry>)");
    whole("white space ahead of the end tag", "<Entry ID=\"ExpD\">\r\n\t </Entry>");
    whole("white space in the end tag", "<Entry ID=\"ExpD\"></Entry \n>");
    whole("single quotes", R"(<Entry ID='ExpD' Text='say "x"'/>)");
    whole("white space around the sign", "<Entry ID = \"ExpD\" Text\n=\r\n'x'/>");
    whole("lines", "<Entry\nID=\"ExpD\"\r\n\tText=\"x\"\n/>");
    whole("blank ahead of the end", R"(<Entry ID="ExpD" />)");
    whole("attributes ahead of the id", R"(<Entry User="ann" Text="x" ID="ExpD" Time=""/>)");
    whole("unknown attributes", R"(<Entry ID="ExpD" New="1" Text="x"/>)");
    whole("names that differ in case", R"(<Entry ID="ExpD" id="x" Id="y"/>)");
    whole("short and long names", R"(<Entry ID="ExpD" T="1" Textual="2"/>)");
    whole("short id", R"(<Entry ID="Exp"/>)");
    whole("empty id", R"(<Entry ID=""/>)");
    whole("long id", R"(<Entry ID="ExpDone" Text="x"/>)");
    whole("escaped id", R"(<Entry ID="&#69;xpD" Text="x"/>)");
    broken("text within", R"(<Entry ID="ExpD">text</Entry>)");
    broken("an entry within", R"(<Entry ID="ExpD"><Entry ID="ExpE"/></Entry>)");
    broken("a comment within", R"(<Entry ID="ExpD"><!-- x --></Entry>)");
    broken("another end tag", R"(<Entry ID="ExpD"></Entries>)");
    broken("a longer end tag", R"(<Entry ID="ExpD"></EntryX>)");
    broken("slash and blank", R"(<Entry ID="ExpD"/ >)");
    broken("two slashes", R"(<Entry ID="ExpD"//>)");
    broken("sign twice", R"(<Entry ID=="ExpD"/>)");
    broken("name alone", R"(<Entry ID="ExpD" Text/>)");
    broken("value alone", R"(<Entry ID="ExpD" ="x"/>)");
    broken("unequal quotes", R"(<Entry ID="ExpD'/>)");
    broken("blank ahead of the name", R"(< Entry ID="ExpD"/>)");
    broken("other case", R"(<entry ID="ExpD"/>)");
}

void tst_VolText::forms()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, isWhole);
    const QByteArray bytes = gRoot + gEntry + entry + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.gapCount == 0, isWhole);
    if (isWhole)
        QCOMPARE(reading.entries().at(1).bytes(), entry);
    // An entry within something that is none comes all the same.
    QCOMPARE(reading.entries().back().position(), qint64(bytes.size() - gEntry.size()));
}

void tst_VolText::encodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("gap");
    QTest::addColumn<int>("entries");
    const QByteArray body = gRoot + "<Entry ID=\"ExpD\" Text=\"\xC3\xA9\"/>";
    const auto row = [](const char *name, const QByteArray &bytes, int gap = gNone,
                        int entries = 1) { QTest::newRow(name) << bytes << gap << entries; };
    const int foreign = VolGap::ForeignBytes;
    row("no declaration", body);
    row("UTF-8", R"(<?xml version="1.0" encoding="UTF-8"?>)" + body);
    row("in small letters", R"(<?xml version="1.0" encoding="utf-8"?>)" + body);
    row("none told", R"(<?xml version="1.0"?>)" + body);
    row("single quotes", R"(<?xml version='1.0' encoding='UTF-8'?>)" + body);
    row("on its own", R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)" + body);
    row("lines", "<?xml version=\"1.0\"\n encoding=\"UTF-8\"\n?>\n" + body);
    row("byte order mark", "\xEF\xBB\xBF"
                           R"(<?xml version="1.0"?>)" +
                               body);
    row("byte order mark alone", "\xEF\xBB\xBF" + body);
    row("two byte order marks", "\xEF\xBB\xBF\xEF\xBB\xBF" + body, foreign);
    row("white space ahead", R"( <?xml version="1.0"?>)" + body, foreign);
    row("white space ahead, no declaration", "\n " + body);
    row("other version", R"(<?xml version="1.1"?>)" + body, foreign);
    row("Latin-1", R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" + body, foreign);
    row("Windows", R"(<?xml version="1.0" encoding="windows-1252"?>)" + body, foreign);
    row("another form of UTF-8", R"(<?xml version="1.0" encoding="UTF-16"?>)" + body, foreign);
    row("an unknown one", R"(<?xml version="1.0" encoding="x"?>)" + body, foreign);
    row("no version", R"(<?xml encoding="UTF-8"?>)" + body, foreign);
    row("nothing declared", "<?xml ?>" + body, foreign);
    row("a declaration with a tag in it", R"(<?xml version="1.0" <a>?>)" + body, foreign);
    row("an unfinished declaration", R"(<?xml version="1.0")" + body, foreign);
    row("another instruction", "<?xmlx?>" + body, foreign);
    const auto inUnits = [&](bool bigEndian) {
        QByteArray bytes;
        for (const QChar unit : QChar(0xFEFF) + QString::fromUtf8(body)) {
            const char low = static_cast<char>(unit.unicode() & 0xFF);
            const char high = static_cast<char>(unit.unicode() >> 8);
            bytes.append(bigEndian ? high : low).append(bigEndian ? low : high);
        }
        return bytes;
    };
    row("UTF-16, little end first", inUnits(false), foreign, 0);
    row("UTF-16, big end first", inUnits(true), foreign, 0);
}

void tst_VolText::encodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, gap);
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.gapCount == 0, gap == gNone);
    if (gap != gNone)
        QCOMPARE(int(reading.firstGap.kind), gap);
    QTEST(int(reading.entryCount), "entries");
    if (reading.entryCount > 0)
        QCOMPARE(reading.entries().at(0).valueOf(gText), utf8("\xC3\xA9"));
}

// A legal name is an attribute, whether the class knows it or not.
void tst_VolText::names_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isLegal");
    QTest::newRow("letters") << QByteArray("abc") << true;
    QTest::newRow("a line first") << QByteArray("_a") << true;
    QTest::newRow("digits, dots, dashes") << QByteArray("a1.-b") << true;
    QTest::newRow("letters of Latin-1") << QByteArray("\xC3\xA9t\xC3\xA9") << true;
    QTest::newRow("other letters") << QByteArray("\xE6\x9D\xB1") << true;
    QTest::newRow("xml in front") << QByteArray("xmlish") << true;
    QTest::newRow("a dash first") << QByteArray("-a") << false;
    QTest::newRow("a dot first") << QByteArray(".a") << false;
    QTest::newRow("a digit first") << QByteArray("1a") << false;
    QTest::newRow("a prefix") << QByteArray("a:b") << false;
    QTest::newRow("a colon") << QByteArray("a:") << false;
    QTest::newRow("prefix of a name space") << QByteArray("xmlns:a") << false;
    QTest::newRow("a name space") << QByteArray("xmlns") << false;
    QTest::newRow("a prefix beyond ASCII") << QByteArray("\xC3\xA9:a") << false;
    QTest::newRow("a sign beyond ASCII") << QByteArray("a\xC3\x97") << false;
    QTest::newRow("no UTF-8") << QByteArray("a\xE9") << false;
    QTest::newRow("sign") << QByteArray("a%b") << false;
    QTest::newRow("control character") << QByteArray("a\x01") << false;
    QTest::newRow("ampersand") << QByteArray("a&amp;b") << false;
}

void tst_VolText::names()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, isLegal);
    const QByteArray bytes = gRoot + "<Entry ID=\"ExpD\" " + name + "=\"x\"/>" + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.gapCount, isLegal ? 0 : 1);
    QCOMPARE(reading.entryCount, isLegal ? 2 : 1);
    if (isLegal)
        QCOMPARE(reading.entries().at(0).name(1), QString::fromUtf8(name));
}

// Qt's reader takes names of up to 4096 units.
void tst_VolText::longNames_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isLegal");
    QTest::newRow("100") << 100 << true;
    QTest::newRow("4096") << 4096 << true;
    QTest::newRow("4097") << 4097 << false;
    QTest::newRow("a million") << 1000000 << false;
}

void tst_VolText::longNames()
{
    QFETCH(int, size);
    QFETCH(bool, isLegal);
    const QByteArray letters(size, 'a');
    for (const QByteArray &name : {letters, letters.chopped(1) + "\xC3\xA9"}) {
        const QByteArray bytes = gRoot + "<Entry ID=\"ExpD\" " + name + "=\"x\"/>" + gEntry;
        const test::VolReading reading = test::readVol(bytes);
        QCOMPARE(test::disagreement(reading, bytes), QString());
        QCOMPARE(reading.gapCount, isLegal ? 0 : 1);
        QCOMPARE(test::readByReader(bytes).isWhole(), isLegal);
    }
}

// So many that the names are sorted to find one that comes twice.
void tst_VolText::manyAttributes()
{
    for (const int count : {15, 16, 17, 1000}) {
        QByteArray element = "<Entry ID=\"ExpD\"";
        for (int i = 0; i < count; ++i)
            element += " a" + QByteArray::number(i) + "=\"" + QByteArray::number(i) + '"';
        const QByteArray bytes = gRoot + element + "/>";
        QCOMPARE(test::complaint(bytes), QString());
        QCOMPARE(test::readVol(bytes).entries().at(0).attributeCount(), count + 1);
        const test::VolReading twice = test::readVol(gRoot + element + " a0=\"x\"/>" + gEntry);
        QCOMPARE(int(twice.firstGap.kind), int(VolGap::TornEntry));
        QCOMPARE(twice.entryCount, 1);
    }
    // No class has so many, and each of them would be held.
    QByteArray element = "<Entry ID=\"ExpD\"";
    for (int i = 1; i < 4096; ++i)
        element += " a" + QByteArray::number(i) + "=''";
    QCOMPARE(test::complaint(gRoot + element + " />"), QString());
    const test::VolReading tooMany = test::readVol(gRoot + element + " b=''/>" + gEntry);
    QCOMPARE(int(tooMany.firstGap.kind), int(VolGap::TornEntry));
    QCOMPARE(tooMany.entryCount, 1);
}

QTEST_GUILESS_MAIN(tst_VolText)
#include "tst_VolText.moc"
