#include <Vokit/Vokit.h>

#include <QTemporaryFile>
#include <QtTest>

#include <memory>

using vo::XMLLogReader;

using Error = QXmlStreamReader::Error;
Q_DECLARE_METATYPE(QXmlStreamReader::Error)

namespace {

/// "ExpD user=ann Text=x": the class, and what has a value; the time only if it isn't that of
/// reading.
QString told(const vo::LogEntry *entry, const QDateTime &before)
{
    if (!entry)
        return "null";
    QString text = entry->id().toString();
    for (const vo::LogValue *value : entry->values()) {
        const auto *date = dynamic_cast<const vo::TLogValue<QDateTime> *>(value);
        if (date && date->value() >= before && date->value() <= QDateTime::currentDateTime())
            continue;
        if (date && date->value().isNull())
            text += ' ' + value->id().toString().trimmed() + " none";
        else if (value->hasValue())
            text += ' ' + value->id().toString().trimmed() + '=' + value->toString();
    }
    return text;
}

struct Reading
{
    QStringList entries; ///< what each call gave until the end or an error
    Error error = QXmlStreamReader::NoError;
    bool atEnd = false;
};

Reading read(XMLLogReader &reader)
{
    Reading reading;
    const QDateTime before = QDateTime::currentDateTime();
    while (!reader.atEnd() && reader.error() == QXmlStreamReader::NoError) {
        const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
        reading.entries.append(told(entry.get(), before));
    }
    reading.error = reader.error();
    reading.atEnd = reader.atEnd();
    return reading;
}

class LogFile : public QTemporaryFile
{
public:
    explicit LogFile(const QByteArray &text)
    {
        if (!open() || write(text) != text.size() || !seek(0))
            qFatal("no temporary file");
    }
};

const QByteArray gStart = R"(<?xml version="1.0" encoding="UTF-8"?><Entries Version="v0.1">)";

QByteArray zeroed(const char *text)
{
    return QByteArray(text).replace('^', '\0');
}

} // namespace

class tst_XMLLogReader : public QObject
{
    Q_OBJECT

private slots:
    void logs_data();
    void logs();
    void notWellFormed_data();
    void notWellFormed();
    void problem();
    void problemBehindTheEnd();
    void noFile();
    void raisedError();
    void beyondOneBlock();
    void writtenAndRead();
    void nothingBehindTheEnd();
    void entryOf_data();
    void entryOf();
    void knownClasses_data();
    void knownClasses();
};

void tst_XMLLogReader::logs_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<Error>("error");
    const auto row = [](const char *name, const QByteArray &text, const QStringList &entries,
                        Error error = QXmlStreamReader::PrematureEndOfDocumentError) {
        QTest::newRow(name) << text << entries << error;
    };
    const auto live = [&row](const char *name, const QByteArray &body, QStringList entries) {
        row(name, gStart + body, entries << "null");
    };
    live("no entry", "", {});
    live("two entries", R"(<Entry ID="ExpD" Text="1"/><Entry ID="ExpE" User="ann"/>)",
         {"ExpD Text=1", "ExpE User=ann"});
    live("time", R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05"/>)",
         {"ExpD Time=21 Nov 2026 15:04:05"});
    live("time of another locale", R"(<Entry ID="ExpD" Time="21.11.26 15:04"/>)",
         {"ExpD Time none"});
    live("unknown class", R"(<Entry ID="Nope" Text="x"/><Entry ID="ExpD"/>)", {"null", "ExpD"});
    live("no id", R"(<Entry Text="x"/><Entry ID="ExpD"/>)", {"null", "ExpD"});
    live("nothing at all", R"(<Entry/><Entry ID="ExpD"/>)", {"null", "ExpD"});
    live("empty id", R"(<Entry ID=""/>)", {"null"});
    live("values ahead of the id", R"(<Entry Text="lost" User="lost" ID="ExpD" Time=""/>)",
         {"ExpD Time none"});
    live("long id", R"(<Entry ID="ExpDone" Text="x"/>)", {"ExpD Text=x"});
    live("short id", R"(<Entry ID="Exp" Text="x"/>)", {"null"});
    live("id in lower case", R"(<Entry id="ExpD" Text="x"/>)", {"null"});
    live("long name of a value", R"(<Entry ID="ExpD" Textual="x"/>)", {"ExpD Text=x"});
    live("unknown value first", R"(<Entry ID="ExpD" New="1" User="ann" Text="x"/>)", {"ExpD"});
    live("unknown value between", R"(<Entry ID="ExpD" User="ann" New="1" Text="x"/>)",
         {"ExpD User=ann"});
    live("unknown value, then the next", R"(<Entry ID="ExpD" New="1"/><Entry ID="ExpE" Text="x"/>)",
         {"ExpD", "ExpE Text=x"});
    live("short name", R"(<Entry ID="ExpS" Time="" from="" to="3 May 2026 01:02:03"/>)",
         {"ExpS Time none from none to=3 May 2026 01:02:03"});
    live("short name and blanks", R"(<Entry ID="ExpS" to  ="3 May 2026 01:02:03"/>)",
         {"ExpS to=3 May 2026 01:02:03"});
    live("any order", R"(<Entry ID="ExpS" dstP="d" Form="f" User="u" Text="t"/>)",
         {"ExpS User=u Text=t Form=f dstP=d"});
    live("numbers", R"(<Entry ID="XmlP" srcP="s" errT="t" errL="12" errC="-x"/>)",
         {"XmlP srcP=s errT=t errL=12"});
    live("escapes", "<Entry ID=\"ExpD\" Text=\"&lt;&gt;&amp;&quot;'&#9;&#10;&#13; \xc3\xa9\"/>",
         {QString::fromUtf8("ExpD Text=<>&\"'\t\n\r \xc3\xa9")});
    live("plain line feed in a value", "<Entry ID=\"ExpD\" Text=\"a\nb\"/>", {"ExpD Text=a b"});
    live("with an end tag", R"(<Entry ID="ExpD">words</Entry><Entry ID="ExpE"/>)",
         {"ExpD", "ExpE"});
    live("entry within an entry", R"(<Entry ID="ExpD"><Entry ID="ExpE"/></Entry>)",
         {"ExpD", "ExpE"});
    live("other elements", R"(<Note ID="ExpD" Text="x"/><entry ID="ExpD"/><Entry ID="ExpE"/>)",
         {"ExpE"});
    live("between entries", "\n<!-- <Entry/> -->\n<Entry ID=\"ExpD\"/> words <?x?>", {"ExpD"});
    live("cut in a tag", R"(<Entry ID="ExpD"/><Entry ID="Exp)", {"ExpD"});
    live("cut behind a value", R"(<Entry ID="ExpD"/><Entry ID="ExpE" Text="x")", {"ExpD"});
    live("cut in an end tag", R"(<Entry ID="ExpD"/></Entr)", {"ExpD"});

    row("empty", "", {"null"});
    row("cut in the declaration", "<?xml vers", {"null"});
    row("cut in the header", "<?xml version=\"1.0\"?><Entries Vers", {"null"});
    row("any header", "<Entries Version=\"v9\" ID=\"ExpD\"><Entry ID=\"ExpD\"/>", {"ExpD", "null"});
    row("a root of any name", "<Log><Entry ID=\"ExpD\"/>", {"ExpD", "null"});

    const QByteArray entry = R"(<Entry ID="ExpD" Text="x"/>)";
    const Error none = QXmlStreamReader::NoError;
    row("closed", gStart + entry + "</Entries>", {"ExpD Text=x", "null"}, none);
    row("closed, line feed", gStart + entry + "</Entries>\n", {"ExpD Text=x", "null"}, none);
    row("text behind", gStart + entry + "</Entries>words", {"ExpD Text=x", "null"}, none);
    row("entry behind", gStart + entry + "</Entries>" + entry, {"ExpD Text=x", "null"}, none);
    row("zero byte behind", gStart + entry + "</Entries>" + zeroed("^"), {"ExpD Text=x", "null"},
        none);
    row("two roots", gStart + entry + "</Entries>" + gStart + entry, {"ExpD Text=x", "null"}, none);
    row("closed without entry", gStart + "</Entries>", {"null"}, none);
    row("empty root", "<Entries/>", {"null"}, none);
}

void tst_XMLLogReader::logs()
{
    QFETCH(QByteArray, text);
    LogFile file(text);
    XMLLogReader reader(&file);
    const Reading reading = read(reader);
    QTEST(reading.entries, "entries");
    QTEST(reading.error, "error");
    QVERIFY(reading.atEnd);
    // Nothing more comes.
    QVERIFY(!reader.readNextLogEntry());
}

void tst_XMLLogReader::notWellFormed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("entries"); // ahead of the one that tells the problem
    const auto row = [](const char *name, const QByteArray &text, const QStringList &entries = {}) {
        QTest::newRow(name) << text << entries;
    };
    const QByteArray entry = R"(<Entry ID="ExpD"/>)";
    row("zero byte in a name", gStart + entry + zeroed(R"(<Entry ID="ExpR" ^src="x"/>)") + entry,
        {"ExpD"});
    row("zero byte in a value", gStart + entry + zeroed(R"(<Entry ID="ExpD" Text="^"/>)"),
        {"ExpD"});
    row("zero byte behind an entry", gStart + entry + zeroed("^") + entry, {"ExpD"});
    row("root tag left open", R"(<?xml version="1.0"?><Entries Version="v0.1")" + entry);
    row("second declaration", gStart + entry + gStart + entry, {"ExpD"});
    row("value twice", gStart + R"(<Entry ID="ExpD" Text="1" Text="2"/>)");
    row("cut entry", gStart + R"(<Entry ID="ExpD" Te)" + entry);
    // Found when a block of the file becomes text, ahead of all that stands in the block.
    row("no UTF-8", gStart + entry + "<Entry ID=\"ExpD\" Text=\"\xe9\xff\"/>" + entry);
    row("unknown entity", gStart + entry + R"(<Entry ID="ExpD" Text="&nope;"/>)", {"ExpD"});
    row("wrong end tag", gStart + entry + "</Log>", {"ExpD"});
    row("no markup", "words");
    row("bracket ahead of the declaration", ">" + gStart + entry);
}

void tst_XMLLogReader::notWellFormed()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, entries);
    LogFile file(text);
    XMLLogReader reader(&file);
    const Reading reading = read(reader);
    QCOMPARE(reading.error, QXmlStreamReader::NotWellFormedError);
    QCOMPARE(reading.entries.mid(0, reading.entries.size() - 1), entries);
    QString problem =
        QString("XmlP User=Unknown srcP=%1 errT=%2").arg(reader.errorString(), file.fileName());
    if (reader.lineNumber() != 0)
        problem += QString(" errL=%1").arg(reader.lineNumber());
    if (reader.columnNumber() != 0)
        problem += QString(" errC=%1").arg(reader.columnNumber());
    QCOMPARE(reading.entries.last(), problem);
}

void tst_XMLLogReader::problem()
{
    LogFile file(gStart + "\n<Entry ID=\"ExpD\"/>\n  </Log>");
    XMLLogReader reader(&file);
    delete reader.readNextLogEntry();
    const QDateTime before = QDateTime::currentDateTime();
    const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
    QVERIFY(dynamic_cast<ParseXMLLogEntry *>(entry.get()));
    QVERIFY(entry->time() >= before && entry->time() <= QDateTime::currentDateTime());
    QCOMPARE(entry->user(), QString("Unknown"));
    QCOMPARE(entry->logValue(0x6572724C)->toString(), QString("3"));
    QCOMPARE(entry->description(),
             QString("Error 'Opening and ending tag mismatch.' reading action log '%1' in line "
                     "'3', column '8'.")
                 .arg(file.fileName()));
}

// Each further call says so again, without knowing what it was.
void tst_XMLLogReader::problemBehindTheEnd()
{
    LogFile file("words");
    XMLLogReader reader(&file);
    delete reader.readNextLogEntry();
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
        QCOMPARE(told(entry.get(), QDateTime::currentDateTime().addSecs(-60)),
                 "XmlP User=Unknown srcP=Unknown Error errT=" + file.fileName());
    }
}

void tst_XMLLogReader::noFile()
{
    XMLLogReader reader(nullptr);
    const QDateTime before = QDateTime::currentDateTime();
    reader.addData("<Entries><Entry ID=\"ExpD\" Text=\"x\"/></Log>");
    std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
    QCOMPARE(told(entry.get(), before), QString("ExpD Text=x"));
    entry.reset(reader.readNextLogEntry());
    QVERIFY(told(entry.get(), before).contains(" errT=Unknown errL=1 "));
    QVERIFY(!XMLLogReader(nullptr).readNextLogEntry());
}

void tst_XMLLogReader::raisedError()
{
    LogFile file(gStart + "<Entry ID=\"ExpD\"/><Entry ID=\"ExpD\"/>");
    XMLLogReader reader(&file);
    delete reader.readNextLogEntry();
    reader.raiseError("enough");
    QCOMPARE(reader.error(), QXmlStreamReader::CustomError);
    const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
    QCOMPARE(told(entry.get(), QDateTime::currentDateTime().addSecs(-60)),
             "XmlP User=Unknown srcP=Unknown Error errT=" + file.fileName());
}

void tst_XMLLogReader::beyondOneBlock()
{
    constexpr int count = 3000;
    QByteArray text = gStart;
    QStringList expected;
    for (int i = 0; i < count; ++i) {
        text += "<Entry ID=\"ExpD\" Text=\"" + QByteArray::number(i) + "\"/>";
        expected.append(QString("ExpD Text=%1").arg(i));
    }
    text += "<Entry ID=\"ExpE\" Text=\"" + QByteArray(100000, 'x') + "\"/>";
    expected << "ExpE Text=" + QString(100000, 'x') << "null";
    LogFile file(text);
    XMLLogReader reader(&file);
    QCOMPARE(read(reader).entries, expected);
    QCOMPARE(file.pos(), file.size());
}

void tst_XMLLogReader::writtenAndRead()
{
    LogFile file("");
    QTextStream stream(&file);
    vo::XMLLogWriter writer(&stream, "", QDateTime());
    writer.writeStartDocument();
    const QString text =
        QString::fromUtf8(" <&>\"'\t\r\n \xc3\xa9\xf0\x9f\x8e\xa5%1 ") + QChar(0x85);
    const QDateTime date(QDate(2026, 5, 3), QTime(1, 2, 3));
    const ExportStartLogEntry start(text, text, "", text, date, QDateTime());
    const ExportRenameLogEntry rename(text, text, "", text);
    for (const vo::LogEntry *entry : std::initializer_list<const vo::LogEntry *>{&start, &rename}) {
        entry->setTime(date);
        entry->setUser(text);
        entry->writeTo(writer);
    }
    file.seek(0);
    XMLLogReader reader(&file);
    const std::unique_ptr<vo::LogEntry> first(reader.readNextLogEntry());
    const std::unique_ptr<vo::LogEntry> second(reader.readNextLogEntry());
    QVERIFY(*first == start);
    QVERIFY(*second == rename);
    for (int i = 0; i < first->values().size() - 1; ++i)
        QCOMPARE(first->values().at(i)->toString(), start.values().at(i)->toString());
    // A date that wasn't there to be written is that of the new entry.
    QVERIFY(first->values().last()->hasValue());
    for (int i = 0; i < second->values().size(); ++i)
        QCOMPARE(second->values().at(i)->toString(), rename.values().at(i)->toString());
}

void tst_XMLLogReader::nothingBehindTheEnd()
{
    LogFile file(gStart + "</Entries>" + gStart);
    XMLLogReader reader(&file);
    QVERIFY(!reader.atEnd());
    QVERIFY(!reader.readNextLogEntry());
    QVERIFY(reader.atEnd());
    QCOMPARE(reader.tokenType(), QXmlStreamReader::EndElement);
    QCOMPARE(reader.error(), QXmlStreamReader::NoError);
}

void tst_XMLLogReader::entryOf_data()
{
    using Attributes = QList<QPair<QString, QString>>;
    QTest::addColumn<Attributes>("attributes");
    QTest::addColumn<QString>("entry");
    const auto row = [](const char *name, const Attributes &attributes, const char *entry) {
        QTest::newRow(name) << attributes << QString(entry);
    };
    row("nothing", {}, "null");
    row("no id", {{"Text", "x"}}, "null");
    row("unknown class", {{"ID", "Nope"}, {"Text", "x"}}, "null");
    row("id alone", {{"ID", "ExpD"}}, "ExpD");
    row("values", {{"ID", "ExpD"}, {"Time", ""}, {"User", "ann"}, {"Text", "<x>"}},
        "ExpD Time none User=ann Text=<x>");
    row("values ahead of the id", {{"Text", "lost"}, {"ID", "ExpD"}, {"User", "ann"}},
        "ExpD User=ann");
    row("an unknown value ends it", {{"ID", "ExpD"}, {"User", "ann"}, {"New", "1"}, {"Text", "x"}},
        "ExpD User=ann");
    row("the last of two ids", {{"ID", "ExpD"}, {"Text", "x"}, {"ID", "ExpE"}, {"User", "ann"}},
        "ExpE User=ann");
    row("the last id is unknown", {{"ID", "ExpD"}, {"Text", "x"}, {"ID", "Nope"}}, "null");
    row("a value twice", {{"ID", "ExpD"}, {"Text", "1"}, {"Text", "2"}}, "ExpD Text=2");
    row("a name that no XML has", {{"ID", "ExpR"}, {QString(QChar(0)) + "src", "x"}},
        "ExpR \1src=x");
}

// What stands in no file can be asked for, too.
void tst_XMLLogReader::entryOf()
{
    using Attributes = QList<QPair<QString, QString>>;
    QFETCH(Attributes, attributes);
    QXmlStreamAttributes list;
    for (const auto &attribute : attributes)
        list.append(attribute.first, attribute.second);
    const QDateTime before = QDateTime::currentDateTime();
    const std::unique_ptr<vo::LogEntry> entry(XMLLogReader::entryOf(list));
    QTEST(told(entry.get(), before).replace(QChar(0), QChar(1)), "entry");
}

void tst_XMLLogReader::knownClasses_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isKnown");
    for (const char *id : {"ALog", "ExpW", "ExpS", "ExpA", "ExpE", "ExpD", "ExpR", "XmlP"})
        QTest::newRow(id) << QString(id) << true;
    for (const char *id : {"Nope", "", "    ", "Exp", "expd", "EXPD"})
        QTest::addRow("unknown: %s", id) << QString(id) << false;
    QTest::newRow("longer") << "ExpDone" << true;
}

// Asking changes nothing, unlike trying to make one.
void tst_XMLLogReader::knownClasses()
{
    QFETCH(QString, id);
    const vo::LogEntryFactory *const factory = vo::logEntryFactory();
    const QStringList names = factory->entryNames();
    for (int i = 0; i < 2; ++i) {
        QTEST(factory->contains(id), "isKnown");
        const std::unique_ptr<vo::LogEntry> entry(vo::logEntryFactory()->create(id));
        QTEST(entry != nullptr, "isKnown");
    }
    QCOMPARE(factory->entryNames(), names);
    vo::LogEntryFactory own;
    QVERIFY(!own.contains(id));
    own.registerCreator(id, &ExportDoneLogEntry::create, "x");
    QVERIFY(own.contains(id));
    own.registerCreator(id, nullptr, "x");
    QVERIFY(!own.contains(id));
}

QTEST_GUILESS_MAIN(tst_XMLLogReader)
#include "tst_XMLLogReader.moc"
