#include "DialectRows.h"

#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>

#include <QRegExp>

using namespace vogen;

namespace test {

namespace {

ExpressionHandle call(const char *name, const QList<ExpressionHandle> &arguments,
                      bool distinct = false)
{
    ExpressionList list;
    for (const ExpressionHandle &argument : arguments)
        list.append(argument);
    return FunctionExpression(name, list, distinct);
}

ValueExpression column(const char *name)
{
    return {QString::fromLatin1(name), QString()};
}

void addClock(DialectRows &rows)
{
    // A time in 2100, and the last moment of a day: the clock stands before both.
    const ExpressionHandle later = literal(QDate(2100, 1, 1));
    const ExpressionHandle midnight = literal(86400000000LL);
    rows.differs("bound-clock", ExpressionHandle(currentDate()) < later, "# < 4102444800000000",
                 "1", "1", "0");
    rows.differs("bound-clock", ExpressionHandle(currentDateTime()) < later, "# < 4102444800000000",
                 "1", "1", "0");
    rows.differs("bound-clock", ExpressionHandle(currentTime()) < midnight, "# < 86400000000", "1",
                 "1", "0");
    // In memory a number up to RAND_MAX; in SQLite one of 64 bits, with its sign.
    rows.differs("random", ExpressionHandle(abs(vogen::random())) > literal(2147483647),
                 "abs(random()) > 2147483647", "0", "1");
}

void addNumberFunctions(DialectRows &rows)
{
    rows.same(abs(literal(-5)), "abs(-5)", "5");
    rows.same(abs(ref("score")), "abs(score)", "0.25");
    rows.same(abs(ref("note")), "abs(note)", "NULL");
    rows.differs("near-doubles", abs(literal(-0.5)), "abs(-0.5)", "-0.5", "0.5");
    rows.differs("abs-of-text", abs(literal("yard")), "abs('yard')", "'yard'", "0.0");
    rows.same(round(literal(2.5)), "round(2.5)", "3.0");
    rows.same(round(literal(-2.4)), "round(-2.4)", "-2.0");
    rows.same(round(ref("duration")), "round(duration)", "10.0");
    rows.differs("round-half", round(literal(-2.5)), "round(-2.5)", "-2.0", "-3.0");
    rows.differs("null-argument", round(ref("note")), "round(note)", "0.0", "NULL");
    rows.differs("hex", hex(literal(255)), "hex(255)", "'ff'", "'323535'");
}

void addChoices(DialectRows &rows)
{
    rows.same(coalesce(ExpressionList(ref("note"), ref("type"))), "coalesce(note,type)", "'alarm'");
    rows.same(coalesce(ExpressionList(ref("note"), ref("note"))), "coalesce(note,note)", "NULL");
    rows.differs("null-text", coalesce(ExpressionList(literal(QString()), literal("x"))),
                 "coalesce('','x')", "'x'", "''");
    rows.differs("null-literal", coalesce(ExpressionList(null(), literal("x"))), "coalesce('','x')",
                 "'x'", "''");
    rows.same(ifnull(ref("note"), literal(7)), "ifnull(note,7)", "7");
    rows.same(ifnull(ref("duration"), literal(7)), "ifnull(duration,7)", "10");
    rows.differs("nullif", nullif(ref("duration"), literal(10)), "nullif(duration,10)", "10",
                 "NULL");
    rows.differs("nullif", nullif(ref("duration"), literal(0)), "nullif(duration,0)", "NULL", "10");
    rows.differs("min-and-max", call("min", {literal(3), literal(5)}), "min(3,5)", "5", "3");
    rows.differs("min-and-max", call("max", {literal(3), literal(5)}), "max(3,5)", "3", "5");
}

void addTextFunctions(DialectRows &rows)
{
    rows.same(length(ref("camera name")), "length(camera_name)", "4");
    rows.same(length(literal(1234)), "length(1234)", "4");
    rows.differs("length", length(literal(QString::fromUtf8("😀"))),
                 QString::fromUtf8("length('😀')"), "2", "1");
    rows.differs("null-argument", length(ref("note")), "length(note)", "0", "NULL");
    rows.same(lower(literal("YARD")), "lower('YARD')", "'yard'");
    rows.same(upper(ref("camera name")), "upper(camera_name)", "'YARD'");
    rows.differs("letter-case", lower(literal(QString::fromUtf8("TÜR"))),
                 QString::fromUtf8("lower('TÜR')"), QString::fromUtf8("'tür'"),
                 QString::fromUtf8("'tÜr'"));
    rows.differs("letter-case", upper(literal(QString::fromUtf8("ß"))),
                 QString::fromUtf8("upper('ß')"), "'SS'", QString::fromUtf8("'ß'"));
    rows.differs("null-argument", upper(ref("note")), "upper(note)", "''", "NULL");
    rows.differs("quote", quote(literal("O'Hara")), "quote('O''Hara')", "'O''Hara'",
                 "'''O''''Hara'''");
    rows.same(trim(literal("  yard ")), "trim('  yard ')", "'yard'");
    rows.differs("trim", trim(literal("\tyard\n")), "trim('\tyard\n')", "'yard'", "'\tyard\n'");
}

void addPatterns(DialectRows &rows)
{
    const auto camera = ref("camera name"); // yard
    const auto like2 = [](const ExpressionHandle &subject, const char *pattern) {
        return call("like", {subject, literal(pattern)});
    };
    rows.same(like(camera, "yard", "!"), "(camera_name LIKE 'yard' ESCAPE '!')", "1");
    rows.same(like(camera, "y_rd", "!"), "(camera_name LIKE 'y_rd' ESCAPE '!')", "1");
    rows.differs("like-escape", like(literal("a_c"), "a!_c", "!"), "('a_c' LIKE 'a!_c' ESCAPE '!')",
                 "0", "1");
    rows.same(like(literal("abc"), "a!_c", "!"), "('abc' LIKE 'a!_c' ESCAPE '!')", "0");
    rows.same(like2(camera, "_ard"), "(camera_name LIKE '_ard')", "1");
    rows.differs("like-escape-length", like(camera, "yard", ""),
                 "(camera_name LIKE 'yard' ESCAPE '')", "1",
                 "error: ESCAPE expression must be a single character");
    rows.differs("like-escape-length", like(camera, "yard", "!!"),
                 "(camera_name LIKE 'yard' ESCAPE '!!')", "1",
                 "error: ESCAPE expression must be a single character");
    rows.differs("like-percent", like(camera, "y%", "!"), "(camera_name LIKE 'y%' ESCAPE '!')", "0",
                 "1");
    rows.same(like2(literal("100.."), "100%"), "('100..' LIKE '100%')", "1");
    rows.differs("like-percent", like2(literal("100 m"), "100%"), "('100 m' LIKE '100%')", "0",
                 "1");
    rows.differs("like-case", like(camera, "YARD", "!"), "(camera_name LIKE 'YARD' ESCAPE '!')",
                 "0", "1");
    rows.differs("like-signs", like(literal("what?"), "what?", "!"),
                 "('what?' LIKE 'what?' ESCAPE '!')", "0", "1");
    rows.differs("null-argument", like(ref("note"), "x", "!"), "(note LIKE 'x' ESCAPE '!')", "0",
                 "NULL");
    rows.differs("regexp", regexp(camera, "y.*d"), "(camera_name REGEXP 'y.*d')", "1",
                 "error: no such function: REGEXP");
    rows.same(regexp(camera, "y.*d"), "(camera_name REGEXP 'y.*d')", "1", Place::ClipWithRegExp);
    rows.differs("regexp-part", regexp(camera, "ar"), "(camera_name REGEXP 'ar')", "0", "1",
                 Place::ClipWithRegExp);
    rows.same(regexp(camera, "^ar$"), "(camera_name REGEXP '^ar$')", "0", Place::ClipWithRegExp);
    rows.differs("regexp-options", regexp(camera, QRegExp("Y.*D", Qt::CaseInsensitive)),
                 "(camera_name REGEXP 'Y.*D')", "1", "0", Place::ClipWithRegExp);
}

void addAggregates(DialectRows &rows)
{
    rows.same(min(column("duration")), "min(duration)", "10");
    rows.same(max(column("duration")), "max(duration)", "10");
    rows.same(count(column("duration"), false), "count(duration)", "1");
    rows.same(count(column("duration"), true), "count(DISTINCT duration)", "1");
    rows.same(count(ValueExpression::star, false), "count(*)", "1");
    rows.differs("count-null", count(column("note"), false), "count(note)", "1", "0");
    rows.differs("group-concat", group_concat(column("type"), false), "group_concat(type)",
                 "',alarm'", "'alarm'");
    rows.differs("group-concat", call("group_concat", {literal("a"), literal("b")}),
                 "group_concat('a','b')", "',a,b'", "'a'");
    rows.differs("aggregate", min(column("duration")), "min(duration)", "10; 30; 60; NULL; 90; -5",
                 "-5", Place::Clips);
    rows.differs("aggregate", max(column("duration")), "max(duration)", "10; 30; 60; NULL; 90; -5",
                 "90", Place::Clips);
    rows.differs("aggregate", count(column("type"), true), "count(DISTINCT type)",
                 "1; 1; 1; 1; 1; 1", "3", Place::Clips);
    rows.differs("aggregate", group_concat(column("type"), true), "group_concat(DISTINCT type)",
                 "',alarm'; ',motion'; ',alarm'; ','; ',motion'; ','", "'alarm,motion,'",
                 Place::Clips);
    rows.same(call("count", {abs(ref("duration"))}, true), "count(DISTINCT abs(DISTINCT duration))",
              "1");
}

// A function of a client's own: the remainder, in words that SQLite understands.
void printRemainder(QTextStream &stream, Expression::PrintStyle style, const QString & /*name*/,
                    const QList<ExpressionHandle> &arguments)
{
    stream << '(';
    arguments.at(0)->print(stream, style);
    stream << " % ";
    arguments.at(1)->print(stream, style);
    stream << ')';
}

QVariant remainder(const QList<QVariant> &values)
{
    return TypeTool(false, false).do_modulo(values.value(0), values.value(1));
}

void addClientFunction(DialectRows &rows)
{
    FunctionExpression::registerFunction("remainder", &remainder, &printRemainder, 2, 2);
    rows.same(call("remainder", {ref("duration"), literal(3)}), "(duration % 3)", "1");
    rows.same(call("remainder", {ref("duration"), literal(0)}), "(duration % 0)", "NULL");
    rows.same(call("remainder", {literal(-7), literal(2)}), "(-7 % 2)", "-1");
    rows.differs("function-bound", call("remainder", {ref("duration"), bound(3)}), "(duration % 3)",
                 "1", "1", "error: Parameter count mismatch");
    rows.differs("function-bound", abs(bound(-5)), "abs(-5)", "5", "5",
                 "error: Parameter count mismatch");
}

} // namespace

void addFunctionRows(DialectRows &rows)
{
    addClock(rows);
    addNumberFunctions(rows);
    addChoices(rows);
    addTextFunctions(rows);
    addPatterns(rows);
    addAggregates(rows);
    addClientFunction(rows);
}

} // namespace test
