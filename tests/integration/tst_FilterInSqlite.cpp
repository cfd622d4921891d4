#include "Clips.h"

#include <Vokit/ExpressionOperators>
#include <Vokit/NumericOperator>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

/// The same filters over the same rows: evaluated here, and run by SQLite from the printed text.
class tst_FilterInSqlite : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void agree_data();
    void agree();
    void differ_data();
    void differ();

private:
    QList<int> inMemory(const ExpressionHandle &filter) const;
    QString inDatabase(const ExpressionHandle &filter, Style style, QList<int> *ids) const;

    ClipTable m_table;
};

void tst_FilterInSqlite::initTestCase()
{
    QCOMPARE(m_table.open(), QString());
}

QList<int> tst_FilterInSqlite::inMemory(const ExpressionHandle &filter) const
{
    QList<int> ids;
    for (int id = 0; id < clips().size(); ++id) {
        if (filter->evaluate(propertiesOf(clips().at(id)), nullptr).toBool())
            ids.append(id);
    }
    return ids;
}

// Fills in the ids of the matches, and returns the error's text.
QString tst_FilterInSqlite::inDatabase(const ExpressionHandle &filter, Style style,
                                       QList<int> *ids) const
{
    QList<QVariantList> records;
    const QString error =
        m_table.select("SELECT id FROM clips WHERE ", filter, style, " ORDER BY id", &records);
    for (const QVariantList &record : records)
        ids->append(record.first().toInt());
    return error;
}

void tst_FilterInSqlite::agree_data()
{
    QTest::addColumn<ExpressionHandle>("filter");
    QTest::addColumn<QList<int>>("ids");
    const StringProperty camera("camera name");
    const StringProperty type("type");
    const DateTimeProperty start("start");
    const IntProperty duration("duration");
    const DoubleProperty score("score");
    const auto row = [](const char *name, const ExpressionHandle &filter, const QList<int> &ids) {
        QTest::newRow(name) << filter << ids;
    };

    row("text", camera == "yard", {0, 3});
    row("text with a quote", camera == "O'Hara's", {2});
    row("text that isn't there", camera == "'; DROP TABLE clips; --", {});
    row("text, unequal", type != "alarm", {1, 4, 5});
    row("text, ordered by code unit", camera < "g", {2, 5});
    row("an empty text", type == "", {5});
    row("int", duration == 30, {1});
    row("int, less", duration < 30, {0, 5});
    row("int, at most", duration <= 30, {0, 1, 5});
    row("int, greater", duration > 30, {2, 4});
    row("int, at least", duration >= 30, {1, 2, 4});
    row("int, unequal", duration != 30, {0, 2, 4, 5});
    row("int against a greater type", duration > 30LL, {2, 4});
    row("int against unsigned", duration > 30u, {2, 4});
    row("date and time", start >= QDateTime(QDate(2026, 4, 1), QTime(12, 0), Qt::UTC), {2, 3});
    row("date and time against a date", start < QDate(2026, 3, 6), {0, 5});
    row("date and time against a literal",
        ref("start") < ExpressionHandle(ConstExpression::date(2026, 3, 6)), {0, 5});
    row("double, at a distance of 1 or more", score > 1.4, {2});
    row("property and property", duration > start, {});
    row("In", ElementOf(camera).append(QVariant("gate")).append(QVariant("yard")), {0, 1, 3});
    row("In of ints", ElementOf(duration).append(QVariant(60)).append(QVariant(-5)), {2, 5});
    row("In of nothing", ElementOf(camera), {});
    row("And", camera == "yard" && duration < 30, {0});
    row("Or", camera == "gate" || duration > 30, {1, 2, 4});
    row("Or over a NULL", duration > 30 || camera == "yard", {0, 2, 3, 4});
    row("brackets", (camera == "yard" || camera == "gate") && duration >= 10, {0, 1});
    row("Not", !(duration < 30), {1, 2, 4});
    row("Not over a chain", !(duration > 0 && duration < 60), {2, 4, 5});
    row("a chain of three", camera != "gate" && duration > 0 && duration < 90, {0, 2});
}

void tst_FilterInSqlite::agree()
{
    QFETCH(ExpressionHandle, filter);
    QFETCH(QList<int>, ids);
    QCOMPARE(inMemory(filter), ids);
    for (const Style style : {Sql, Placeholders}) {
        QList<int> found;
        const QString error = inDatabase(filter, style, &found);
        QVERIFY2(error.isEmpty(), qPrintable(filter->toString(style) + ": " + error));
        QCOMPARE(found, ids);
    }
}

void tst_FilterInSqlite::differ_data()
{
    QTest::addColumn<ExpressionHandle>("filter");
    QTest::addColumn<QList<int>>("memory");
    QTest::addColumn<QList<int>>("literals");
    QTest::addColumn<QList<int>>("placeholders");
    const StringProperty type("type");
    const IntProperty duration("duration");
    const DoubleProperty score("score");
    const BoolProperty archived("archived");
    const auto row = [](const char *why, const ExpressionHandle &filter, const QList<int> &memory,
                        const QList<int> &literals, const QList<int> &placeholders) {
        QTest::newRow(why) << filter << memory << literals << placeholders;
    };

    row("doubles less than 1 apart are the same in memory", score > 0.5, {2}, {1, 2, 3}, {1, 2, 3});
    row("a bool prints as text, which no number equals; bound it is a number", archived == true,
        {1, 2}, {}, {1, 2});
    row("in memory a bool is text, and 1 is not true", archived == 1, {}, {1, 2}, {1, 2});
    row("NULL prints as an empty text, and binds as NULL", type == QVariant(), {}, {5}, {});
    row("an Or is never NULL in memory, so its negation is true", !(duration > 30 || duration < 0),
        {0, 1, 3}, {0, 1}, {0, 1});
    row("IN is never NULL in memory, so its negation is true",
        !ExpressionHandle(ElementOf(type).append(QVariant("alarm"))), {1, 3, 4, 5}, {1, 4, 5},
        {1, 4, 5});
    row("an And that meets a NULL first is NULL in memory, where SQL knows it is false",
        !(score > 1000.0 && type == "alarm"), {0, 1, 2, 3, 5}, {0, 1, 2, 3, 4, 5},
        {0, 1, 2, 3, 4, 5});
    row("a minus before a negative literal begins a comment, so duration alone is the filter",
        NumericOperator(ref("duration"), NumericOperator::Subtract, bound(-5)), {0, 1, 2, 4},
        {0, 1, 2, 4, 5}, {0, 1, 2, 4});
}

void tst_FilterInSqlite::differ()
{
    QFETCH(ExpressionHandle, filter);
    QTEST(inMemory(filter), "memory");
    QList<int> found;
    QCOMPARE(inDatabase(filter, Sql, &found), QString());
    QTEST(found, "literals");
    found.clear();
    QCOMPARE(inDatabase(filter, Placeholders, &found), QString());
    QTEST(found, "placeholders");
}

QTEST_GUILESS_MAIN(tst_FilterInSqlite)
#include "tst_FilterInSqlite.moc"
