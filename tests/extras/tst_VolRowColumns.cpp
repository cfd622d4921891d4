#include "RowFixture.h"

#include <QtTest>

using test::column;
using test::values;
using test::volEntry;
using vo::VolRow;

namespace {

/// A class whose words and category depend on a value.
class Alarm : public vo::LogEntry
{
public:
    Alarm() { append(&m_level); }
    static vo::LogEntry *create() { return new Alarm; }
    vo::FourChars id() const override { return gId; }
    vo::LogCategory category() const override
    {
        return m_level.value() > 1 ? vo::LogCatError : vo::LogCatAlarm;
    }
    QString descriptionText() const override { return QStringLiteral("level %1"); }
    QString action() const override { return QStringLiteral("Alarm %1").arg(m_level.value()); }

    static constexpr quint32 gId = 0x416C726D; // "Alrm"

private:
    vo::TLogValue<int> m_level{0x4C65766C, QStringLiteral("level"), 0};
};
const vo::LogEntryRegistrar gRegistrar(Alarm::gId, &Alarm::create, "Alarm");

// One after the other in one row, so that each may leave something behind for the next.
std::vector<vo::VolEntry> entries()
{
    std::vector<vo::VolEntry> all;
    for (
        const char *element : {
            R"(<Entry ID="ExpS" Time="21 Nov 2026 15:04:05" User="ann" Text="%1 to %5" Form="AVI" srcP="Gate 1" from="20 Nov 2026 08:00:00" to  ="20 Nov 2026 09:00:00"/>)",
            R"(<Entry ID="ExpS" User="bob" Text="%1 to %5" to  ="20.11.26 09:00"/>)",
            R"(<Entry ID="Alrm" Time="21 Nov 2026 15:04:06" Levl="2"/>)",
            R"(<Entry ID="Door" Time="21 Nov 2026 15:04:07" gate="4" user="x"/>)",
            R"(<Entry ID="Alrm" Levl="1" more="y"/>)",
            R"(<Entry ID="ExpD" Text="3 clips" text="z"/>)",
            R"(<Entry ID="ExpS" Time="21 Nov 2026 15:04:08" Text="%1" from="20 Nov 2026 10:00:00"/>)",
        })
        all.push_back(volEntry(element));
    return all;
}

// All that a row tells, by the functions.
QStringList told(const VolRow &row)
{
    return QStringList{row.id(),         row.category(), row.time().toString(Qt::ISODate),
                       row.user(),       row.action(),   row.timeText(),
                       row.description()} +
           values(row);
}

} // namespace

/// A row of which a filter uses some columns.
class tst_VolRowColumns : public QObject
{
    Q_OBJECT

private slots:
    void someColumns_data();
    void someColumns();
    void inAnyOrder();
    void changed();
    void wordsOfAValue();
};

void tst_VolRowColumns::someColumns_data()
{
    QTest::addColumn<QStringList>("columns");
    for (const char *name : {"id", "category", "time", "user", "action", "description", "Time",
                             "User", "text", "from", "to", "level", "gate", "more", "nobody's"})
        QTest::newRow(name) << QStringList{name};
    QTest::newRow("of an option each") << QStringList{"id", "category", "user", "time"};
    QTest::newRow("all") << QStringList();
}

void tst_VolRowColumns::someColumns()
{
    QFETCH(QStringList, columns);
    VolRow some;
    some.setColumns(columns);
    for (const vo::VolEntry &entry : entries()) {
        VolRow full;
        full.read(entry);
        some.read(entry);
        for (const QString &name : columns)
            QCOMPARE(column(some, name), column(full, name));
        QCOMPARE(told(some), told(full));
        for (const QString &name : columns) // which were not read anew
            QCOMPARE(column(some, name), column(full, name));
    }
}

void tst_VolRowColumns::inAnyOrder()
{
    for (const vo::VolEntry &entry : entries()) {
        VolRow full;
        full.read(entry);
        for (int first = 0; first < 4; ++first) {
            VolRow row;
            row.setColumns({"id"});
            row.read(entry);
            if (first == 0)
                QCOMPARE(row.description(), full.description());
            else if (first == 1)
                QCOMPARE(values(row), values(full));
            else if (first == 2)
                QCOMPARE(row.action(), full.action());
            else
                QCOMPARE(row.timeText(), full.timeText());
            QCOMPARE(told(row), told(full));
        }
    }
}

void tst_VolRowColumns::changed()
{
    VolRow row;
    const vo::VolEntry entry = entries().front();
    row.setColumns({"id"});
    row.read(entry);
    row.setColumns({"user", "description"});
    row.read(entry);
    QCOMPARE(column(row, "user"), QString("text:ann"));
    QCOMPARE(column(row, "description"), QString("text:AVI to Gate 1"));
    row.setColumns({});
    row.read(entry);
    QCOMPARE(column(row, "from"), QString("date:2026-11-20T08:00:00"));
}

void tst_VolRowColumns::wordsOfAValue()
{
    VolRow row;
    const auto words = [&row] {
        return QStringList{row.category(), row.action(), column(row, "category"),
                           column(row, "action")};
    };
    row.read(volEntry(R"(<Entry ID="Alrm" Levl="2"/>)"));
    QCOMPARE(words(), QStringList({"Error", "Alarm 2", "text:Error", "text:Alarm 2"}));
    row.read(volEntry(R"(<Entry ID="Alrm" Levl="1"/>)"));
    QCOMPARE(words(), QStringList({"Alarm", "Alarm 1", "text:Alarm", "text:Alarm 1"}));
    row.read(volEntry(R"(<Entry ID="Alrm"/>)"));
    QCOMPARE(words(), QStringList({"Alarm", "Alarm 0", "text:Alarm", "text:Alarm 0"}));
}

QTEST_GUILESS_MAIN(tst_VolRowColumns)
#include "tst_VolRowColumns.moc"
