#include "DialectRows.h"

#include <Vokit/ArithmeticOperators>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>
#include <Vokit/SwitchCase>

#include <climits>

using namespace vogen;

namespace test {

// What docs/sql-dialect.md advises to write in place of what differs: in memory and in SQLite it is
// worth the same.
void addAdviceRows(DialectRows &rows)
{
    const auto duration = ref("duration");        // 10
    const auto camera = ref("camera name");       // yard
    const auto note = ref("note");                // NULL
    const auto tenLong = duration == literal(10); // literal: it stands in casts below

    rows.same(ExpressionHandle(ifnull(note, literal("-"))) == bound("-"), "ifnull(note,'-') = '-'",
              "1");
    rows.same(length(ifnull(note, literal(""))), "length(ifnull(note,''))", "0");
    rows.same(ElementOf(ifnull(note, literal(""))).append(QVariant("x")),
              "ifnull(note,'') IN ('x')", "0");
    rows.same(!ExpressionHandle(ifnull(note == literal("x"), literal(0))),
              " NOT ifnull(note = 'x',0)", "1");

    rows.same(ExpressionHandle(toInt(ref("archived"))) == bound(0), "CAST(archived AS int) = 0",
              "1");
    rows.same(ref("archived") == ExpressionHandle(toBool(duration == literal(11))),
              "archived = CAST(duration = 11 AS bool)", "1");
    rows.same(ExpressionHandle(toBool(!tenLong)) == ref("archived"),
              "CAST( NOT duration = 10 AS bool) = archived", "1");
    rows.same(SwitchCase(toInt(tenLong))
                  .switchCase(literal(1), literal("yes"))
                  .defaultCase(literal("no")),
              "CASE CAST(duration = 10 AS int) WHEN 1 THEN 'yes' ELSE 'no' END", "'yes'");

    rows.same(ExpressionHandle(ref("score") * bound(1000)) < bound(750), "(score*1000) < 750", "1");
    rows.same(ExpressionHandle(toDouble(bound(7.0))) / bound(2), "CAST(7 AS double)/2", "3.5");
    rows.same(ExpressionHandle(toInt(bound("10"))) > bound(9), "CAST('10' AS int) > 9", "1");
    rows.same(duration > ExpressionHandle(toLongLong(ref("size"))),
              "duration > CAST(size AS qlonglong)", "1");
    rows.same(ExpressionHandle(toLongLong(bound(INT_MAX))) + bound(1),
              "CAST(2147483647 AS qlonglong)+1", "2147483648");
    rows.same(ExpressionHandle(bound(12) | bound(10)) - ExpressionHandle(bound(12) & bound(10)),
              "(12|10)-(12&10)", "6");
    rows.same(bound(-1) - duration, "-1-duration", "-11");

    rows.same(regexp(camera, "^.*ar.*$"), "(camera_name REGEXP '^.*ar.*$')", "1",
              Place::ClipWithRegExp);
}

} // namespace test
