#include <Vokit/FunctionExpression>

#include "LogNotice_p.h"
#include "expressions/NodeAccess_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/PropertySet>
#include <Vokit/TypeTool>
#include <Vokit/ValueExpression>

#include <QDataStream>
#include <QTextStream>

namespace vogen {

namespace {

constexpr qint32 gRecordVersion = 2;
constexpr int gCacheSize = 100;
constexpr int gMostTexts = 3;

struct BuiltIn
{
    const char *name;
    FunctionExpression::Function function;
    FunctionExpression::PrintFunction printFunction;
    int minArgs;
    int maxArgs;
};

using F = FunctionExpression;

// To add a built-in function: a row here, and its static member in BuiltInFunctions.cpp.
constexpr BuiltIn gBuiltIns[] = {
    {"currentDate", &F::currentDate, nullptr, 0, 0},
    {"currentTime", &F::currentTime, nullptr, 0, 0},
    {"currentDateTime", &F::currentDateTime, nullptr, 0, 0},
    {"abs", &F::abs, &F::printDefault, 1, 1},
    {"min", &F::min, &F::printDefault, 1, -1},
    {"max", &F::max, &F::printDefault, 1, -1},
    {"count", &F::count, &F::printDefault, 1, -1},
    {"group_concat", &F::group_concat, &F::printDefault, 1, -1},
    {"coalesce", &F::coalesce, &F::printDefault, 2, -1},
    {"ifnull", &F::ifnull, &F::printDefault, 2, 2},
    {"nullif", &F::nullif, &F::printDefault, 2, 2},
    {"hex", &F::hex, &F::printDefault, 1, 1},
    {"round", &F::round, &F::printDefault, 1, 1},
    {"random", &F::random, &F::printDefault, 0, 0},
    {"length", &F::length, &F::printDefault, 1, 1},
    {"lower", &F::lower, &F::printDefault, 1, 1},
    {"upper", &F::upper, &F::printDefault, 1, 1},
    {"quote", &F::quote, &F::printDefault, 1, 1},
    {"trim", &F::trim, &F::printDefault, 1, 1},
    {"like", &F::like, &F::printLike, 2, 3},
    {"regexp", &F::regexp, &F::printLike, 2, 2},
};

bool registerBuiltIns()
{
    bool allNew = true;
    for (const BuiltIn &f : gBuiltIns)
        allNew &= F::registerFunction(f.name, f.function, f.printFunction, f.minArgs, f.maxArgs);
    return allNew;
}

[[maybe_unused]] const bool gRegistered[] = {
    registerBuiltIns(),
    Expression::registerExpressionClass(
        FunctionExpression(QStringLiteral("currentDate"), ExpressionList(), false)),
};

void warn(const QString &functionName, const char *problem)
{
    vo::logNotice(vo::Log::LevelWarning,
                  QLatin1String("Function ") + functionName + QLatin1String(problem));
}

} // namespace

QCache<QString, QRegExp> FunctionExpression::gLikeCache(gCacheSize);
QCache<QString, QRegExp> FunctionExpression::gRegExpCache(gCacheSize);

FunctionExpression::FunctionExpression(const QString &functionName, const ExpressionList &arguments,
                                       bool distinctValues)
    : name(functionName)
    , distinct(distinctValues)
{
    operands += operandsOf(arguments);
}

FunctionExpression::~FunctionExpression() = default;

QVariant FunctionExpression::evaluate(const PropertySet &properties, bool *isConstant) const
{
    QVariant result;
    if (evaluateTexts(properties, isConstant, &result))
        return result;

    if (isConstant)
        *isConstant = true;
    QList<QVariant> values;
    values.reserve(operands.size());
    TypeTool tool(false, false);
    for (const ExpressionHandle &operand : operands) {
        bool constant = false;
        const QVariant value = operand->evaluate(properties, isConstant ? &constant : nullptr);
        if (!distinct || !tool.contains(values, value))
            values.append(value);
        if (isConstant && !constant)
            *isConstant = false;
    }
    const Function function = entry().function;
    return function ? function(values) : QVariant();
}

// A list of values costs more than most functions of texts do: these take their arguments where
// they lie. False, with nothing done, for all other calls.
bool FunctionExpression::evaluateTexts(const PropertySet &properties, bool *isConstant,
                                       QVariant *result) const
{
    QString const *texts[gMostTexts] = {};
    if (distinct || operands.isEmpty() || operands.size() > gMostTexts)
        return false;
    bool constant = true;
    for (int i = 0; i < operands.size(); ++i) {
        const ValueView view = NodeAccess::valueInPlace(*operands.at(i), properties);
        if (view.isNull() || view.type() != QMetaType::QString)
            return false;
        texts[i] = &view.as<QString>();
        constant = constant && view.isConstant();
    }
    if (!callWithTexts(entry().function, texts, operands.size(), result))
        return false;
    if (isConstant)
        *isConstant = constant;
    return true;
}

Expression *FunctionExpression::clone() const
{
    return new FunctionExpression(*this);
}

bool FunctionExpression::equals(const Expression *other) const
{
    const auto *call = dynamic_cast<const FunctionExpression *>(other);
    return call && name == call->name && distinct == call->distinct && Operator::equals(other);
}

void FunctionExpression::print(QTextStream &stream, PrintStyle style) const
{
    const PrintFunction printFunction = entry().printFunction;
    if (!(style & PrintSql))
        printDefault(stream, style, name, operands);
    else if (!printFunction)
        ConstExpression::printValue(stream, folded(), style);
    else
        printFunction(stream, distinct ? style | PrintDistinct : style, name, operands);
}

void FunctionExpression::collectPlaceholders(QList<QVariant> &values) const
{
    if (!entry().printFunction)
        values.append(folded());
}

bool FunctionExpression::isEmpty() const
{
    return name.isEmpty();
}

void FunctionExpression::write(QDataStream &stream) const
{
    stream << gRecordVersion << name << distinct;
    Operator::write(stream);
}

void FunctionExpression::read(QDataStream &stream)
{
    qint32 version = 0;
    stream >> version >> name >> distinct;
    Operator::read(stream);
}

QMap<QString, FunctionExpression::FunctionEntry> &FunctionExpression::functionMap()
{
    static QMap<QString, FunctionEntry> gFunctionMap;
    return gFunctionMap;
}

bool FunctionExpression::isRegistered(const QString &functionName)
{
    return functionMap().value(functionName).function != nullptr;
}

bool FunctionExpression::registerFunction(const char *functionName, Function function,
                                          PrintFunction printFunction, int minArgs, int maxArgs)
{
    const QString key = QString::fromLatin1(functionName);
    if (functionMap().contains(key)) {
        warn(key, " already declared.");
        return false;
    }
    functionMap().insert(key, {function, minArgs, maxArgs, printFunction});
    return true;
}

bool FunctionExpression::registerSqlPrintFunction(const char *functionName,
                                                  PrintFunction printFunction)
{
    const QString key = QString::fromLatin1(functionName);
    const auto found = functionMap().find(key);
    if (found == functionMap().end()) {
        warn(key, " not declared.");
        return false;
    }
    found->printFunction = printFunction;
    return true;
}

void FunctionExpression::printDefault(QTextStream &stream, Expression::PrintStyle style,
                                      const QString &functionName,
                                      const QList<ExpressionHandle> &arguments)
{
    stream << functionName << '(';
    if (style & PrintDistinct)
        stream << "DISTINCT ";
    printList(stream, style, arguments, 0, ",");
    stream << ')';
}

void FunctionExpression::printLike(QTextStream &stream, Expression::PrintStyle style,
                                   const QString &functionName,
                                   const QList<ExpressionHandle> &arguments)
{
    const auto argument = [&](int index) { return arguments.value(index); };
    stream << '(';
    argument(0).constData()->print(stream, style);
    stream << ' ' << functionName.toUpper() << ' ';
    argument(1).constData()->print(stream, style);
    if (arguments.size() > 2) {
        stream << " ESCAPE ";
        argument(2).constData()->print(stream, style);
    }
    stream << ')';
}

// The row of an unknown name comes into being here: the name is taken from then on.
const FunctionExpression::FunctionEntry &FunctionExpression::entry() const
{
    return functionMap()[name];
}

// What stands in SQL text in place of a call that can't be left to the database.
QVariant FunctionExpression::folded() const
{
    return evaluate(PropertySet(), nullptr);
}

namespace {

FunctionExpression call(const char *functionName, const ExpressionList &arguments,
                        bool distinct = false)
{
    return {QString::fromLatin1(functionName), arguments, distinct};
}

FunctionExpression call(const char *functionName, ExpressionHandle first, ExpressionHandle second)
{
    return call(functionName, ExpressionList(first).append(second));
}

ExpressionList listOf(const ValueExpression &property)
{
    return ExpressionList(ExpressionHandle(property));
}

ExpressionHandle literal(const QVariant &value)
{
    return ConstExpression(value, false);
}

} // namespace

// clang-format off
FunctionExpression currentDate() { return call("currentDate", ExpressionList()); }
FunctionExpression currentTime() { return call("currentTime", ExpressionList()); }
FunctionExpression currentDateTime() { return call("currentDateTime", ExpressionList()); }
FunctionExpression random() { return call("random", ExpressionList()); }
FunctionExpression abs(ExpressionHandle e) { return call("abs", ExpressionList(e)); }
FunctionExpression hex(ExpressionHandle e) { return call("hex", ExpressionList(e)); }
FunctionExpression round(ExpressionHandle e) { return call("round", ExpressionList(e)); }
FunctionExpression length(ExpressionHandle e) { return call("length", ExpressionList(e)); }
FunctionExpression lower(ExpressionHandle e) { return call("lower", ExpressionList(e)); }
FunctionExpression upper(ExpressionHandle e) { return call("upper", ExpressionList(e)); }
FunctionExpression quote(ExpressionHandle e) { return call("quote", ExpressionList(e)); }
FunctionExpression trim(ExpressionHandle e) { return call("trim", ExpressionList(e)); }
FunctionExpression coalesce(const ExpressionList &list) { return call("coalesce", list); }
FunctionExpression ifnull(ExpressionHandle first, ExpressionHandle second) { return call("ifnull", first, second); }
FunctionExpression nullif(ExpressionHandle first, ExpressionHandle second) { return call("nullif", first, second); }
FunctionExpression min(const ValueExpression &property) { return call("min", listOf(property)); }
FunctionExpression max(const ValueExpression &property) { return call("max", listOf(property)); }
FunctionExpression count(const ValueExpression &property, bool distinct) { return call("count", listOf(property), distinct); }
FunctionExpression group_concat(const ValueExpression &property, bool distinct) { return call("group_concat", listOf(property), distinct); }
// clang-format on

FunctionExpression like(ExpressionHandle subject, const QString &pattern, const QString &escape)
{
    return call("like", ExpressionList(subject).append(literal(pattern)).append(literal(escape)));
}

FunctionExpression regexp(ExpressionHandle subject, const QString &pattern)
{
    return call("regexp", subject, literal(pattern));
}

FunctionExpression regexp(ExpressionHandle subject, const QRegExp &pattern)
{
    return call("regexp", subject, literal(pattern));
}

} // namespace vogen
