#include "VolReading.h"

#include <QTemporaryDir>
#include <QtTest>

using vo::VolFile;

namespace {

const QByteArray gDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
const QByteArray gHead = gDeclaration + R"(<Entries Version="v0.1")";
const QByteArray gEntry = R"(<Entry ID="ExpD"/>)";

/// A file, one that writes it, and one that reads it.
class LiveFile
{
public:
    explicit LiveFile(const QByteArray &bytes)
        : m_path(m_folder.filePath("a.vol"))
        , m_file(m_path)
    {
        put(bytes);
        if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            qFatal("no file");
        m_log = std::make_unique<VolFile>(&m_file);
        m_log->setLive(true);
    }
    void put(const QByteArray &bytes)
    {
        QFile writer(m_path);
        if (!writer.open(QIODevice::Append) || writer.write(bytes) != bytes.size())
            qFatal("no room");
        m_bytes += bytes;
    }
    void cut(int size)
    {
        QFile::resize(m_path, size);
        m_bytes.truncate(size);
    }
    VolFile &log() { return *m_log; }
    /// What comes up to the next End.
    QStringList next()
    {
        const std::size_t before = m_reading.tokens.size();
        test::readOn(*m_log, m_reading);
        QStringList list;
        for (std::size_t i = before; i < m_reading.tokens.size(); ++i) {
            const test::VolToken &token = m_reading.tokens[i];
            list.append(
                token.isEntry
                    ? QString("entry %1 %2").arg(token.position()).arg(token.entry.id().toString())
                    : test::told(token.gap));
        }
        return list;
    }
    /// Whether all that came is what one reading gives.
    QString difference()
    {
        const test::VolReading whole = test::readVol(m_bytes);
        const QString wrong = test::misreading(m_reading, m_bytes);
        if (!wrong.isEmpty())
            return wrong;
        if (test::told(whole) != test::told(m_reading))
            return test::told(m_reading).join("; ");
        return whole.condition == m_reading.condition ? QString() : "other condition";
    }

private:
    QTemporaryDir m_folder;
    const QString m_path;
    QFile m_file;
    QByteArray m_bytes;
    std::unique_ptr<VolFile> m_log;
    test::VolReading m_reading;
};

const QStringList gNothing;

} // namespace

/// A file that somebody is writing.
class tst_VolLive : public QObject
{
    Q_OBJECT

private slots:
    void headerOnly();
    void grows();
    void tornEndCompleted_data();
    void tornEndCompleted();
    void tornEndReplaced();
    void tornEndKept();
    void junkThatGoesOn_data();
    void junkThatGoesOn();
    void junkReplaced();
    void foreignPieces();
    void oddName();
    void closed();
    void lastWords();
    void nothingYet();
    void twoParts();

private:
    static QByteArray log();
};

void tst_VolLive::headerOnly()
{
    LiveFile file(gHead);
    QCOMPARE(file.next(), gNothing);
    QVERIFY(file.log().header().isNull()); // its tag may go on
    QCOMPARE(file.log().position(), qint64(gDeclaration.size()));
    file.put('>' + gEntry);
    QCOMPARE(file.next(), QStringList{QString("entry %1 ExpD").arg(gHead.size() + 1)});
    QCOMPARE(file.log().header().value(0), QString("v0.1"));
    QCOMPARE(file.log().condition(), VolFile::Live);
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::grows()
{
    LiveFile file("<Entries>");
    QCOMPARE(file.next(), gNothing);
    for (int i = 0; i < 5; ++i) {
        file.put(gEntry);
        QCOMPARE(file.next(), QStringList{QString("entry %1 ExpD").arg(9 + 18 * i)});
        QCOMPARE(file.log().position(), 27 + 18 * i);
        QCOMPARE(file.next(), gNothing);
    }
    QCOMPARE(file.log().entryCount(), 5);
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::tornEndCompleted_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("end");
    const auto cuts = [](const char *name, const QByteArray &before, const QByteArray &end) {
        for (int i = 0; i <= end.size(); ++i)
            QTest::addRow("%s, %d", name, i) << before + end.left(i) << end.mid(i);
    };
    const QByteArray entry = "<Entry ID=\"ExpD\" Text=\"\xE6\x9D\xB1&amp;&#10;\" User='x' />";
    cuts("entry", "<Entries>" + gEntry, entry);
    cuts("with an end tag", "<Entries>", "<Entry ID=\"ExpD\"> </Entry >");
    cuts("declaration", "", gDeclaration + "<Entries>" + gEntry);
    cuts("byte order mark", "", "\xEF\xBB\xBF<Entries>");
    cuts("root", "", R"(<Entries Version="v0.1">)" + gEntry);
    cuts("unfinished root", "", R"(<Entries Version="v0.1")" + gEntry);
    cuts("end", "<Entries>" + gEntry, "</Entries >\n");
    cuts("comment", "<Entries>", "<!-- " + gEntry + " -->" + gEntry);
    cuts("CDATA", "<Entries>", "<![CDATA[" + gEntry + "]]>" + gEntry);
    cuts("document type", "", "<!DOCTYPE html><!DOCTYPE a [" + gEntry + "]>" + gEntry);
    cuts("foreign bytes", "<Entries>", "foreign bytes <Note/> and more\n" + gEntry);
    cuts("torn entry", "<Entries>", "<Entry ID=\"a\" ID=\"b\" more text" + gEntry);
    cuts("illegal", "<Entries>", QByteArray("<Entry ID=\"a^\"/>").replace('^', '\0') + gEntry);
    cuts("wrong root", "", "<Entries words without sense" + gEntry);
    cuts("two logs", "<Entries>" + gEntry, "</Entries>\n" + gDeclaration + "<Entries>" + gEntry);
    cuts("another end", "<Entries>", "</Entries x>" + gEntry);
}

// In two parts, all is as in one.
void tst_VolLive::tornEndCompleted()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, end);
    LiveFile file(before);
    file.next();
    file.next();
    file.put(end);
    file.next();
    file.log().setLive(false);
    file.next();
    QCOMPARE(file.difference(), QString());
}

// As the log does when it finds a torn entry.
void tst_VolLive::tornEndReplaced()
{
    LiveFile file("<Entries>" + gEntry + "<Entry ID=\"ExpS\" Text=\"torn");
    QCOMPARE(file.next(), QStringList{"entry 9 ExpD"});
    QCOMPARE(file.log().position(), 27);
    QCOMPARE(file.next(), gNothing);
    file.cut(27);
    QCOMPARE(file.next(), gNothing);
    file.put(R"(<Entry ID="ExpA" Text="other"/>)");
    QCOMPARE(file.next(), QStringList{"entry 27 ExpA"});
    QCOMPARE(file.log().condition(), VolFile::Live);
    QCOMPARE(file.difference(), QString());
}

// An older client appends behind it.
void tst_VolLive::tornEndKept()
{
    LiveFile file("<Entries>" + gEntry + "<Entry ID=\"Ex");
    QCOMPARE(file.next(), QStringList{"entry 9 ExpD"});
    file.put(gEntry);
    QCOMPARE(file.next(), (QStringList{"torn entry 27+13 at 1:28", "entry 40 ExpD"}));
    QCOMPARE(file.log().condition(), VolFile::Damaged);
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::junkThatGoesOn_data()
{
    QTest::addColumn<QByteArrayList>("parts");
    QTest::addColumn<QString>("gap");
    QTest::newRow("bytes") << QByteArrayList{"abc", "def", " ", "g"} << "foreign bytes 9+8 at 1:10";
    QTest::newRow("zero bytes") << QByteArrayList{QByteArray(3, '\0'), QByteArray(100000, '\0')}
                                << "foreign bytes 9+100003 at 1:10";
    QTest::newRow("lines") << QByteArrayList{"\na\nb", "\nc"} << "foreign bytes 10+5 at 2:1";
    QTest::newRow("a torn entry") << QByteArrayList{"<Entry ID=\"a\" =", "text", "text "}
                                  << "torn entry 9+23 at 1:10";
    QTest::newRow("a comment") << QByteArrayList{"<!-- ", gEntry, "-->"}
                               << "foreign bytes 9+26 at 1:10";
}

void tst_VolLive::junkThatGoesOn()
{
    QFETCH(QByteArrayList, parts);
    QFETCH(QString, gap);
    LiveFile file("<Entries>");
    for (const QByteArray &part : parts) {
        file.put(part);
        QCOMPARE(file.next(), gNothing);
        QCOMPARE(file.log().gapCount(), 0);
        QCOMPARE(file.log().condition(), VolFile::Live);
    }
    file.put(gEntry);
    const QStringList tokens = file.next();
    QCOMPARE(tokens.size(), 2);
    QCOMPARE(tokens.at(0), gap);
    QCOMPARE(file.difference(), QString());
}

// What the file ends in is looked at anew, whatever it was.
void tst_VolLive::junkReplaced()
{
    LiveFile file("<Entries>" + gEntry + QByteArray(40, '\0'));
    QCOMPARE(file.next(), QStringList{"entry 9 ExpD"});
    QCOMPARE(file.log().position(), 27);
    file.cut(27);
    file.put(gEntry);
    QCOMPARE(file.next(), QStringList{"entry 27 ExpD"});
    QCOMPARE(file.log().condition(), VolFile::Live);
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::foreignPieces()
{
    LiveFile file("<Entries><a/>");
    QCOMPARE(file.next(), gNothing);
    file.put("<b/>");
    QCOMPARE(file.next(), gNothing);
    file.put(gEntry + "c");
    QCOMPARE(file.next(), (QStringList{"foreign bytes 9+8 at 1:10", "entry 17 ExpD"}));
    file.put(gEntry);
    QCOMPARE(file.next(), (QStringList{"foreign bytes 35+1 at 1:36", "entry 36 ExpD"}));
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::oddName()
{
    const QByteArray rename = QByteArray(R"(<Entry ID="ExpR" ^src="x"/>)").replace('^', '\0');
    LiveFile file("<Entries>" + rename.left(20));
    QCOMPARE(file.next(), gNothing);
    file.put(rename.mid(20));
    QCOMPARE(file.next(), (QStringList{"illegal character 26+4 at 1:27", "entry 9 ExpR"}));
    QCOMPARE(file.difference(), QString());
}

void tst_VolLive::closed()
{
    LiveFile file("<Entries>" + gEntry + "</Entr");
    QCOMPARE(file.next(), QStringList{"entry 9 ExpD"});
    QCOMPARE(file.log().condition(), VolFile::Live);
    file.put("ies>");
    QCOMPARE(file.next(), gNothing);
    QCOMPARE(file.log().condition(), VolFile::Complete);
    file.put("\n");
    QCOMPARE(file.next(), gNothing);
    QCOMPARE(file.log().condition(), VolFile::Complete);
    file.put(gEntry);
    QCOMPARE(file.next(), (QStringList{"foreign bytes 27+10 at 1:28", "entry 38 ExpD"}));
    QCOMPARE(file.log().condition(), VolFile::Damaged);
    QCOMPARE(file.difference(), QString());
}

// When nobody writes any more, the end is what it is.
void tst_VolLive::lastWords()
{
    LiveFile torn("<Entries><Entry ID=\"Ex");
    QCOMPARE(torn.next(), gNothing);
    torn.log().setLive(false);
    QCOMPARE(torn.next(), QStringList{"truncated end 9+13 at 1:10"});
    QCOMPARE(torn.log().condition(), VolFile::Torn);
    LiveFile junk("<Entries>x");
    QCOMPARE(junk.next(), gNothing);
    junk.log().setLive(false);
    QCOMPARE(junk.next(), QStringList{"foreign bytes 9+1 at 1:10"});
    LiveFile header(gHead);
    QCOMPARE(header.next(), gNothing);
    header.log().setLive(false);
    QCOMPARE(header.next(), gNothing);
    QCOMPARE(header.log().header().bytes(), gHead.mid(gDeclaration.size()));
}

void tst_VolLive::nothingYet()
{
    LiveFile file("");
    QCOMPARE(file.next(), gNothing);
    QCOMPARE(file.log().position(), 0);
    QCOMPARE(file.log().condition(), VolFile::Live);
    file.put("\xEF");
    QCOMPARE(file.next(), gNothing);
    file.put("\xBB\xBF<Entries>" + gEntry);
    QCOMPARE(file.next(), QStringList{"entry 12 ExpD"});
}

QByteArray tst_VolLive::log()
{
    return QByteArray(
               "<?xml version=\"1.0\"?><Entries V=\"1\"><Entry ID=\"ExpD\" Text=\"&amp;\"/>\n"
               "<!-- <Entry ID=\"ExpD\"/> -->foreign <Entry ID=\"ExpE\"></Entry>"
               "<Entry ID=\"ExpR\" ^src=\"x\"/><Entry ID=\"Ex<Entry ID=\"Nope\" a='b'/>"
               "<Entry ID=\"ExpD\" Text=\"^\"/>\r\n\r\n<Entries V=\"2\"<Entry ID=\"ExpA\"/>"
               "</Entries>\n<?xml version=\"1.0\"?><Entries/>text<Entry ID=\"ExpD\"> </Entry >"
               "<![CDATA[<Entry ID=\"ExpD\"/>]]></Entries ><Entry ID=\"Exp")
        .replace('^', '\0');
}

void tst_VolLive::twoParts()
{
    for (int i = 0; i <= log().size(); ++i) {
        LiveFile file(log().left(i));
        file.next();
        file.put(log().mid(i));
        file.next();
        file.log().setLive(false);
        file.next();
        QVERIFY2(file.difference().isEmpty(),
                 qPrintable(QString("%1: %2").arg(i).arg(file.difference())));
    }
}

QTEST_GUILESS_MAIN(tst_VolLive)
#include "tst_VolLive.moc"
