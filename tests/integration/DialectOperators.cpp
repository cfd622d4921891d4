#include "DialectRows.h"

#include <Vokit/ArithmeticOperators>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>
#include <Vokit/SwitchCase>

#include <climits>

using namespace vogen;

namespace test {

namespace {

ExpressionHandle compare(const ExpressionHandle &a, Comparator::CompOp op,
                         const ExpressionHandle &b)
{
    return Comparator(a, op, b);
}

ExpressionHandle in(const ExpressionHandle &value, const QList<ExpressionHandle> &candidates)
{
    ElementOf node(value);
    for (const ExpressionHandle &candidate : candidates)
        node.append(candidate);
    return node;
}

void addComparisons(DialectRows &rows)
{
    const auto duration = ref("duration");  // 10
    const auto camera = ref("camera name"); // yard
    rows.same(duration != bound(10), "duration != 10", "0");
    rows.same(duration < bound(10), "duration < 10", "0");
    rows.same(duration == bound(10), "duration = 10", "1");
    rows.same(duration > bound(9), "duration > 9", "1");
    rows.same(duration <= bound(10), "duration <= 10", "1");
    rows.same(duration >= bound(11), "duration >= 11", "0");
    rows.same(camera != bound("gate"), "camera_name != 'gate'", "1");
    rows.same(camera < bound("yards"), "camera_name < 'yards'", "1");
    rows.same(camera == bound("Yard"), "camera_name = 'Yard'", "0");
    rows.same(camera > bound("Z"), "camera_name > 'Z'", "1");
    rows.same(camera <= bound(""), "camera_name <= ''", "0");
    rows.same(camera >= bound("yard"), "camera_name >= 'yard'", "1");
    rows.same(ref("start") > bound(QDate(2026, 3, 5)), "start > 1772668800000000", "1");
    rows.same(ref("start") == bound(1772712000000000LL), "start = 1772712000000000", "1");

    for (const auto op : {Comparator::NotEqual, Comparator::Less, Comparator::Equal,
                          Comparator::Greater, Comparator::LessEqual, Comparator::GreaterEqual}) {
        const ExpressionHandle node = compare(ref("note"), op, bound("x"));
        rows.same(node, print(node, Sql), "NULL");
    }
    rows.differs("null-literal", camera != bound(QVariant()), "camera_name != ''", "NULL", "1",
                 "NULL");
    rows.differs("empty-expression", camera == ExpressionHandle(), "camera_name = ", "NULL",
                 "error: near \"FROM\": syntax error");
    rows.differs("empty-expression", camera == (bound(1) << bound(2)), "camera_name = 1,2", "NULL",
                 "(0, 2)");

    rows.differs("near-doubles", ref("score") == bound(0.75), "score = 0.75", "1", "0");
    rows.differs("near-doubles", bound(2.5) > bound(2), "2.5 > 2", "0", "1");
    rows.same(ref("score") < bound(1.25), "score < 1.25", "1");
    rows.differs("bool-literal", ref("archived") == bound(false), "archived = 'false'", "1", "0",
                 "1");
    rows.differs("bool-and-number", ref("archived") == bound(0), "archived = 0", "0", "1");
    rows.same(duration == bound("10"), "duration = '10'", "1");
    rows.differs("text-and-number", duration < bound("9"), "duration < '9'", "1", "0");
    rows.differs("text-and-number", bound(8) > bound("10"), "8 > '10'", "1", "0");
    rows.differs("text-and-number", bound(10) == bound("10"), "10 = '10'", "1", "0");
    rows.differs("int-and-unsigned-64", duration > ref("size"), "duration > size", "0", "1");
    rows.differs("far-integers", bound(LLONG_MIN) < bound(5LL), "-9223372036854775808 < 5", "0",
                 "1");
    rows.differs("date-and-number", bound(QDate(1970, 1, 2)) > bound(86400001),
                 "86400000000 > 86400001", "0", "1");
    rows.differs("date-and-text", ref("start") > bound("2026-01-01"), "start > '2026-01-01'", "1",
                 "0");
    rows.differs("text-order", bound(QString(QChar(0xff5e))) < bound(QString::fromUtf8("😀")),
                 QString::fromUtf8("'\xef\xbd\x9e' < '😀'"), "0", "1");

    // A comparison has no brackets of its own, and SQL reads it by precedence.
    rows.same((bound(1) < bound(2)) == (bound(3) < bound(4)), "1 < 2 = 3 < 4", "1");
    rows.differs("nested-comparison", ref("archived") == ExpressionHandle(duration == bound(11)),
                 "archived = duration = 11", "1", "0");
}

void addMembership(DialectRows &rows)
{
    rows.same(in(ref("duration"), {bound(5), bound(10)}), "duration IN (5,10)", "1");
    rows.same(in(ref("duration"), {literal(5)}), "duration IN (5)", "0");
    rows.same(in(ref("camera name"), {bound("gate"), bound("yard")}),
              "camera_name IN ('gate','yard')", "1");
    rows.same(in(ref("start"), {bound(QDate(2026, 3, 5))}), "start IN (1772668800000000)", "0");
    rows.same(in(ref("duration"), {}), "duration IN ()", "0");
    rows.same(in(ref("note"), {}), "note IN ()", "0");
    rows.differs("in-null", in(ref("note"), {bound("x")}), "note IN ('x')", "0", "NULL");
    rows.differs("in-null", in(ref("duration"), {bound(5), ref("note")}), "duration IN (5,note)",
                 "0", "NULL");
    rows.differs("near-doubles", in(ref("score"), {bound(1)}), "score IN (1)", "1", "0");
    rows.differs("empty-expression", ElementOf(), " IN ()", "0",
                 "error: near \"IN\": syntax error");
    rows.differs("nested-comparison", bound("yard") == in(ref("camera name"), {bound(1)}),
                 "'yard' = camera_name IN (1)", "0", "1");
}

void addLogic(DialectRows &rows)
{
    const ExpressionHandle yes = ref("duration") == bound(10);
    const ExpressionHandle no = ref("duration") == bound(11);
    const ExpressionHandle unknown = ref("note") == bound("x");
    rows.same(yes && yes, "duration = 10 AND duration = 10", "1");
    rows.same(yes && no, "duration = 10 AND duration = 11", "0");
    rows.same(yes || no, "duration = 10 OR duration = 11", "1");
    rows.same(no || no, "duration = 11 OR duration = 11", "0");
    rows.same((yes || no) && no, "(duration = 10 OR duration = 11) AND duration = 11", "0");
    rows.same(!(yes && no), " NOT (duration = 10 AND duration = 11)", "1");
    rows.same(!ExpressionHandle(!yes), " NOT  NOT duration = 10", "1");
    rows.same(!yes, " NOT duration = 10", "0");
    rows.same(bound(5) && bound(-1), "5 AND -1", "1");
    rows.same(!bound(5), " NOT 5", "0");
    rows.same(BooleanOperator(BooleanOperator::Or).append(yes), "duration = 10", "1");

    rows.same(yes && unknown, "duration = 10 AND note = 'x'", "NULL");
    rows.same(no && unknown, "duration = 11 AND note = 'x'", "0");
    rows.same(unknown || yes, "note = 'x' OR duration = 10", "1");
    rows.same(!unknown, " NOT note = 'x'", "NULL");
    rows.differs("null-logic", unknown && no, "note = 'x' AND duration = 11", "NULL", "0");
    rows.differs("null-logic", unknown || no, "note = 'x' OR duration = 11", "0", "NULL");
    rows.differs("null-logic", !(unknown || no), " NOT (note = 'x' OR duration = 11)", "1", "NULL");

    rows.differs("empty-chain", yes && BooleanOperator(BooleanOperator::And), "duration = 10 AND ",
                 "1", "error: near \"FROM\": syntax error");
    rows.differs("empty-chain", BooleanOperator(BooleanOperator::Or), "", "0",
                 "error: near \"FROM\": syntax error");
    rows.differs("bool-literal", yes && bound(true), "duration = 10 AND 'true'", "1", "0", "1");
    rows.differs("truth-of-text", !bound("yard"), " NOT 'yard'", "0", "1");
    rows.differs("truth-of-date", !ref("start"), " NOT start", "NULL", "0");
    rows.differs("nested-not", ExpressionHandle(!bound(0)) == bound(5), " NOT 0 = 5", "0", "1");
}

void addSwitches(DialectRows &rows)
{
    const auto choice = [] { return SwitchCase(ref("duration")); };
    rows.same(choice().switchCase(bound(10), bound("ten")).switchCase(bound(20), bound("more")),
              "CASE duration WHEN 10 THEN 'ten' WHEN 20 THEN 'more' END", "'ten'");
    rows.same(choice().switchCase(bound(5), bound("five")).defaultCase(literal("other")),
              "CASE duration WHEN 5 THEN 'five' ELSE 'other' END", "'other'");
    rows.same(SwitchCase(ref("note")).switchCase(bound(5), bound(1)).defaultCase(literal(2)),
              "CASE note WHEN 5 THEN 1 ELSE 2 END", "2");
    rows.same(choice().switchCase(bound(5), bound(1)).defaultCase(null()),
              "CASE duration WHEN 5 THEN 1 END", "NULL");
    rows.same(
        NumericOperator(bound(1), NumericOperator::Add, choice().switchCase(bound(10), bound(2))),
        "1+CASE duration WHEN 10 THEN 2 END", "3");
    rows.differs("case-without-else", choice().switchCase(bound(5), bound(1)),
                 "CASE duration WHEN 5 THEN 1 END", "()", "NULL");
    rows.differs("case-without-when", choice().defaultCase(literal(1)), "CASE duration ELSE 1 END",
                 "1", "error: near \"ELSE\": syntax error");
    rows.differs("case-bound-else",
                 choice().switchCase(bound(5), bound("x")).defaultCase(bound("y")),
                 "CASE duration WHEN 5 THEN 'x' ELSE 'y' END", "'y'", "'y'", "'x'");
    rows.differs("if-then", ifThen(ref("duration") == bound(10), literal("yes"), literal("no")),
                 "CASE  WHEN duration = 10 THEN 'yes' ELSE 'no' END", "'no'", "'yes'");
}

void addArithmetic(DialectRows &rows)
{
    const auto duration = ref("duration"); // 10
    rows.same(duration + bound(5), "duration+5", "15");
    rows.same(duration - bound(15), "duration-15", "-5");
    rows.same(duration * bound(3) * bound(2), "duration*3*2", "60");
    rows.same(duration / bound(3), "duration/3", "3");
    rows.same(bound(-7) / bound(2), "-7/2", "-3");
    rows.same(bound(7.5) / bound(2), "7.5/2", "3.75");
    rows.same((duration + bound(2)) * bound(3), "(duration+2)*3", "36");
    rows.same(duration - ExpressionHandle(bound(5) - bound(3)), "duration-(5-3)", "8");
    rows.same(duration + ref("note"), "duration+note", "NULL");
    rows.same(duration / bound(0), "duration/0", "NULL");
    rows.same(duration / bound(0.0), "duration/0", "NULL");
    rows.same(bound(12) & bound(10), "12&10", "8");
    rows.same(bound(12) | bound(10), "12|10", "14");
    rows.same(bound(2u) - bound(5u), "2-5", "-3");
    rows.differs("mod", duration % bound(3), "duration mod 3", "1",
                 "error: near \"3\": syntax error", "error: near \":a\": syntax error");
    rows.differs("bit-xor", bound(12) ^ bound(10), "12^10", "6",
                 "error: unrecognized token: \"^\"");
    rows.differs("bits-of-doubles", bound(1.5) & bound(3), "1.5&3", "NULL", "1");
    rows.differs("whole-double", bound(7.0) / bound(2), "7/2", "3.5", "3", "3.5");
    rows.differs("integer-overflow", bound(INT_MAX) + bound(1), "2147483647+1", "-2147483648",
                 "2147483648");
    rows.differs("integer-overflow", bound(LLONG_MAX) + bound(1LL), "9223372036854775807+1",
                 "-9223372036854775808", "9223372036854776000.0");
    rows.differs("unsigned-64-difference", literal(2ULL) - literal(5ULL), "2-5", "-3.0", "-3");
    rows.differs("int-and-unsigned-64", duration + ref("size"), "duration+size", "'109'", "19");
    rows.differs("text-plus", ref("camera name") + bound("!"), "camera_name+'!'", "'yard!'", "0");
    rows.differs("text-plus", ref("camera name") * bound(2), "camera_name*2", "NULL", "0");
}

void addDatesAndSigns(DialectRows &rows)
{
    const auto start = ref("start");
    rows.same(start + bound(1000000LL), "start+1000000", "1772712001000000");
    rows.same(start - bound(1000000LL), "start-1000000", "1772711999000000");
    rows.differs("date-and-number", start + bound(1000), "start+1000", "1772712001000000",
                 "1772712000001000");
    rows.differs("date-and-number", start + literal(1.0), "start+1", "1772798400000000",
                 "1772712000000001");
    rows.differs("date-seconds", start + bound(1LL), "start+1", "1772712000000000",
                 "1772712000000001");
    rows.differs("number-minus-date", bound(0) - start, "0-start", "NULL", "-1772712000000000");

    rows.same(-ref("duration"), "-duration", "-10");
    rows.differs("unsigned-64-difference", -ref("size"), "-size", "-9.0", "-9");
    rows.differs("date-before-1970", -start, "-start", "2522255296000000", "-1772712000000000");
    rows.same(-ref("note"), "-note", "NULL");
    rows.same(-ExpressionHandle(ref("duration") + bound(1)), "-(duration+1)", "-11");
    rows.differs("minus-text", length(-ref("camera name")), "length(-camera_name)", "5", "1");
    rows.differs("bit-not", ~ref("duration"), "~duration", "10", "-11");
    rows.differs("minus-minus", -ExpressionHandle(-ref("duration")), "--duration", "10",
                 "error: incomplete input");
    rows.differs("minus-minus", ref("duration") - bound(-5), "duration--5", "15",
                 "error: no such column: duration", "15");
}

void addOrders(DialectRows &rows)
{
    // of the clips 0, 1, 2 and 5
    rows.same(ref("duration"), "duration", "5; 0; 1; 2", Place::Order);
    rows.same(-ref("duration"), "duration DESC", "2; 1; 0; 5", Place::Order);
    rows.same(-ref("camera name"), "camera_name DESC", "0; 1; 5; 2", Place::Order);
    rows.same(-ref("start"), "start DESC", "2; 1; 0; 5", Place::Order);
    rows.same(-ref("size"), "size DESC", "5; 1; 0; 2", Place::Order);
    rows.same(~ref("duration"), "duration", "5; 0; 1; 2", Place::Order);
    rows.same(-ref("archived") << ref("duration"), "archived DESC,duration", "1; 2; 5; 0",
              Place::Order);
    rows.differs("near-doubles", -ref("score"), "score DESC", "2; 0; 1; 5", "2; 1; 0; 5",
                 Place::Order);
    rows.differs("nested-descending", ExpressionHandle(-ref("duration")) * bound(2),
                 "duration DESC*2", "2; 1; 0; 5", "error: near \"*\": syntax error", Place::Order);
}

} // namespace

void addOperatorRows(DialectRows &rows)
{
    addComparisons(rows);
    addMembership(rows);
    addLogic(rows);
    addSwitches(rows);
    addArithmetic(rows);
    addDatesAndSigns(rows);
    addOrders(rows);
}

} // namespace test
