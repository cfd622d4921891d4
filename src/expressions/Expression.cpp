#include <Vokit/Expression>

#include "expressions/Truth_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/CastExpression>
#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/ValueExpression>

#include <QDataStream>
#include <QTextStream>
#include <QVarLengthArray>

#include <algorithm>
#include <typeinfo>

namespace vogen {

namespace {

QString classKey(const Expression &node)
{
    return QLatin1String(typeid(node).name());
}

// The bytes of a key and a terminating NUL; those of the library's classes need no memory.
using KeyBytes = QVarLengthArray<char, 64>;

// As QDataStream reads a char pointer, in steps, so that a length that lies asks for no memory
// beyond the data. An empty key where the data ends too early.
KeyBytes readKey(QDataStream &stream)
{
    constexpr quint32 step = 1024 * 1024;
    quint32 length = 0;
    stream >> length;
    KeyBytes bytes;
    for (quint32 left = length; left > 0;) {
        const int size = static_cast<int>(std::min(left, step));
        const int begin = bytes.size();
        bytes.resize(begin + size);
        if (stream.readRawData(bytes.data() + begin, size) != size) {
            stream.setStatus(QDataStream::ReadPastEnd);
            bytes.clear();
            break;
        }
        left -= static_cast<quint32>(size);
    }
    bytes.append('\0');
    return bytes;
}

// Looks at the lengths first, which tell most keys apart: no text is made for the search.
const ExpressionHandle *findPrototype(QLatin1String key)
{
    const auto &map = qAsConst(Expression::expressionClassMap());
    for (auto it = map.begin(); it != map.end(); ++it) {
        if (it.key().size() == key.size() && it.key() == key)
            return &it.value();
    }
    return nullptr;
}

// Room made ahead, so that most filters grow neither text nor list while they are printed.
constexpr int gUsualTextLength = 128;
constexpr int gUsualValueCount = 8;

// What this unit owns, in this order. The registry itself is a function-local static, so other
// units may register before or after.
[[maybe_unused]] const bool gRegistered[] = {
    Expression::registerExpressionClass(ConstExpression(QVariant(0), true)),
    Expression::registerExpressionClass(ValueExpression(QString(), QString())),
    Expression::registerExpressionClass(
        CastExpression(QVariant::Int, ConstExpression(QVariant(0), false))),
    Expression::registerExpressionClass(ExpressionList()),
};

} // namespace

const ValueExpression ValueExpression::star(QStringLiteral("*"), QStringLiteral(""));

// The absence of an expression, shared by all default handles. Null until this line has run.
static const ExpressionHandle gEmpty{ExpressionList()};

Expression::Expression() = default;

Expression &Expression::operator=(const Expression & /*other*/)
{
    return *this;
}

Expression::~Expression() = default;

void Expression::collectPlaceholders(QList<QVariant> & /*values*/) const {}

QString Expression::toString(PrintStyle style) const
{
    QString text;
    text.reserve(gUsualTextLength);
    {
        QTextStream stream(&text, QIODevice::ReadWrite);
        print(stream, style);
    }
    return text;
}

Expression::operator QString() const
{
    return toString(PrintSql);
}

QList<QVariant> Expression::collectPlaceholders() const
{
    QList<QVariant> values;
    values.reserve(gUsualValueCount);
    collectPlaceholders(values);
    return values;
}

bool Expression::equals(const Expression *a, const Expression *b)
{
    if (a == b)
        return true;
    return a && b && a->equals(b);
}

QMap<QString, ExpressionHandle> &Expression::expressionClassMap()
{
    static QMap<QString, ExpressionHandle> map;
    return map;
}

bool Expression::registerExpressionClass(ExpressionHandle prototype)
{
    const QString key =
        classKey(*prototype); // a write access: the registry keeps a node of its own
    if (key.isEmpty() || expressionClassMap().contains(key))
        return false;
    expressionClassMap().insert(key, prototype);
    return true;
}

void Expression::writeExpression(QDataStream &stream, ExpressionHandle e)
{
    const Expression &node = *e.constData();
    stream << typeid(node).name();
    node.write(stream);
}

ExpressionHandle Expression::readExpression(QDataStream &stream)
{
    ExpressionHandle result;
    const KeyBytes key = readKey(stream);
    if (const ExpressionHandle *prototype = findPrototype(QLatin1String(key.constData()))) {
        result = *prototype;
        result->read(stream);
    }
    return result;
}

ValueView Expression::valueInPlace(const PropertySet & /*properties*/) const
{
    return {};
}

Truth Expression::truth(const PropertySet &properties, bool *isConstant) const
{
    return truthOf(evaluate(properties, isConstant));
}

ExpressionHandle::ExpressionHandle()
    : d(gEmpty.d)
{}

ExpressionHandle::ExpressionHandle(const Expression &e)
    : d(e.clone())
{}

bool ExpressionHandle::equals(ExpressionHandle other) const
{
    return Expression::equals(constData(), other.constData());
}

} // namespace vogen
