#include "Recordings.h"
#include "Report.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QDataStream>

#include <memory>

using namespace vogen;

namespace {

/// The filter as a client would hold it that has no library: the tree of the hand-written peers.
struct Node
{
    enum Kind { Constant, Reference, Comparison, Chain, Membership, Negation, Unknown };

    Kind kind = Unknown;
    bool placeholder = false; // of a constant
    QVariant value;
    QString name; // of a reference
    QString alias;
    qint32 operation = 0; // of a comparison or a chain
    std::vector<std::unique_ptr<Node>> operands;
};

using Tree = std::unique_ptr<Node>;

// By kind: what the library's stream calls them.
constexpr const char *gKeys[] = {"N5vogen15ConstExpressionE", "N5vogen15ValueExpressionE",
                                 "N5vogen10ComparatorE",      "N5vogen15BooleanOperatorE",
                                 "N5vogen9ElementOfE",        "N5vogen11NotOperatorE"};

Node::Kind kindOf(const char *key)
{
    for (int kind = 0; kind < Node::Unknown; ++kind) {
        if (qstrcmp(key, gKeys[kind]) == 0)
            return static_cast<Node::Kind>(kind);
    }
    return Node::Unknown;
}

// ---- the library's bytes, written and read by hand

void writeNode(QDataStream &stream, const Node &node)
{
    stream << gKeys[node.kind];
    switch (node.kind) {
    case Node::Constant:
        stream << qint32(1) << node.placeholder << node.value;
        return;
    case Node::Reference:
        stream << qint32(2) << node.name << node.alias;
        return;
    case Node::Comparison:
    case Node::Chain:
        stream << qint32(1) << node.operation;
        break;
    default:
        break;
    }
    stream << qint32(1) << static_cast<qint32>(node.operands.size());
    for (const Tree &operand : node.operands)
        writeNode(stream, *operand);
}

Tree readNode(QDataStream &stream)
{
    char *raw = nullptr;
    stream >> raw;
    const std::unique_ptr<char[]> key(raw);

    auto node = std::make_unique<Node>();
    node->kind = kindOf(key.get());
    qint32 version = 0;
    switch (node->kind) {
    case Node::Constant:
        stream >> version >> node->placeholder >> node->value;
        return node;
    case Node::Reference:
        stream >> version >> node->name >> node->alias;
        return node;
    case Node::Comparison:
    case Node::Chain:
        stream >> version >> node->operation;
        break;
    case Node::Unknown:
        return node;
    default:
        break;
    }
    qint32 count = 0;
    stream >> version >> count;
    for (qint32 i = 0; i < count && !stream.atEnd(); ++i)
        node->operands.push_back(readNode(stream));
    return node;
}

// ---- the same tree as CBOR; the type of a constant goes beside it, as CBOR has one for all
// integers

constexpr QLatin1String gKind("kind");
constexpr QLatin1String gPlaceholder("placeholder");
constexpr QLatin1String gType("type");
constexpr QLatin1String gValue("value");
constexpr QLatin1String gName("name");
constexpr QLatin1String gAlias("alias");
constexpr QLatin1String gOperation("op");
constexpr QLatin1String gOperands("operands");

QCborMap toCbor(const Node &node)
{
    QCborMap map{{gKind, node.kind}};
    switch (node.kind) {
    case Node::Constant:
        map.insert(gPlaceholder, node.placeholder);
        map.insert(gType, static_cast<int>(node.value.type()));
        map.insert(gValue, QCborValue::fromVariant(node.value));
        return map;
    case Node::Reference:
        map.insert(gName, node.name);
        map.insert(gAlias, node.alias);
        return map;
    case Node::Comparison:
    case Node::Chain:
        map.insert(gOperation, node.operation);
        break;
    default:
        break;
    }
    QCborArray operands;
    for (const Tree &operand : node.operands)
        operands.append(toCbor(*operand));
    map.insert(gOperands, operands);
    return map;
}

Tree fromCbor(const QCborMap &map)
{
    auto node = std::make_unique<Node>();
    node->kind = static_cast<Node::Kind>(map[gKind].toInteger(Node::Unknown));
    switch (node->kind) {
    case Node::Constant:
        node->placeholder = map[gPlaceholder].toBool();
        node->value = map[gValue].toVariant();
        node->value.convert(static_cast<int>(map[gType].toInteger()));
        return node;
    case Node::Reference:
        node->name = map[gName].toString();
        node->alias = map[gAlias].toString();
        if (node->alias.isNull())
            node->alias = QStringLiteral(""); // an empty text comes back from CBOR as a null one
        return node;
    case Node::Comparison:
    case Node::Chain:
        node->operation = static_cast<qint32>(map[gOperation].toInteger());
        break;
    default:
        break;
    }
    const QCborArray operands = map[gOperands].toArray();
    for (const auto operand : operands)
        node->operands.push_back(fromCbor(operand.toMap()));
    return node;
}

// ---- the contestants: a tree to bytes, and bytes to a tree of new nodes

struct Library
{
    static QByteArray write(const ExpressionHandle &tree)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        Expression::writeExpression(stream, tree);
        return bytes;
    }
    static ExpressionHandle read(const QByteArray &bytes)
    {
        QDataStream stream(bytes);
        return Expression::readExpression(stream);
    }
};

struct ByHand
{
    static QByteArray write(const Tree &tree)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        writeNode(stream, *tree);
        return bytes;
    }
    static Tree read(const QByteArray &bytes)
    {
        QDataStream stream(bytes);
        return readNode(stream);
    }
};

struct Cbor
{
    static QByteArray write(const Tree &tree) { return toCbor(*tree).toCborValue().toCbor(); }
    static Tree read(const QByteArray &bytes)
    {
        return fromCbor(QCborValue::fromCbor(bytes).toMap());
    }
};

/// Measures writing the tree and reading it back; a tree read is deleted within its time.
template <class Contestant, class Root>
void measure(const QByteArray &name, const Root &tree)
{
    const auto write = [&tree](benchmark::State &state) {
        for (auto _ : state) {
            QByteArray bytes = Contestant::write(tree);
            benchmark::DoNotOptimize(bytes);
        }
        reportTimePerItem(state, 1);
    };
    const auto read = [bytes = Contestant::write(tree)](benchmark::State &state) {
        for (auto _ : state) {
            auto made = Contestant::read(bytes);
            benchmark::DoNotOptimize(made);
        }
        reportTimePerItem(state, 1);
    };
    benchmark::RegisterBenchmark(("write/" + name).constData(), write);
    benchmark::RegisterBenchmark(("read/" + name).constData(), read);
}

} // namespace

int main(int argc, char **argv)
{
    const ExpressionHandle filter = buildFilter(RecordingProperties(), Wanted());
    const QByteArray bytes = Library::write(filter);
    require(Library::read(bytes).equals(filter), "stream: the library reads another tree");
    // What the hand-written reader makes of the library's bytes is the tree of the others.
    const Tree tree = ByHand::read(bytes);
    require(ByHand::write(tree) == bytes, "stream: the hand-written tree has other bytes");
    require(ByHand::write(Cbor::read(Cbor::write(tree))) == bytes,
            "stream: CBOR gives another tree");

    measure<Library>("library", filter);
    measure<ByHand>("data_stream", tree);
    measure<Cbor>("cbor", tree);
    return runBenchmarks(argc, argv);
}
