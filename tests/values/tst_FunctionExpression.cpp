#include "support/Logged.h"
#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>
#include <Vokit/TypeTool>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

QVariant halve(const QList<QVariant> &values)
{
    return values.value(0).toDouble() / 2;
}

QVariant firstOf(const QList<QVariant> &values)
{
    return values.value(0);
}

void printHalf(QTextStream &stream, Expression::PrintStyle style, const QString &name,
               const QList<ExpressionHandle> &arguments)
{
    stream << name << ':';
    arguments.at(0)->print(stream, style);
    stream << "/2";
}

FunctionExpression call(const char *name, const QVariantList &values, bool distinct = false)
{
    ExpressionList arguments;
    for (const QVariant &value : values)
        arguments.append(literal(value));
    return {QString::fromLatin1(name), arguments, distinct};
}

} // namespace

/// The node and its registry; what the built-in functions give is in tst_BuiltInFunctions.
class tst_FunctionExpression : public QObject
{
    Q_OBJECT

private slots:
    void registry_data();
    void registry();
    void registration();
    void registrationOfSqlText();
    void unknownName();
    void factories_data();
    void factories();
    void printing_data();
    void printing();
    void foldedCalls();
    void placeholders_data();
    void placeholders();
    void distinctValues_data();
    void distinctValues();
    void flag();
    void equality();
    void stored();
};

void tst_FunctionExpression::registry_data()
{
    QTest::addColumn<int>("minArgs");
    QTest::addColumn<int>("maxArgs");
    QTest::addColumn<QString>("printer");
    for (const char *name : {"currentDate", "currentTime", "currentDateTime"})
        QTest::newRow(name) << 0 << 0 << "none";
    for (const char *name : {"abs", "hex", "round", "length", "lower", "upper", "quote", "trim"})
        QTest::newRow(name) << 1 << 1 << "call";
    for (const char *name : {"min", "max", "count", "group_concat"})
        QTest::newRow(name) << 1 << -1 << "call";
    QTest::newRow("coalesce") << 2 << -1 << "call";
    QTest::newRow("ifnull") << 2 << 2 << "call";
    QTest::newRow("nullif") << 2 << 2 << "call";
    QTest::newRow("random") << 0 << 0 << "call";
    QTest::newRow("like") << 2 << 3 << "infix";
    QTest::newRow("regexp") << 2 << 2 << "infix";
}

void tst_FunctionExpression::registry()
{
    const QString name = QTest::currentDataTag();
    QVERIFY(FunctionExpression::isRegistered(name));
    const FunctionExpression::FunctionEntry entry = FunctionExpression::functionMap().value(name);
    QTEST(entry.minArgs, "minArgs");
    QTEST(entry.maxArgs, "maxArgs");
    const QString printer = entry.printFunction == &FunctionExpression::printDefault ? "call"
                            : entry.printFunction == &FunctionExpression::printLike  ? "infix"
                            : entry.printFunction                                    ? "other"
                                                                                     : "none";
    QTEST(printer, "printer");
}

void tst_FunctionExpression::registration()
{
    const int before = FunctionExpression::functionMap().size();
    QVERIFY(FunctionExpression::registerFunction("halve", &halve, &FunctionExpression::printDefault,
                                                 1, 1));
    QCOMPARE(FunctionExpression::functionMap().size(), before + 1);
    QCOMPARE(evaluated(call("halve", {5})), QString("double:2.5 const"));
    QCOMPARE(print(call("halve", {5}), Sql), QString("halve(5)"));

    // A taken name: refused, told, and the old row stays.
    const QString told = logged(
        [] { QVERIFY(!FunctionExpression::registerFunction("halve", &firstOf, nullptr, 0, 0)); });
    QCOMPARE(told, QString("Warning: Function halve already declared.\n"));
    QCOMPARE(evaluated(call("halve", {5})), QString("double:2.5 const"));
    QCOMPARE(logged([] { FunctionExpression::registerFunction("abs", &firstOf, nullptr, 0, 0); },
                    vo::Log::LevelError),
             QString()); // below the log level

    QCOMPARE(logged([] {
                 vo::Log::instance().setStream(vo::Log::LevelWarning, nullptr); // switched off
                 QVERIFY(!FunctionExpression::registerFunction("halve", &firstOf, nullptr, 0, 0));
             }),
             QString());
    FunctionExpression::functionMap().remove("halve");
}

void tst_FunctionExpression::registrationOfSqlText()
{
    FunctionExpression::registerFunction("halve", &halve, nullptr, 1, 1);
    QCOMPARE(print(call("halve", {5}), Sql), QString("2.5")); // computed here
    QVERIFY(FunctionExpression::registerSqlPrintFunction("halve", &printHalf));
    QCOMPARE(print(call("halve", {5}), Sql), QString("halve:5/2"));
    QCOMPARE(print(call("halve", {5}), Readable), QString("halve(5)"));
    QVERIFY(FunctionExpression::registerSqlPrintFunction("halve", nullptr));
    QCOMPARE(print(call("halve", {5}), Sql), QString("2.5"));
    FunctionExpression::functionMap().remove("halve");

    const int before = FunctionExpression::functionMap().size();
    const QString told =
        logged([] { QVERIFY(!FunctionExpression::registerSqlPrintFunction("halve", &printHalf)); });
    QCOMPARE(told, QString("Warning: Function halve not declared.\n"));
    QCOMPARE(FunctionExpression::functionMap().size(), before);
}

void tst_FunctionExpression::unknownName()
{
    QVERIFY(!FunctionExpression::isRegistered("nobody"));
    QVERIFY(!FunctionExpression::functionMap().contains("nobody"));
    const FunctionExpression node = call("nobody", {1});
    QCOMPARE(print(node, Readable), QString("nobody(1)"));
    QCOMPARE(evaluated(node), QString("NULL const")); // nothing is called
    QCOMPARE(print(node, Sql), QString("''"));
    // Asking has taken the name.
    QVERIFY(FunctionExpression::functionMap().contains("nobody"));
    QVERIFY(!FunctionExpression::isRegistered("nobody"));
    logged([] { QVERIFY(!FunctionExpression::registerFunction("nobody", &halve, nullptr, 1, 1)); });
    FunctionExpression::functionMap().remove("nobody");
}

void tst_FunctionExpression::factories_data()
{
    QTest::addColumn<ExpressionHandle>("node");
    QTest::addColumn<QString>("readable");
    QTest::addColumn<QString>("sql");
    const ExpressionHandle a = ref("a");
    const ExpressionHandle b = ref("b");
    const ValueExpression v("v w", "");
    const auto row = [](const ExpressionHandle &node, const char *readable,
                        const QString &sql = QString()) {
        QTest::newRow(readable) << node << readable << (sql.isNull() ? readable : sql);
    };
    row(abs(a), "abs(a)");
    row(hex(a), "hex(a)");
    row(round(a), "round(a)");
    row(length(a), "length(a)");
    row(lower(a), "lower(a)");
    row(upper(a), "upper(a)");
    row(quote(a), "quote(a)");
    row(trim(a), "trim(a)");
    row(vogen::random(), "random()");
    row(coalesce(ExpressionList(a, b)), "coalesce(a,b)");
    row(ifnull(a, b), "ifnull(a,b)");
    row(nullif(a, b), "nullif(a,b)");
    row(vogen::min(v), "min(v_w)");
    row(vogen::max(v), "max(v_w)");
    row(vogen::count(v, false), "count(v_w)");
    row(vogen::count(ValueExpression::star, false), "count(*)");
    row(group_concat(v, false), "group_concat(v_w)");
    QTest::newRow("distinct count") << ExpressionHandle(vogen::count(v, true)) << "count(v_w)"
                                    << "count(DISTINCT v_w)";
    QTest::newRow("distinct group_concat")
        << ExpressionHandle(group_concat(v, true)) << "group_concat(v_w)"
        << "group_concat(DISTINCT v_w)";
    row(abs(a << b), "abs(a,b)"); // a list gives its operands
    row(abs(ExpressionHandle()), "abs()");
    row(ifnull(a << b, a << b), "ifnull(a,b,a,b)");
    row(like(a, "x%", "!"), "like(a,\"x%\",\"!\")", "(a LIKE 'x%' ESCAPE '!')");
    row(like(a, "it's", ""), "like(a,\"it's\",\"\")", "(a LIKE 'it''s' ESCAPE '')");
    row(regexp(a, "x.*"), "regexp(a,\"x.*\")", "(a REGEXP 'x.*')");
    row(regexp(a, QRegExp("y+", Qt::CaseInsensitive)), "regexp(a,\"y+\")", "(a REGEXP 'y+')");
}

void tst_FunctionExpression::factories()
{
    QFETCH(ExpressionHandle, node);
    QTEST(print(node, Readable), "readable");
    QTEST(print(node, Sql), "sql");
    QTEST(print(node, Sql | Nested), "sql");
    QVERIFY(!node->isEmpty());
    QCOMPARE(print(currentDate(), Readable), QString("currentDate()"));
    QCOMPARE(print(currentTime(), Code), QString("currentTime()"));
    QCOMPARE(print(currentDateTime(), Readable), QString("currentDateTime()"));
}

void tst_FunctionExpression::printing_data()
{
    QTest::addColumn<ExpressionHandle>("node");
    QTest::addColumn<QString>("sql");
    const ExpressionHandle both = ref("a") && ref("b");
    QTest::newRow("no brackets for an argument") << ExpressionHandle(abs(both)) << "abs(a AND b)";
    QTest::newRow("but nested style reaches it")
        << ExpressionHandle(abs(both) == literal(1)) << "abs((a AND b)) = 1";
    QTest::newRow("DISTINCT reaches the arguments")
        << ExpressionHandle(FunctionExpression("count", ExpressionList(abs(ref("a"))), true))
        << "count(DISTINCT abs(DISTINCT a))";
    QTest::newRow("an infix call needs two")
        << ExpressionHandle(FunctionExpression("like", ExpressionList(ref("a")), false))
        << "(a LIKE )";
    QTest::newRow("in ordering") << ExpressionHandle(abs(ref("a"))) << "abs(a)";
}

void tst_FunctionExpression::printing()
{
    QFETCH(ExpressionHandle, node);
    QTEST(print(node, Sql), "sql");
}

void tst_FunctionExpression::foldedCalls()
{
    const QDate today = QDate::currentDate();
    const QString printed = print(currentDate(), Sql);
    const long long microSeconds = TypeTool::dateMicroSeconds(QDate::currentDate());
    if (today == QDate::currentDate()) // unless midnight came between
        QCOMPARE(printed, QString::number(microSeconds));
    QCOMPARE(print(currentDate(), Placeholders), QString("?"));
    QCOMPARE(print(currentDateTime(), Placeholders), QString("?"));
    QCOMPARE(bindable(ref("a") == currentDate()).section(" <- ", 0, 0), QString("a = ?"));
}

void tst_FunctionExpression::placeholders_data()
{
    QTest::addColumn<ExpressionHandle>("node");
    QTest::addColumn<QString>("text");
    QTest::newRow("constants in arguments print and are not collected")
        << ExpressionHandle(abs(bound(5))) << "abs(?) <- ";
    QTest::newRow("literal arguments") << ExpressionHandle(abs(literal(5))) << "abs(5) <- ";
    QTest::newRow("like has none")
        << ExpressionHandle(like(ref("a"), "x", "")) << "(a LIKE 'x' ESCAPE '') <- ";
}

void tst_FunctionExpression::placeholders()
{
    QFETCH(ExpressionHandle, node);
    QTEST(bindable(node), "text");
    // A call that is computed here gives its value as it is: a date stays a date.
    const QList<QVariant> values = ExpressionHandle(currentDateTime())->collectPlaceholders();
    QCOMPARE(values.size(), 1);
    QCOMPARE(values.first().type(), QVariant::DateTime);
    QCOMPARE(ExpressionHandle(currentTime())->collectPlaceholders().first().type(), QVariant::Time);
}

void tst_FunctionExpression::distinctValues_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<int>("count");
    QTest::newRow("different") << QVariantList{1, 2, 3} << 3;
    QTest::newRow("equal") << QVariantList{1, 1, 1} << 1;
    QTest::newRow("equal by TypeTool: less than 1 apart") << QVariantList{1, 1.5} << 1;
    QTest::newRow("an int and its text") << QVariantList{1, "1"} << 1;
    QTest::newRow("NULLs equal nothing") << QVariantList{QVariant(), QVariant(), 1} << 3;
    QTest::newRow("not side by side") << QVariantList{1, 2, 1} << 2;
    QTest::newRow("none") << QVariantList{} << 0;
}

void tst_FunctionExpression::distinctValues()
{
    QFETCH(QVariantList, values);
    QFETCH(int, count);
    QCOMPARE(call("count", values, true).evaluate(PropertySet(), nullptr), QVariant(count));
    QCOMPARE(call("count", values).evaluate(PropertySet(), nullptr), QVariant(values.size()));
}

void tst_FunctionExpression::flag()
{
    const PropertySet set = setOf({new IntProperty("a", "", -3)});
    QCOMPARE(evaluated(abs(ref("a")), set), QString("int:3"));
    QCOMPARE(evaluated(abs(literal(-3))), QString("int:3 const"));
    bool isConstant = false;
    vogen::random().evaluate(set, &isConstant);
    QVERIFY(isConstant); // without operands
    QCOMPARE(evaluated(coalesce(literal(1) << ref("a")), set), QString("int:1"));
}

void tst_FunctionExpression::equality()
{
    const ValueExpression v("v", "");
    const ExpressionHandle node = vogen::count(v, true);
    QVERIFY(node.equals(vogen::count(v, true)));
    QVERIFY(!node.equals(vogen::count(v, false)));
    QVERIFY(!node.equals(group_concat(v, true)));
    QVERIFY(!node.equals(vogen::count(ValueExpression("w", ""), true)));
    QVERIFY(!node.equals(ref("v")));
    QVERIFY(!node->equals(nullptr));
    FunctionExpression copy = abs(ref("a"));
    copy = vogen::count(v, true);
    copy = *&copy;
    QVERIFY(copy.equals(node.constData()));
    QVERIFY(FunctionExpression(QString(), ExpressionList(ref("a")), false).isEmpty());
}

void tst_FunctionExpression::stored()
{
    const ExpressionHandle node = vogen::count(ValueExpression("a", ""), true);
    const QByteArray bytes = written(node);
    const QByteArray head = QByteArray::fromHex("0000001d") +
                            QByteArray("N5vogen18FunctionExpressionE", 29) +
                            QByteArray::fromHex("00000002"
                                                "0000000a"
                                                "0063006f0075006e0074"
                                                "01"
                                                "00000001"
                                                "00000001");
    QCOMPARE(bytes.left(head.size()).toHex(), head.toHex());
    QCOMPARE(bytes.mid(head.size()), written(ref("a")));
    QVERIFY(readBack(bytes).equals(node));
    QCOMPARE(print(readBack(written(like(ref("a"), "x_", "!"))), Sql),
             QString("(a LIKE 'x_' ESCAPE '!')"));

    // Names that nobody knows, and calls with too few arguments, come from damaged streams.
    for (const char *name : {"abs", "nullif", "like", "regexp", "min", "hex", "length"}) {
        const ExpressionHandle bare = readBack(written(call(name, {})));
        bare->evaluate(PropertySet(), nullptr);
        print(bare, Sql);
        QCOMPARE(print(bare, Readable), QString(name) + "()");
    }
}

QTEST_APPLESS_MAIN(tst_FunctionExpression)
#include "tst_FunctionExpression.moc"
