#include "VolReading.h"

#include <QtTest>

using vo::VolFile;
using vo::VolGap;

Q_DECLARE_METATYPE(vo::VolFile::Condition)

namespace {

constexpr vo::FourChars gText = 0x54657874;

/// A root of 9 bytes, and an entry of 18.
const QByteArray gRoot = "<Entries>";
const QByteArray gEnd = "</Entries>";
const QByteArray gEntry = R"(<Entry ID="ExpD"/>)";
const QByteArray gDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

QByteArray zeroed(QByteArray text)
{
    return text.replace('^', '\0');
}

QByteArray entry(const char *text)
{
    return QByteArray(R"(<Entry ID="ExpD" Text=")") + text + "\"/>";
}

/// "entry 9 ExpD" with the place and the class, and the text if it has one; gaps as test::told()
/// says.
QStringList shown(const test::VolReading &reading)
{
    QStringList list;
    for (const test::VolToken &token : reading.tokens) {
        if (!token.isEntry) {
            list.append(test::told(token.gap));
            continue;
        }
        const QString text = token.entry.valueOf(gText);
        list.append(QString("entry %1 %2").arg(token.position()).arg(token.entry.id().toString()) +
                    (text.isNull() ? QString() : ' ' + text));
    }
    return list;
}

} // namespace

/// What becomes of each kind of damage: the tokens in order, with their places.
class tst_VolFile : public QObject
{
    Q_OBJECT

private slots:
    void gapKinds_data();
    void gapKinds();
    void read_data();
    void read();
    void header_data();
    void header();
    void firstGapAndCounts();
    void entriesStayWhatTheyWere();
    void defaults();

private:
    void addTornRows();
    void addRootRows();
    void addNameRows();
    void addForeignRows();
    void addRunTogetherRows();
};

namespace {

constexpr auto gComplete = VolFile::Complete;
constexpr auto gLive = VolFile::Live;
constexpr auto gTorn = VolFile::Torn;
constexpr auto gDamaged = VolFile::Damaged;

void row(const char *name, const QByteArray &bytes, const QStringList &tokens,
         VolFile::Condition condition = gDamaged)
{
    QTest::newRow(name) << bytes << tokens << condition;
}

} // namespace

void tst_VolFile::gapKinds_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("torn entry") << int(VolGap::TornEntry) << "torn entry";
    QTest::newRow("root tag") << int(VolGap::UnfinishedRootTag) << "unfinished root tag";
    QTest::newRow("character") << int(VolGap::IllegalCharacter) << "illegal character";
    QTest::newRow("foreign") << int(VolGap::ForeignBytes) << "foreign bytes";
    QTest::newRow("end") << int(VolGap::TruncatedEnd) << "truncated end";
}

void tst_VolFile::gapKinds()
{
    QFETCH(int, kind);
    VolGap gap;
    gap.kind = static_cast<VolGap::Kind>(kind);
    gap.position = 5;
    gap.length = 7;
    QTEST(QString(gap.kindName()), "name");
    QCOMPARE(gap.end(), 12);
}

void tst_VolFile::read_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("tokens");
    QTest::addColumn<VolFile::Condition>("condition");

    row("empty file", "", {}, gLive);
    row("white space", " \r\n\t", {}, gLive);
    row("root alone", gRoot, {}, gLive);
    row("root without its end", "<Entries Version=\"v0.1\"", {}, gLive);
    row("root without its end, a line feed", "<Entries Version=\"v0.1\"\n", {}, gLive);
    row("declaration alone", gDeclaration, {}, gLive);
    row("live", gRoot + gEntry + gEntry, {"entry 9 ExpD", "entry 27 ExpD"}, gLive);
    row("live, a line feed", gRoot + gEntry + '\n', {"entry 9 ExpD"}, gLive);
    row("complete", gRoot + gEntry + gEnd, {"entry 9 ExpD"}, gComplete);
    row("complete, a line feed", gRoot + gEntry + gEnd + "\n", {"entry 9 ExpD"}, gComplete);
    row("complete, no entry", gRoot + gEnd, {}, gComplete);
    row("empty root", "<Entries/>", {}, gComplete);
    row("unknown class", gRoot + R"(<Entry ID="Nope" Any="x"/>)", {"entry 9 Nope"}, gLive);
    row("declaration and all", gDeclaration + gRoot + gEntry + gEnd, {"entry 47 ExpD"}, gComplete);
    row("blanks in the root's end", gRoot + "</Entries \n>", {}, gComplete);
    addTornRows();
    addRootRows();
    addNameRows();
    addForeignRows();
    addRunTogetherRows();
}

void tst_VolFile::addTornRows()
{
    row("torn in the name of the tag", gRoot + gEntry + "<Ent",
        {"entry 9 ExpD", "truncated end 27+4 at 1:28"}, gTorn);
    row("torn behind the tag's name", gRoot + "<Entry", {"truncated end 9+6 at 1:10"}, gTorn);
    row("torn behind a bracket", gRoot + "<", {"truncated end 9+1 at 1:10"}, gTorn);
    row("torn in a name", gRoot + "<Entry ID", {"truncated end 9+9 at 1:10"}, gTorn);
    row("torn in a value", gRoot + R"(<Entry ID="Ex)", {"truncated end 9+13 at 1:10"}, gTorn);
    row("torn behind a value", gRoot + R"(<Entry ID="ExpD")", {"truncated end 9+16 at 1:10"},
        gTorn);
    row("torn behind the slash", gRoot + R"(<Entry ID="ExpD"/)", {"truncated end 9+17 at 1:10"},
        gTorn);
    row("torn in a reference", gRoot + R"(<Entry ID="ExpD" Text="&am)",
        {"truncated end 9+26 at 1:10"}, gTorn);
    row("torn in a character", gRoot + "<Entry ID=\"ExpD\" Text=\"\xE6\x9D",
        {"truncated end 9+25 at 1:10"}, gTorn);
    row("torn in the root's name", "<Entri", {"truncated end 0+6 at 1:1"}, gTorn);
    row("torn in the root's value", "<Entries Version=\"v", {"truncated end 0+19 at 1:1"}, gTorn);
    row("torn behind the root's slash", "<Entries/", {"truncated end 0+9 at 1:1"}, gTorn);
    row("torn in the declaration", "<?xml version", {"truncated end 0+13 at 1:1"}, gTorn);
    row("torn in the declaration's name", "<?x", {"truncated end 0+3 at 1:1"}, gTorn);
    row("torn in the root's end", gRoot + gEntry + "</Ent",
        {"entry 9 ExpD", "truncated end 27+5 at 1:28"}, gTorn);
    row("torn ahead of the end's bracket", gRoot + "</Entries ", {"truncated end 9+10 at 1:10"},
        gTorn);
    row("torn behind damage", gRoot + "x<Entry ID",
        {"foreign bytes 9+1 at 1:10", "truncated end 10+9 at 1:11"});

    row("torn, and an entry behind", gRoot + R"(<Entry ID="Exp)" + gEntry,
        {"torn entry 9+14 at 1:10", "entry 23 ExpD"});
    row("torn behind a value, and an entry behind", gRoot + R"(<Entry ID="ExpD")" + gEntry,
        {"torn entry 9+16 at 1:10", "entry 25 ExpD"});
    row("torn behind the tag's name, and an entry behind", gRoot + "<Entry" + gEntry,
        {"foreign bytes 9+6 at 1:10", "entry 15 ExpD"});
    row("torn twice", gRoot + "<Entry I<Entry ID=\"" + gEntry,
        {"torn entry 9+8 at 1:10", "torn entry 17+11 at 1:18", "entry 28 ExpD"});
    row("torn, white space and an entry behind", gRoot + "<Entry ID=\"Ex\n " + gEntry,
        {"torn entry 9+13 at 1:10", "entry 24 ExpD"});
    row("torn, and the root's end behind", gRoot + "<Entry ID=\"Ex" + gEnd,
        {"torn entry 9+13 at 1:10"});
    row("no slash and no end tag", gRoot + R"(<Entry ID="ExpD">)" + gEntry,
        {"torn entry 9+17 at 1:10", "entry 26 ExpD"});
    row("no slash, text", gRoot + R"(<Entry ID="ExpD">text</Entry>)" + gEntry,
        {"torn entry 9+17 at 1:10", "foreign bytes 26+12 at 1:27", "entry 38 ExpD"});
    row("attribute twice", gRoot + R"(<Entry ID="ExpD" ID="ExpE"/>)" + gEntry,
        {"torn entry 9+28 at 1:10", "entry 37 ExpD"});
    row("no blank between attributes", gRoot + R"(<Entry ID="ExpD"Text="x"/>)" + gEntry,
        {"torn entry 9+26 at 1:10", "entry 35 ExpD"});
    row("no quotes", gRoot + R"(<Entry ID=ExpD/>)" + gEntry,
        {"torn entry 9+16 at 1:10", "entry 25 ExpD"});
    row("no id", gRoot + R"(<Entry Text="x"/>)" + gEntry,
        {"torn entry 9+17 at 1:10", "entry 26 ExpD"});
    row("nothing at all", gRoot + "<Entry/>" + gEntry, {"torn entry 9+8 at 1:10", "entry 17 ExpD"});
    row("id in lower case", gRoot + R"(<Entry id="ExpD"/>)", {"torn entry 9+18 at 1:10"});
    row("a bracket in a value", gRoot + R"(<Entry ID="Ex<D"/>)" + gEntry,
        {"torn entry 9+13 at 1:10", "foreign bytes 22+5 at 1:23", "entry 27 ExpD"});
}

void tst_VolFile::addRootRows()
{
    const QByteArray open = R"(<Entries V="1")"; // 14 bytes
    row("unfinished root, an entry behind", open + gEntry,
        {"unfinished root tag 0+14 at 1:1", "entry 14 ExpD"});
    row("unfinished root, white space and an entry", open + "\n" + gEntry,
        {"unfinished root tag 0+14 at 1:1", "entry 15 ExpD"});
    row("unfinished root in a value", R"(<Entries V="1)" + gEntry,
        {"unfinished root tag 0+13 at 1:1", "entry 13 ExpD"});
    row("unfinished root, complete", open + gEntry + gEnd,
        {"unfinished root tag 0+14 at 1:1", "entry 14 ExpD"});
    row("unfinished root, the next session's behind", open + gRoot + gEntry,
        {"unfinished root tag 0+14 at 1:1", "foreign bytes 14+9 at 1:15", "entry 23 ExpD"});
    row("unfinished root behind the declaration", gDeclaration + "\n" + open + gEntry,
        {"unfinished root tag 39+14 at 2:1", "entry 53 ExpD"});
    row("an attribute of the root twice", R"(<Entries V="1" V="1">)" + gEntry,
        {"unfinished root tag 0+21 at 1:1", "entry 21 ExpD"});
    row("zero byte in the root", zeroed(R"(<Entries V="^">)") + gEntry,
        {"illegal character 0+15 at 1:1", "entry 15 ExpD"});
    row("zero byte in a name of the root", zeroed(R"(<Entries ^="">)") + gEntry,
        {"illegal character 0+14 at 1:1", "entry 14 ExpD"});
    row("name space in the root", R"(<Entries xmlns="">)" + gEntry,
        {"illegal character 0+18 at 1:1", "entry 18 ExpD"});
    row("no root", gEntry + gEntry,
        {"unfinished root tag 0+0 at 1:1", "entry 0 ExpD", "entry 18 ExpD"});
    row("no root behind the declaration", gDeclaration + gEntry,
        {"unfinished root tag 38+0 at 1:39", "entry 38 ExpD"});
    row("no root behind foreign bytes", "x" + gEntry, {"foreign bytes 0+1 at 1:1", "entry 1 ExpD"});
    row("no root, torn", "<Entry ID=", {"truncated end 0+10 at 1:1"}, gTorn);
    row("a root of another name", "<Log>" + gEntry, {"foreign bytes 0+5 at 1:1", "entry 5 ExpD"});
    row("an end without a root", gEnd, {"foreign bytes 0+10 at 1:1"});
    row("another end", gRoot + gEntry + "</Log>", {"entry 9 ExpD", "foreign bytes 27+6 at 1:28"});
    row("attributes in the end", gRoot + "</Entries V=\"1\">", {"foreign bytes 9+16 at 1:10"});
}

void tst_VolFile::addNameRows()
{
    row("zero byte in a name of the class",
        gRoot + zeroed(R"(<Entry ID="ExpR" ^src="x"/>)") + gEntry,
        {"illegal character 26+4 at 1:27", "entry 9 ExpR", "entry 36 ExpD"});
    row("zero byte in another name", gRoot + zeroed(R"(<Entry ID="ExpR" s^rc="x"/>)") + gEntry,
        {"illegal character 9+27 at 1:10", "entry 36 ExpD"});
    row("zero byte in a name of another class",
        gRoot + zeroed(R"(<Entry ID="ExpD" ^src="x"/>)") + gEntry,
        {"illegal character 9+27 at 1:10", "entry 36 ExpD"});
    row("zero byte in a name of no class", gRoot + zeroed(R"(<Entry ID="Nope" ^src="x"/>)"),
        {"illegal character 9+27 at 1:10"});
    row("a name of the class, and another", gRoot + zeroed(R"(<Entry ID="ExpR" ^src="" ^x=""/>)"),
        {"illegal character 9+32 at 1:10"});
    row("such an entry without a root", zeroed(R"(<Entry ID="ExpR" ^src="x"/>)"),
        {"illegal character 17+4 at 1:18", "entry 0 ExpR"});
    row("a digit first", gRoot + R"(<Entry ID="ExpD" 1st="x"/>)",
        {"illegal character 9+26 at 1:10"});
    row("a prefix", gRoot + R"(<Entry ID="ExpD" a:b="x"/>)", {"illegal character 9+26 at 1:10"});
    row("a name beyond Latin-1", gRoot + "<Entry ID=\"ExpD\" \xE2\x82\xAC=\"x\"/>",
        {"illegal character 9+26 at 1:10"});
    row("such an entry, torn", gRoot + zeroed(R"(<Entry ID="ExpR" ^src="x")"),
        {"truncated end 9+25 at 1:10"}, gTorn);
}

void tst_VolFile::addForeignRows()
{
    row("a byte in front", "x" + gRoot + gEntry, {"foreign bytes 0+1 at 1:1", "entry 10 ExpD"});
    row("lines in front", "a\n\xC3\xA9 b\n" + gRoot + gEntry,
        {"foreign bytes 0+6 at 1:1", "entry 16 ExpD"});
    row("a zero byte between", gRoot + zeroed("^") + gEntry,
        {"foreign bytes 9+1 at 1:10", "entry 10 ExpD"});
    row("zero bytes at the end", gRoot + gEntry + zeroed("^^^"),
        {"entry 9 ExpD", "foreign bytes 27+3 at 1:28"});
    row("text between, and white space around", gRoot + "\n \xC3\xA9 x \n" + gEntry,
        {"foreign bytes 11+4 at 2:2", "entry 17 ExpD"});
    row("columns are characters", gRoot + "\n\xF0\x9F\x8E\xA5<a>x" + gEntry,
        {"foreign bytes 10+8 at 2:1", "entry 18 ExpD"});
    row("column behind characters", gRoot + '\n' + entry("\xF0\x9F\x8E\xA5\xC3\xA9") + "x" + gEntry,
        {QString::fromUtf8("entry 10 ExpD \xF0\x9F\x8E\xA5\xC3\xA9"), "foreign bytes 42+1 at 2:29",
         "entry 43 ExpD"});
    row("another element", gRoot + "<Note ID=\"ExpD\"/>" + gEntry,
        {"foreign bytes 9+17 at 1:10", "entry 26 ExpD"});
    row("a longer name", gRoot + "<EntryX ID=\"ExpD\"/>" + gEntry,
        {"foreign bytes 9+19 at 1:10", "entry 28 ExpD"});
    row("an end tag too many", gRoot + gEntry + "</Entry>" + gEntry,
        {"entry 9 ExpD", "foreign bytes 27+8 at 1:28", "entry 35 ExpD"});
    row("a comment with an entry", gRoot + "<!-- " + gEntry + " -->" + gEntry,
        {"foreign bytes 9+27 at 1:10", "entry 36 ExpD"});
    row("a comment with dashes", gRoot + "<!-- -- " + gEntry + "-->" + gEntry,
        {"foreign bytes 9+29 at 1:10", "entry 38 ExpD"});
    row("a comment in front", "<!-- x -->" + gRoot + gEntry,
        {"foreign bytes 0+10 at 1:1", "entry 19 ExpD"});
    row("the start of a comment", gRoot + "<!-- " + gEntry,
        {"foreign bytes 9+4 at 1:10", "entry 14 ExpD"});
    row("the shortest comment is none", gRoot + "<!-->" + gEntry,
        {"foreign bytes 9+5 at 1:10", "entry 14 ExpD"});
    row("CDATA with an entry", gRoot + "<![CDATA[" + gEntry + "]]>" + gEntry,
        {"foreign bytes 9+30 at 1:10", "entry 39 ExpD"});
    row("the start of CDATA", gRoot + "<![CDATA[" + gEntry,
        {"foreign bytes 9+9 at 1:10", "entry 18 ExpD"});
    row("an instruction", gRoot + "<?x y?>" + gEntry,
        {"foreign bytes 9+7 at 1:10", "entry 16 ExpD"});
    // Its end is in each declaration: between two of those, all would be lost.
    row("an instruction with an entry", gRoot + "<?x " + gEntry + "?>" + gEntry,
        {"foreign bytes 9+3 at 1:10", "entry 13 ExpD", "foreign bytes 31+2 at 1:32",
         "entry 33 ExpD"});
    row("an instruction in front", "<?x y?>" + gRoot, {"foreign bytes 0+7 at 1:1"});
    row("declared entity",
        "<!DOCTYPE Entries [<!ENTITY a \"b\">]>" + gRoot + R"(<Entry ID="ExpD" Text="&a;"/>)" +
            gEntry,
        {"foreign bytes 0+36 at 1:1", "torn entry 45+29 at 1:46", "entry 74 ExpD"});
    row("a declared entity holds an entry",
        "<!DOCTYPE Entries [<!ENTITY a '" + gEntry + "'>]>" + gRoot + "&a;" + gEntry,
        {"foreign bytes 0+53 at 1:1", "foreign bytes 62+3 at 1:63", "entry 65 ExpD"});
    row("a document type without brackets", "<!DOCTYPE html>" + gRoot + gEntry + "]>" + gEntry,
        {"foreign bytes 0+15 at 1:1", "entry 24 ExpD", "foreign bytes 42+2 at 1:43",
         "entry 44 ExpD"});
    row("a document type, torn", "<!DOCTYPE ht" + gRoot + gEntry + "[]>" + gEntry,
        {"foreign bytes 0+12 at 1:1", "entry 21 ExpD", "foreign bytes 39+3 at 1:40",
         "entry 42 ExpD"});
    row("a document type with an entry", "<!DOCTYPE a [" + gEntry + "]>" + gRoot + gEntry,
        {"foreign bytes 0+33 at 1:1", "entry 42 ExpD"});
    row("two pieces with an entry between", gRoot + "a" + gEntry + "b",
        {"foreign bytes 9+1 at 1:10", "entry 10 ExpD", "foreign bytes 28+1 at 1:29"});
    row("pieces without an entry between are one", gRoot + "a <b/> <!--c--> &d;\n" + gEntry,
        {"foreign bytes 9+19 at 1:10", "entry 29 ExpD"});
}

void tst_VolFile::addRunTogetherRows()
{
    const QByteArray log = gRoot + gEntry; // 27 bytes
    row("two live logs", log + log,
        {"entry 9 ExpD", "foreign bytes 27+9 at 1:28", "entry 36 ExpD"});
    row("the first is complete", log + gEnd + log,
        {"entry 9 ExpD", "foreign bytes 27+19 at 1:28", "entry 46 ExpD"});
    row("both are complete", log + gEnd + "\n" + log + gEnd,
        {"entry 9 ExpD", "foreign bytes 27+20 at 1:28", "entry 47 ExpD"});
    row("with declarations", gDeclaration + gRoot + gDeclaration + log,
        {"foreign bytes 47+47 at 1:48", "entry 94 ExpD"});
    row("a second declaration with an entry before", gDeclaration + log + gDeclaration + log,
        {"entry 47 ExpD", "foreign bytes 65+47 at 1:66", "entry 112 ExpD"});
    row("an entry behind the end", log + gEnd + gEntry,
        {"entry 9 ExpD", "foreign bytes 27+10 at 1:28", "entry 37 ExpD"});
    row("an entry behind an empty root", "<Entries/>" + gEntry,
        {"foreign bytes 8+2 at 1:9", "entry 10 ExpD"});
    row("two ends", log + gEnd + gEnd, {"entry 9 ExpD", "foreign bytes 27+10 at 1:28"});
    row("text behind the end", log + gEnd + "\nx", {"entry 9 ExpD", "foreign bytes 27+12 at 1:28"});
    row("a second root, unfinished", log + "<Entries V=\"1\"" + gEntry,
        {"entry 9 ExpD", "unfinished root tag 27+14 at 1:28", "entry 41 ExpD"});
    row("a second root, at the end", log + "<Entries V=\"1\"",
        {"entry 9 ExpD", "truncated end 27+14 at 1:28"}, gTorn);
}

void tst_VolFile::read()
{
    QFETCH(QByteArray, bytes);
    const test::VolReading reading = test::readVol(bytes);
    QFETCH(QStringList, tokens);
    QCOMPARE(shown(reading), tokens);
    QTEST(reading.condition, "condition");
    QCOMPARE(test::disagreement(reading, bytes), QString());
    QCOMPARE(reading.position, bytes.size());
}

void tst_VolFile::header_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QByteArray>("headerBytes");
    const auto header = [](const char *name, const QByteArray &bytes, const QString &text,
                           const QByteArray &stands) {
        QTest::newRow(name) << bytes << text << stands;
    };
    const QByteArray full =
        R"(<Entries Version="v0.1" LogFile="a&amp;b" Date="2026-11-21T15:04:05">)";
    header("none", "x" + gEntry, "", "");
    header("whole", gDeclaration + full + gEntry,
           "Version=v0.1|LogFile=a&b|Date=2026-11-21T15:04:05|", full);
    header("without its end", gDeclaration + full.chopped(1),
           "Version=v0.1|LogFile=a&b|Date=2026-11-21T15:04:05|", full.chopped(1));
    header("unfinished", full.chopped(1) + gEntry,
           "Version=v0.1|LogFile=a&b|Date=2026-11-21T15:04:05|", full.chopped(1));
    header("unfinished behind an attribute", R"(<Entries V="1" )" + gEntry, "V=1|",
           R"(<Entries V="1")");
    header("torn in a value", R"(<Entries V="1" D="20)" + gEntry, "", "");
    header("zero byte", zeroed(R"(<Entries V="^">)") + gEntry, "", "");
    header("the second of two", gRoot + gEntry + R"(<Entries V="2">)" + gEntry, "V=2|",
           R"(<Entries V="2">)");
}

void tst_VolFile::header()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, header);
    QFETCH(QByteArray, headerBytes);
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    VolFile log(&buffer);
    QVERIFY(log.header().isNull());
    while (log.readNext() != VolFile::End)
        continue;
    QCOMPARE(log.header().isNull(), headerBytes.isEmpty());
    QCOMPARE(test::told(log.header()), header);
    QCOMPARE(log.header().bytes(), headerBytes);
    if (header.contains("Date"))
        QCOMPARE(log.header().date(), QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5)));
    else
        QVERIFY(!log.header().date().isValid());
}

void tst_VolFile::firstGapAndCounts()
{
    QBuffer buffer;
    buffer.setData(gRoot + gEntry + "x" + gEntry + "<Entry " + gEntry);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    VolFile log(&buffer);
    QCOMPARE(log.firstGap().length, 0);
    QCOMPARE(log.condition(), VolFile::Live);
    QCOMPARE(log.readNext(), VolFile::Entry);
    QCOMPARE(log.entryCount(), 1);
    QCOMPARE(log.gapCount(), 0);
    QCOMPARE(log.condition(), VolFile::Live); // of what was read so far
    QCOMPARE(log.readNext(), VolFile::Gap);
    QCOMPARE(log.condition(), VolFile::Damaged);
    QCOMPARE(log.entryCount(), 1);
    QCOMPARE(log.readNext(), VolFile::Entry);
    QCOMPARE(log.readNext(), VolFile::Gap);
    QCOMPARE(test::told(log.firstGap()), QString("foreign bytes 27+1 at 1:28"));
    QCOMPARE(test::told(log.gap()), QString("torn entry 46+6 at 1:47"));
    QCOMPARE(log.readNext(), VolFile::Entry);
    QCOMPARE(log.readNext(), VolFile::End);
    QCOMPARE(log.readNext(), VolFile::End);
    QCOMPARE(log.entryCount(), 3);
    QCOMPARE(log.gapCount(), 2);
    QCOMPARE(log.position(), buffer.size());
}

void tst_VolFile::entriesStayWhatTheyWere()
{
    const std::vector<vo::VolEntry> entries =
        test::readVol(gRoot + entry("a") + entry("b")).entries();
    QCOMPARE(entries.size(), std::size_t(2));
    QCOMPARE(entries[0].bytes(), entry("a"));
    QCOMPARE(entries[0].valueOf(gText), QString("a"));
    QCOMPARE(entries[1].bytes(), entry("b"));
    const vo::VolEntry copy = entries[0];
    QCOMPARE(copy.value(1), QString("a"));
    QCOMPARE(copy.position(), 9);
}

void tst_VolFile::defaults()
{
    const vo::VolEntry none;
    QVERIFY(none.isNull());
    QCOMPARE(none.attributeCount(), 0);
    QCOMPARE(none.indexOf(QLatin1String("ID")), -1);
    QVERIFY(none.valueOf(gText).isNull());
    QCOMPARE(none.id(), vo::FourChars(QString()));
    QVERIFY(!none.isKnown() && !none.toLogEntry());
    QVERIFY(!vo::VolHeader().date().isValid());
    const VolGap gap;
    QCOMPARE(gap.length, 0);
    QCOMPARE(gap.line, 1);
    QCOMPARE(gap.column, 1);
}

QTEST_GUILESS_MAIN(tst_VolFile)
#include "tst_VolFile.moc"
