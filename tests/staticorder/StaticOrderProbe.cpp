#include <Vokit/Vokit.h>

#include <QDataStream>

#include <cstdio>

using namespace vogen;

namespace {

int gFailures = 0;

void check(bool holds, const char *what)
{
    if (!holds) {
        std::printf("fails: %s\n", what);
        ++gFailures;
    }
}

// A class of a client's in the same program, registered by a static initialiser of its own, which
// runs before or after those of the library. A default handle made here may still be null.
class Own : public ValueExpression
{
public:
    using ValueExpression::ValueExpression;
    Expression *clone() const override { return new Own(*this); }
};

const bool gOwnRegistered = Expression::registerExpressionClass(Own("own", ""));
const ExpressionHandle gEarlyDefault;
const ExpressionList gEarlyList{ExpressionHandle()};
const ExpressionHandle gEarlyFilter =
    ExpressionHandle(ValueExpression("a", "")) == ConstExpression(QVariant(5), true);

} // namespace

int main()
{
    check(gOwnRegistered, "a client's class registers at any time");
    check(Expression::expressionClassMap().size() == 12, "eleven classes of the library and one");
    check(ExpressionHandle().constData() != nullptr, "a default handle is never null");
    check(ExpressionHandle().constData() == ExpressionList::empty().constData(), "one empty");
    check(ExpressionHandle()->isEmpty(), "the empty expression is empty");
    check(!gEarlyDefault.constData() || gEarlyDefault->isEmpty(), "an early handle is tolerated");
    check(!gEarlyList.isEmpty() || gEarlyDefault.constData(), "a null handle is one operand");
    check(ValueExpression::star.toString() == "*", "star");
    check(PropertySet::MetaType != 0, "the meta type");
    check(QMetaType::type("vogen::PropertySet") == PropertySet::MetaType, "and its name");
    check(IllegalProperty::ms_illegalProperty.type() == "IllegalProperty", "the illegal property");
    check(TypeTool::EPOCH == QDate(1970, 1, 1), "the epoch");
    check(TypeTool::MIDNIGHT == QTime(0, 0), "midnight");
    check(!TypeTool::INVALID.isValid(), "NULL");

    check(QFile::exists(":/Translations/Vokit_de.qm"), "the catalogues");
    check(FunctionExpression::functionMap().size() == 21, "the built-in functions");
    check(FunctionExpression::isRegistered("regexp"), "to the last");
    check(lower(ConstExpression(QVariant("A"), false)).toString() == "lower('A')", "print");
    check(vo::logEntryFactory()->entryNames().size() == 8, "the makers of log entries");

    PropertySet set;
    set.add(boost::shared_ptr<BaseProperty>(new IntProperty("a", "", 5)));
    check(gEarlyFilter->evaluate(set, nullptr) == QVariant(true), "a filter made early");
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    Expression::writeExpression(out, gEarlyFilter);
    QDataStream in(bytes);
    check(Expression::readExpression(in).equals(gEarlyFilter), "the registry reads it back");
    return gFailures;
}
