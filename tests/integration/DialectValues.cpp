#include "DialectRows.h"

#include <Vokit/CastExpression>
#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/NumericOperator>

#include <QBitArray>
#include <QPoint>
#include <QRect>
#include <QRegExp>
#include <QUrl>
#include <QUuid>

#include <climits>
#include <limits>

using namespace vogen;

namespace test {

namespace {

const QDate gDay(2026, 3, 6);
const QTime gNoon(12, 0);

void addNumbers(DialectRows &rows)
{
    rows.same(bound(5), "5", "5");
    rows.same(literal(-5), "-5", "-5");
    rows.same(bound(INT_MIN), "-2147483648", "-2147483648");
    rows.same(bound(4000000000u), "4000000000", "4000000000");
    rows.same(bound(LLONG_MAX), "9223372036854775807", "9223372036854775807");
    rows.same(bound(LLONG_MIN), "-9223372036854775808", "-9223372036854775808");
    rows.same(literal(7ULL), "7", "7");
    rows.differs("bound-unsigned-64", bound(7ULL), "7", "7", "7", "'7'");
    rows.differs("bound-unsigned-64", bound(7ULL) < bound(8), "7 < 8", "1", "1", "0");
    // the column's type makes a number of the text
    rows.same(ref("score") < bound(7ULL), "score < 7", "1");
    rows.differs("big-unsigned-64", literal(ULLONG_MAX), "18446744073709551615",
                 "18446744073709551615", "18446744073709552000.0");

    rows.same(bound(0.1), "0.1", "0.1");
    rows.same(bound(-2.5), "-2.5", "-2.5");
    rows.same(bound(1e100), "1e+100", "1e+100");
    rows.differs("whole-double", bound(3.0), "3", "3.0", "3", "3.0");
    const double infinity = std::numeric_limits<double>::infinity();
    rows.differs("inf-and-nan", bound(infinity), "inf", "inf", "error: no such column: inf", "inf");
    rows.differs("inf-and-nan", bound(std::numeric_limits<double>::quiet_NaN()), "nan", "nan",
                 "error: no such column: nan", "NULL");
    rows.differs("float", bound(0.5f), "'0.5'", "0.5", "'0.5'");
    rows.differs("float", bound(QVariant::fromValue(5L)), "'5'", "long", "'5'");
}

void addTexts(DialectRows &rows)
{
    rows.same(bound("yard"), "'yard'", "'yard'");
    rows.same(literal("yard"), "'yard'", "'yard'");
    rows.same(bound("O'Hara's"), "'O''Hara''s'", "'O''Hara''s'");
    rows.same(bound("\"; -- \\ %_"), "'\"; -- \\ %_'", "'\"; -- \\ %_'");
    rows.same(bound("what? :who @x $y"), "'what? :who @x $y'", "'what? :who @x $y'");
    rows.same(bound(QString::fromUtf8("Tür 😀")), QString::fromUtf8("'Tür 😀'"),
              QString::fromUtf8("'Tür 😀'"));
    rows.same(bound("two\nlines"), "'two\nlines'", "'two\nlines'");
    rows.same(bound(""), "''", "''");
    rows.differs("null-text", bound(QString()), "''", "''", "''", "NULL");
    const QString withNul = QString("a") + QChar(0) + "b";
    rows.differs("text-with-nul", bound(withNul), '\'' + withNul + '\'', '\'' + withNul + '\'',
                 "error: unrecognized token: \"'a\"", '\'' + withNul + '\'');
    rows.same(bound(QChar('x')), "'x'", "'x'");
    rows.same(bound(QUrl("rtsp://yard/1")), "'rtsp://yard/1'", "'rtsp://yard/1'");
    const QUuid id("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}");
    rows.same(bound(id), "'{67c8770b-44f1-410a-ab9a-f9b5446f13ee}'",
              "'{67c8770b-44f1-410a-ab9a-f9b5446f13ee}'");
}

void addOtherTypes(DialectRows &rows)
{
    rows.differs("null-literal", bound(QVariant()), "''", "NULL", "''", "NULL");
    rows.differs("null-literal", null(), "''", "NULL", "''");
    rows.differs("bool-literal", bound(true), "'true'", "1", "'true'", "1");
    rows.differs("bool-literal", bound(false), "'false'", "0", "'false'", "0");
    rows.differs("bool-literal", literal(true), "'true'", "1", "'true'");

    rows.same(bound(gDay), "1772755200000000", "1772755200000000");
    rows.same(bound(QDateTime(gDay, gNoon, Qt::UTC)), "1772798400000000", "1772798400000000");
    rows.same(bound(gNoon), "43200000000", "43200000000");
    rows.same(ConstExpression::date(1969, 12, 31), "-86400000000", "-86400000000");
    rows.same(ConstExpression::time(0, 0, 1, 5), "1005000", "1005000");
    // local time, which is pinned to half past five ahead of UTC
    rows.same(ConstExpression::dateTime(1970, 1, 2, 5, 30, 0, 0), "86400000000", "86400000000");

    rows.differs("bytes", bound(QByteArray("abc")), "'abc'", "x'616263'", "'abc'", "x'616263'");
    rows.differs("no-text", bound(QStringList{"a", "b"}), "''", "('a', 'b')", "''");
    rows.differs("no-text", bound(QVariantList{1, 2}), "''", "(1, 2)", "''");
    rows.differs("no-text", bound(QVariantMap()), "''", "QVariantMap", "''");
    rows.differs("no-text", bound(QRect(1, 2, 3, 4)), "''", "QRect", "''");
    rows.differs("no-text", bound(QPoint(1, 2)), "''", "QPoint", "''");
    rows.differs("no-text", bound(QBitArray(3)), "''", "QBitArray", "''");
    rows.same(literal(QRegExp("a.*")), "'a.*'", "'a.*'");
    rows.differs("bound-regexp", bound(QRegExp("a.*")), "'a.*'", "'a.*'", "'a.*'", "''");
}

void addReferences(DialectRows &rows)
{
    rows.same(ref("camera name"), "camera_name", "'yard'");
    rows.same(ref("start"), "start", "1772712000000000");
    rows.same(ref("duration"), "duration", "10");
    rows.same(ref("score"), "score", "0.25");
    rows.same(ref("archived"), "archived", "0");
    rows.same(ref("size"), "size", "9");
    rows.same(ref("note"), "note", "NULL");
    rows.same(ref("camera name", "c"), "camera_name AS c", "'yard'");
    rows.differs("alias", ref("camera name", "c") == bound("yard"), "camera_name AS c = 'yard'",
                 "1", "error: near \"=\": syntax error");
    rows.differs("alias", ref("camera name", "my camera"), "camera_name AS my camera", "'yard'",
                 "error: near \"camera\": syntax error");
    rows.differs("alias", ref("camera name", "c"), "camera_name AS c", "2; 5; 1; 0",
                 "error: near \"AS\": syntax error", Place::Order);
    rows.differs("alias-value", ref("camera name", "type"), "camera_name AS type", "'alarm'",
                 "'yard'");
    rows.differs("column-name", ref("frame-rate"), "frame-rate", "NULL",
                 "error: no such column: frame");
    rows.differs("column-name", ref("order"), "order", "NULL",
                 "error: near \"order\": syntax error");
    rows.differs("star", ValueExpression::star, "*", "NULL",
                 "(0, 'yard', 'alarm', 1772712000000000, 10, 0.25, 0, 9, NULL)");

    const ExpressionHandle list = bound(1) << bound("a");
    rows.same(list, "1,'a'", "(1, 'a')");
    rows.differs("nested-list", list << bound(2.5), "1,'a',2.5", "((1, 'a'), 2.5)",
                 "(1, 'a', 2.5)");
    rows.same(ExpressionList({1, 2.5, "a"}), "1,2.5,'a'", "(1, 2.5, 'a')");
    rows.differs("empty-expression", ExpressionHandle(), "", "()",
                 "error: near \"FROM\": syntax error");
}

void addNumericCasts(DialectRows &rows)
{
    rows.same(toInt(bound("12")), "CAST('12' AS int)", "12");
    rows.same(toInt(literal("yard")), "CAST('yard' AS int)", "0");
    // whatever is bound below a cast is brought into its type, and null if it can't be
    rows.differs("cast-bound", toInt(bound("yard")), "CAST('yard' AS int)", "0", "0", "NULL");
    rows.same(toInt(ref("note")), "CAST(note AS int)", "NULL");
    rows.same(toInt(ref("camera name")), "CAST(camera_name AS int)", "0");
    rows.differs("cast-rounds", toInt(literal(2.5)), "CAST(2.5 AS int)", "3", "2");
    rows.differs("cast-rounds", toInt(bound(2.5)), "CAST(2.5 AS int)", "3", "2", "3");
    rows.differs("cast-text", toInt(literal("12 s")), "CAST('12 s' AS int)", "0", "12");
    rows.differs("cast-wraps", toInt(literal(4294967297LL)), "CAST(4294967297 AS int)", "1",
                 "4294967297");
    rows.same(toUInt(bound(5)), "CAST(5 AS uint)", "5");
    rows.differs("cast-wraps", toUInt(literal(-1)), "CAST(-1 AS uint)", "4294967295", "-1");
    rows.same(toLongLong(bound("12")), "CAST('12' AS qlonglong)", "12");
    rows.differs("cast-type-name", toLongLong(literal(2.5)), "CAST(2.5 AS qlonglong)", "3", "2.5");
    rows.same(toULongLong(ref("duration")), "CAST(duration AS qulonglong)", "10");
    rows.differs("cast-type-name", toULongLong(literal(2.5)), "CAST(2.5 AS qulonglong)", "3",
                 "2.5");
    rows.same(toDouble(ref("duration")), "CAST(duration AS double)", "10.0");
    rows.same(toDouble(bound("2.5")), "CAST('2.5' AS double)", "2.5");
    rows.same(toBool(bound(1)), "CAST(1 AS bool)", "1");
    rows.same(toBool(ref("archived")), "CAST(archived AS bool)", "0");
    rows.differs("cast-type-name", toBool(ref("duration")), "CAST(duration AS bool)", "1", "10");
    rows.differs("cast-type-name", toBool(ref("camera name")), "CAST(camera_name AS bool)", "1",
                 "0");
}

void addOtherCasts(DialectRows &rows)
{
    rows.differs("cast-type-name", toString(ref("camera name")), "CAST(camera_name AS QString)",
                 "'yard'", "0");
    rows.differs("cast-type-name", toString(ref("duration")), "CAST(duration AS QString)", "'10'",
                 "10");
    rows.differs("cast-type-name", toString(bound(5)), "CAST(5 AS QString)", "'5'", "5");
    rows.same(toDateTime(ref("start")), "CAST(start AS QDateTime)", "1772712000000000");
    rows.differs("cast-type-name", toDate(ref("start")), "CAST(start AS QDate)", "1772668800000000",
                 "1772712000000000");
    rows.differs("cast-type-name", toTime(ref("start")), "CAST(start AS QTime)", "43200000000",
                 "1772712000000000");
    rows.differs("cast-type-name", toDateTime(literal("2026-03-06T12:00:00Z")),
                 "CAST('2026-03-06T12:00:00Z' AS QDateTime)", "1772798400000000", "2026");
    rows.differs("cast-number-and-date", toDateTime(literal(1000)), "CAST(1000 AS QDateTime)",
                 "1000000", "1000");
    rows.same(toDateTime(literal(1000000LL)), "CAST(1000000 AS QDateTime)", "1000000");
    rows.differs("cast-number-and-date", toInt(ref("start")), "CAST(start AS int)", "-1391685",
                 "1772712000000000");
    rows.same(toLongLong(ref("start")), "CAST(start AS qlonglong)", "1772712000000000");
    rows.differs("cast-number-and-date", toDouble(ref("start")), "CAST(start AS double)", "20517.5",
                 "1.772712e+15");
    rows.differs("cast-bound", toBool(ref("duration") == bound(10)), "CAST(duration = 10 AS bool)",
                 "1", "1", "0");
    rows.differs("cast-bound", toDateTime(bound(gDay)), "CAST(1772755200000000 AS QDateTime)",
                 "1772735400000000", "1772755200000000", "NULL");
}

} // namespace

void addValueRows(DialectRows &rows)
{
    addNumbers(rows);
    addTexts(rows);
    addOtherTypes(rows);
    addReferences(rows);
    addNumericCasts(rows);
    addOtherCasts(rows);
}

} // namespace test
