#include "RowFixture.h"

#include "support/Trees.h"

#include <QtTest>

using test::column;
using test::ref;
using test::volEntry;
using vo::VolRow;
using vogen::ExpressionHandle;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

ExpressionHandle compared(const char *name, vogen::Comparator::CompOp op, const QVariant &value)
{
    return vogen::Comparator(ref(name), op, test::bound(value));
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class tst_VolRow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void columns_data();
    void columns();
    void getters();
    void nulls_data();
    void nulls();
    void nothingStaysBehind();
    void collidingNames();
    void unknownValueWithTheNameOfADate();
    void ownDescription();
    void descriptions_data();
    void descriptions();
    void descriptionOfUnknownClass();
    void unreadableDateInASentence();
    void filters_data();
    void filters();
};

// A sentence without a place for each value is usual here, and Qt says so each time.
void tst_VolRow::initTestCase()
{
    static QtMessageHandler before = nullptr;
    before = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            if (!message.startsWith("QString::arg: Argument missing"))
                before(type, context, message);
        });
}

void tst_VolRow::columns_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("text")
        << QByteArray(
               R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05" User="ann" Text="3 &lt; 4"/>)")
        << QStringList{"id=text:ExpD",
                       "category=text:Export",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:ann",
                       "action=text:Export done",
                       "description=text:3 < 4",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:ann",
                       "text=text:3 < 4"}
        << QStringList{"text=text:3 < 4"};
    QTest::newRow("dates")
        << QByteArray(R"(<Entry ID="ExpS" Time="21 Nov 2026 15:04:05" User="" Text="%4" )"
                      R"(Form="AVI" from="3 May 2026 01:02:03" to  ="4 May 2026 00:00:00"/>)")
        << QStringList{"id=text:ExpS",
                       "category=text:Export",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:",
                       "action=text:Export start",
                       "description=text:AVI",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:",
                       "text=text:%4",
                       "format=text:AVI",
                       "source=text:",
                       "dest=text:",
                       "from=date:2026-05-03T01:02:03",
                       "to=date:2026-05-04T00:00:00"}
        << QStringList{"text=text:%4",
                       "format=text:AVI",
                       "source=text:",
                       "dest=text:",
                       "from=date:2026-05-03T01:02:03",
                       "to=date:2026-05-04T00:00:00"};
    QTest::newRow("numbers")
        << QByteArray(R"(<Entry ID="XmlP" Time="21 Nov 2026 15:04:05" errL="-12" errC="x"/>)")
        << QStringList{"id=text:XmlP",
                       "category=text:Error",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:",
                       "action=text:Action log error",
                       "description=text:Error '' reading action log '' in line '-12', column '0'.",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:",
                       "source=text:",
                       "error=text:",
                       "line=int:-12",
                       "colunm=int:0"}
        << QStringList{"source=text:", "error=text:", "line=int:-12", "colunm=int:0"};
    QTest::newRow("unknown class")
        << QByteArray(R"(<Entry ID="Nope" Time="21 Nov 2026 15:04:05" User="ann" num ="5" b="x"/>)")
        << QStringList{"id=text:Nope",
                       "category=text:",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:ann",
                       "action=text:",
                       "description=text:num: 5 b: x",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:ann",
                       "num=text:5",
                       "b=text:x"}
        << QStringList{"num=text:5", "b=text:x"};
    // Where XMLLogReader stops, a row goes on.
    QTest::newRow("unknown value")
        << QByteArray(R"(<Entry ID="ExpD" New="1" Time="21 Nov 2026 15:04:05" Text="x" More="2"/>)")
        << QStringList{"id=text:ExpD",
                       "category=text:Export",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:",
                       "action=text:Export done",
                       "description=text:x",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:",
                       "text=text:x",
                       "New=text:1",
                       "More=text:2"}
        << QStringList{"text=text:x", "New=text:1", "More=text:2"};
    QTest::newRow("odd name")
        << QByteArray(R"(<Entry ID="ExpR" Time="21 Nov 2026 15:04:05" Text="%3" ^src="old"/>)")
               .replace('^', '\0')
        << QStringList{"id=text:ExpR",
                       "category=text:Export",
                       "time=date:2026-11-21T15:04:05",
                       "user=text:",
                       "action=text:Export rename",
                       "description=text:",
                       "Time=date:2026-11-21T15:04:05",
                       "User=text:",
                       "text=text:%3",
                       "path=text:",
                       "source=text:old",
                       "dest=text:"}
        << QStringList{"text=text:%3", "path=text:", "source=text:old", "dest=text:"};
}

void tst_VolRow::columns()
{
    QFETCH(QByteArray, element);
    QFETCH(QStringList, columns);
    VolRow row;
    row.read(volEntry(element));
    QCOMPARE(test::columns(row), sorted(columns));
    QTEST(test::values(row), "values");
}

void tst_VolRow::getters()
{
    VolRow row;
    row.read(
        volEntry(R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05" User="ann" Text="3 clips"/>)"));
    QCOMPARE(row.id(), QString("ExpD"));
    QCOMPARE(row.category(), QString("Export"));
    QCOMPARE(row.time(), QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5)));
    QCOMPARE(row.timeText(), QString("21 Nov 2026 15:04:05"));
    QCOMPARE(row.user(), QString("ann"));
    QCOMPARE(row.action(), QString("Export done"));
    QCOMPARE(row.description(), QString("3 clips"));
}

void tst_VolRow::nulls_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("timeText");
    QTest::addColumn<QString>("from"); ///< the column, and the next one: among the values
    QTest::addColumn<QString>("shown");
    QTest::newRow("no dates") << QByteArray(R"(<Entry ID="ExpS"/>)") << ""
                              << "NULL"
                              << "text:";
    QTest::newRow("empty ones") << QByteArray(R"(<Entry ID="ExpS" Time="" from=""/>)") << ""
                                << "NULL"
                                << "text:";
    QTest::newRow("of another locale")
        << QByteArray(R"(<Entry ID="ExpS" Time="21.11.26 15:04" from="3.5.26 01:02"/>)")
        << "21.11.26 15:04"
        << "NULL"
        << "text:3.5.26 01:02";
    QTest::newRow("one can be read")
        << QByteArray(R"(<Entry ID="ExpS" Time="x" from="3 May 2026 01:02:03"/>)") << "x"
        << "date:2026-05-03T01:02:03"
        << "date:2026-05-03T01:02:03";
}

void tst_VolRow::nulls()
{
    QFETCH(QByteArray, element);
    VolRow row;
    row.read(volEntry(element));
    QVERIFY(!row.time().isValid());
    QTEST(row.timeText(), "timeText");
    QCOMPARE(column(row, "time"), QString("NULL"));
    QCOMPARE(column(row, "Time"), QString("NULL"));
    QTEST(column(row, "from"), "from");
    QTEST(test::told(row.values().at(4).value), "shown");
    QCOMPARE(row.values().size(), std::size_t(6));
    // NULL in an expression: neither it nor its opposite holds.
    const QDateTime date(QDate(2026, 1, 1), QTime(0, 0));
    const ExpressionHandle later = compared("time", vogen::Comparator::Greater, date);
    QVERIFY(!later->evaluate(row.set(), nullptr).toBool());
    const ExpressionHandle notLater = !later;
    QVERIFY(!notLater->evaluate(row.set(), nullptr).toBool());
}

// Each row takes the place of the one before, with all that it had.
void tst_VolRow::nothingStaysBehind()
{
    const QByteArray full = R"(<Entry ID="ExpS" Time="21 Nov 2026 15:04:05" User="ann" Text="x" )"
                            R"(from="3 May 2026 01:02:03" New="1"/>)";
    const QByteArray empty = R"(<Entry ID="ExpS"/>)";
    const QByteArray unknown = R"(<Entry ID="Nope" a="1"/>)";
    VolRow fresh;
    fresh.read(volEntry(empty));
    const QStringList ofEmpty = test::columns(fresh);
    VolRow other;
    other.read(volEntry(full));
    const QStringList ofFull = test::columns(other);
    VolRow row;
    for (const QByteArray &element : {full, empty, unknown, full, full, empty, empty, full}) {
        row.read(volEntry(element));
        if (element == full)
            QCOMPARE(test::columns(row), ofFull);
        if (element == empty)
            QCOMPARE(test::columns(row), ofEmpty);
    }
    row.read(volEntry(R"(<Entry ID="Nop2" b="1"/>)"));
    QCOMPARE(column(row, "a"), QString("NULL"));
    QCOMPARE(column(row, "b"), QString("text:1"));
}

// The names of every row mean what they mean; of two values of one name, the first is the column.
void tst_VolRow::collidingNames()
{
    VolRow row;
    row.read(volEntry(R"(<Entry ID="Vist" Time="21 Nov 2026 15:04:05" User="ann" )"
                      R"(time="1 Jan 2026 00:00:00" user="other" TIME="t" door="front" )"
                      R"(dr2 ="back" cnt ="7" id="i" Door="d"/>)"));
    QCOMPARE(column(row, "time"), QString("date:2026-11-21T15:04:05"));
    QCOMPARE(column(row, "Time"), QString("date:2026-11-21T15:04:05"));
    QCOMPARE(column(row, "user"), QString("text:ann"));
    QCOMPARE(column(row, "User"), QString("text:ann"));
    QCOMPARE(column(row, "door"), QString("text:front"));
    QCOMPARE(column(row, "count"), QString("int:7"));
    QCOMPARE(column(row, "due"), QString("NULL"));
    QCOMPARE(column(row, "id"), QString("text:Vist"));
    QCOMPARE(column(row, "Door"), QString("text:d"));
    // None is lost.
    QCOMPARE(test::values(row),
             (QStringList{"time=date:2026-01-01T00:00:00", "user=text:other", "Time=text:t",
                          "door=text:front", "door=text:back", "count=int:7",
                          "due=text:", "id=text:i", "Door=text:d"}));
}

// Also where the date was NULL in the row before.
void tst_VolRow::unknownValueWithTheNameOfADate()
{
    VolRow row;
    row.read(volEntry(R"(<Entry ID="ExpD"/>)"));
    row.read(volEntry(R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05" time="x"/>)"));
    QCOMPARE(column(row, "time"), QString("date:2026-11-21T15:04:05"));
    row.read(volEntry(R"(<Entry ID="ExpD" time="x"/>)"));
    QCOMPARE(column(row, "time"), QString("NULL"));
    QCOMPARE(test::values(row), (QStringList{"text=text:", "time=text:x"}));

    const QByteArray due = R"(<Entry ID="Vist" dueD="21 Nov 2026 15:04:05" due="x"/>)";
    row.read(volEntry(due));
    QCOMPARE(column(row, "due"), QString("date:2026-11-21T15:04:05"));
    row.read(volEntry(R"(<Entry ID="Vist" due="x"/>)"));
    QCOMPARE(column(row, "due"), QString("NULL"));
    row.read(volEntry(due));
    QCOMPARE(column(row, "due"), QString("date:2026-11-21T15:04:05"));
}

void tst_VolRow::ownDescription()
{
    VolRow row;
    row.read(volEntry(R"(<Entry ID="Vist" Time="21 Nov 2026 15:04:05" cnt ="3"/>)"));
    QCOMPARE(row.description(), QString("3 visits"));
    QCOMPARE(column(row, "description"), QString("text:3 visits"));
    QCOMPARE(row.action(), QString("Visited"));
    QCOMPARE(row.category(), QString("Access"));
}

void tst_VolRow::descriptions_data()
{
    const QDateTime from(QDate(2026, 5, 3), QTime(1, 2, 3));
    const QDateTime to(QDate(2026, 5, 4), QTime(0, 0));
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const vo::LogEntry &entry) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QTextStream stream(&buffer);
        vo::XMLLogWriter writer(&stream, "", QDateTime());
        entry.setTime(QDateTime(QDate(2026, 11, 21), QTime(15, 4, 5)));
        entry.setUser("ann");
        writer.writeStartDocument();
        entry.writeTo(writer);
        QTest::newRow(name) << buffer.data();
    };
    const QString places = "%1 %2 %3 %4 %5 %6 %1";
    row("switched", vo::ActionLogContextSwitchEntry("a %2", "b"));
    row("start", ExportStartLogEntry(places, "AVI", "Gate", "usb", from, to));
    row("written", ExportWrittenLogEntry("%5-%4", "%1", "", "%9", from, to));
    row("done", ExportDoneLogEntry("3 clips"));
    row("error", ExportErrorLogEntry("disk <full> %1"));
    row("abort", ExportAbortLogEntry(""));
    row("rename", ExportRenameLogEntry("'%1%2' to '%1%3'.", "/media/", "", "new"));
    row("rename with a source", ExportRenameLogEntry("'%1%2' to '%1%3'.", "/", "old", "new"));
    row("problem", ParseXMLLogEntry("Start tag expected.", "/a.vol", 12, -1));
}

// As the entry that the client shows.
void tst_VolRow::descriptions()
{
    QFETCH(QByteArray, bytes);
    const vo::VolEntry entry = test::readVol(bytes).entries().at(0);
    VolRow row;
    row.read(entry);
    QCOMPARE(row.description(), entry.toLogEntry()->description());
    QCOMPARE(row.action(), entry.toLogEntry()->action());
    QCOMPARE(row.category(), entry.toLogEntry()->category().name());
}

void tst_VolRow::descriptionOfUnknownClass()
{
    VolRow row;
    row.read(volEntry(R"(<Entry ID="Nope" Time="x" User="ann"/>)"));
    QCOMPARE(row.description(), QString());
    row.read(volEntry(R"(<Entry ID="Nope" b="2" a="" Text="%1"/>)"));
    QCOMPARE(row.description(), QString("b: 2 a:  Text: %1"));
}

void tst_VolRow::unreadableDateInASentence()
{
    VolRow row;
    row.read(volEntry(R"(<Entry ID="ExpS" Text="%1%2%3%4 to %5" from="3.5.26 01:02" )"
                      R"(to  ="4 May 2026 00:00:00"/>)"));
    QCOMPARE(row.description(), QString("3.5.26 01:02 to 4 May 2026 00:00:00"));
}

void tst_VolRow::filters_data()
{
    using C = vogen::Comparator;
    QTest::addColumn<ExpressionHandle>("filter");
    QTest::addColumn<QStringList>("matches");
    const auto row = [](const char *name, const ExpressionHandle &filter,
                        const QStringList &matches) { QTest::newRow(name) << filter << matches; };
    row("id", compared("id", C::Equal, "ExpD"), {"1", "2"});
    row("not the id", compared("id", C::NotEqual, "ExpD"), {"3", "4", "5"});
    row("user", compared("user", C::Equal, "ann"), {"1", "3", "5"});
    row("category", compared("category", C::Equal, "Error"), {"4"});
    row("an unknown class has no category", compared("category", C::Equal, ""), {"5"});
    row("action", compared("action", C::Equal, "Export start"), {"3"});
    const QDateTime noon(QDate(2026, 11, 21), QTime(12, 0));
    row("before", compared("time", C::Less, noon), {"1"});
    row("since", compared("time", C::GreaterEqual, noon), {"2", "3"});
    row("the very second", compared("time", C::Equal, noon.addSecs(3600)), {"2"});
    row("a date of the class", compared("from", C::Less, noon), {"3"});
    row("a number of the class", compared("line", C::Greater, 9), {"4"});
    row("a value of no class", compared("num", C::Equal, "5"), {"5"});
    row("like", like(ref("description"), "_ clips", QString()), {"1", "2"});
    row("regexp", regexp(ref("description"), ".*clips"), {"1", "2"});
    row("in", vogen::ElementOf(ref("user")).append(QVariant("bob")).append(QVariant("ann")),
        {"1", "2", "3", "5"});
    row("and", compared("id", C::Equal, "ExpD") && compared("user", C::Equal, "ann"), {"1"});
    row("or", compared("id", C::Equal, "XmlP") || compared("user", C::Equal, "bob"), {"2", "4"});
    row("NULL or true", compared("from", C::Less, noon) || compared("user", C::Equal, "bob"),
        {"2", "3"});
    row("not NULL", !compared("time", C::Less, noon), {"2", "3"});
    row("no such column", compared("nothing", C::Equal, "x"), {});
}

void tst_VolRow::filters()
{
    const QByteArray log =
        R"(<Entries>)"
        R"(<Entry ID="ExpD" Time="21 Nov 2026 11:00:00" User="ann" Text="3 clips" No="1"/>)"
        R"(<Entry ID="ExpD" Time="21 Nov 2026 13:00:00" User="bob" Text="4 clips" No="2"/>)"
        R"(<Entry ID="ExpS" Time="21 Nov 2026 14:00:00" User="ann" Text="t" )"
        R"(from="3 May 2026 01:02:03" No="3"/>)"
        R"(<Entry ID="XmlP" errL="12" No="4"/>)"
        R"(<Entry ID="Nope" Time="?" User="ann" num ="5" No="5"/>)";
    QFETCH(ExpressionHandle, filter);
    VolRow row;
    QStringList matches;
    for (const vo::VolEntry &entry : test::readVol(log).entries()) {
        row.read(entry);
        if (filter->evaluate(row.set(), nullptr).toBool())
            matches.append(column(row, "No").mid(5));
    }
    QTEST(matches, "matches");
}

QTEST_GUILESS_MAIN(tst_VolRow)
#include "tst_VolRow.moc"
