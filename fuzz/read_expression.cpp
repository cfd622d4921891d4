#include "Fuzz.h"

#include <Vokit/Vokit.h>

#include <QDataStream>

using namespace vogen;
using fuzz::require;

namespace {

using E = Expression;

const E::PrintStyle gStyles[] = {E::PrintReadable, E::PrintCode, E::PrintSql,
                                 E::PrintSql | E::PrintPlaceholders,
                                 E::PrintSql | E::PrintOrderBy | E::PrintDistinct};

ExpressionHandle read(const QByteArray &bytes, int version)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    return Expression::readExpression(stream);
}

QByteArray written(const ExpressionHandle &tree, int version)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    Expression::writeExpression(stream, tree);
    return bytes;
}

// Calls by a name from the stream take the name. Without this, memory would grow from run to run.
void forgetUnknownFunctions()
{
    auto &functions = FunctionExpression::functionMap();
    for (auto entry = functions.begin(); entry != functions.end();)
        entry = entry->function ? std::next(entry) : functions.erase(entry);
}

PropertySet someProperties()
{
    PropertySet set;
    set.add(boost::shared_ptr<BaseProperty>(new IntProperty("a", "", 5)));
    set.add(boost::shared_ptr<BaseProperty>(new StringProperty("b c", "", "x")));
    return set;
}

void use(const ExpressionHandle &damaged, int version)
{
    // Qt writes some dates that it read from damaged bytes in another way: a tree is itself from
    // its first writing on.
    const ExpressionHandle tree = read(written(damaged, version), version);
    const QByteArray bytes = written(tree, version);
    const ExpressionHandle again = read(bytes, version);
    const QString text = tree->toString(E::PrintCode);
    require(again->toString(E::PrintCode) == text, "a tree read back prints another text");
    require(written(again, version).size() == bytes.size(),
            "a tree read back is written otherwise");
    again.equals(tree); // a NaN differs from itself

    // How long a pattern from a stranger takes is up to the pattern and to Qt.
    const auto hasPattern = [](const QString &code) {
        return code.contains("like(") || code.contains("regexp(");
    };
    if (hasPattern(text) || hasPattern(damaged->toString(E::PrintCode)))
        return;
    damaged->evaluate(PropertySet(), nullptr);
    static const PropertySet properties = someProperties();
    bool isConstant = false;
    tree->evaluate(properties, &isConstant);
    tree->evaluate(PropertySet(), nullptr);
    tree->collectPlaceholders();
    for (const E::PrintStyle style : gStyles)
        tree->toString(style);
}

} // namespace

// Any bytes as a stored tree: read, and used as any tree is.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    fuzz::silenceQt();
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    for (const int version : {int(QDataStream::Qt_4_7), int(QDataStream::Qt_5_15)}) {
        use(read(bytes, version), version);
        forgetUnknownFunctions();
    }
    return 0;
}
