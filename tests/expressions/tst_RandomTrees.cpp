#include "support/RandomTrees.h"

#include <QtTest>

using namespace vogen;
using namespace test;

/// What holds for every tree, asked of thousands.
class tst_RandomTrees : public QObject
{
    Q_OBJECT

private slots:
    void readingBack();
    void printingKnowsNoValues();
    void placeholders();
    void copies();
    void clientsNodes();
};

namespace {

constexpr quint32 gSeed = 20261121;
constexpr int gTrees = 4000;

// Each flag alone and what is used together.
const QList<Style> &styles()
{
    using E = Expression;
    static const QList<Style> list{Readable,
                                   Code,
                                   Sql,
                                   Placeholders,
                                   Nested,
                                   Code | Nested,
                                   Sql | Nested,
                                   Sql | E::PrintOrderBy,
                                   Placeholders | E::PrintOrderBy,
                                   Sql | E::PrintDistinct,
                                   E::PrintPlaceholders};
    return list;
}

QStringList prints(const ExpressionHandle &tree)
{
    QStringList texts;
    for (const Style style : styles())
        texts.append(print(tree, style));
    return texts;
}

QStringList shownPlaceholders(const ExpressionHandle &tree)
{
    QStringList values;
    for (const QVariant &value : tree->collectPlaceholders())
        values.append(shown(value));
    return values;
}

// For the message of a failure.
QByteArray which(int index, const ExpressionHandle &tree)
{
    return QString("seed %1, tree %2: %3")
        .arg(gSeed)
        .arg(index)
        .arg(print(tree, Readable))
        .toUtf8();
}

} // namespace

void tst_RandomTrees::readingBack()
{
    RandomTrees random(gSeed, RandomTrees::WithoutSwitches | RandomTrees::WithoutClock);
    for (int i = 0; i < gTrees; ++i) {
        const ExpressionHandle tree = random.tree();
        const QByteArray bytes = written(tree);
        QDataStream stream(bytes);
        const ExpressionHandle back = Expression::readExpression(stream);
        QVERIFY2(stream.atEnd() && stream.status() == QDataStream::Ok, which(i, tree));
        QVERIFY2(back.equals(tree) && tree.equals(back), which(i, tree));
        QVERIFY2(prints(back) == prints(tree), which(i, tree));
        QVERIFY2(shownPlaceholders(back) == shownPlaceholders(tree), which(i, tree));
        QVERIFY2(written(back) == bytes, which(i, tree));
        for (int j = 0; j < 3; ++j) {
            const PropertySet set = random.set();
            QVERIFY2(evaluated(back, set) == evaluated(tree, set), which(i, tree));
        }
    }
}

void tst_RandomTrees::printingKnowsNoValues()
{
    RandomTrees random(gSeed, RandomTrees::WithoutClock);
    for (int i = 0; i < gTrees; ++i) {
        const ExpressionHandle tree = random.tree();
        const QStringList before = prints(tree);
        const QStringList values = shownPlaceholders(tree);
        const PropertySet set = random.set();
        const QString value = evaluated(tree, set);
        QVERIFY2(prints(tree) == before, which(i, tree));
        QVERIFY2(shownPlaceholders(tree) == values, which(i, tree));
        QVERIFY2(evaluated(tree, set) == value, which(i, tree));
    }
}

void tst_RandomTrees::placeholders()
{
    RandomTrees random(gSeed, RandomTrees::WithoutBoundArguments);
    int bindable = 0;
    for (int i = 0; i < gTrees; ++i) {
        const ExpressionHandle tree = random.tree();
        const int marks = print(tree, Placeholders).count('?');
        bindable += marks;
        QVERIFY2(tree->collectPlaceholders().size() == marks, which(i, tree));
        QVERIFY2(print(tree, Sql).count('?') == 0, which(i, tree));
    }
    QVERIFY(bindable > gTrees / 2);
}

void tst_RandomTrees::copies()
{
    RandomTrees random(gSeed, RandomTrees::WithoutClock);
    for (int i = 0; i < gTrees; ++i) {
        const ExpressionHandle tree = random.tree();
        const QStringList before = prints(tree);
        ExpressionHandle copy = tree;
        copy->isEmpty(); // a write access: the copy gets a node of its own
        QVERIFY2(copy.constData() != tree.constData(), which(i, tree));
        QVERIFY2(copy.equals(tree), which(i, tree));
        QVERIFY2(prints(copy) == before, which(i, tree));
        const PropertySet set = random.set();
        QVERIFY2(evaluated(copy, set) == evaluated(tree, set), which(i, tree));
    }
}

void tst_RandomTrees::clientsNodes()
{
    // Nodes of the library read each other's values in place; a client's node is asked. Either way
    // gives the same.
    RandomTrees random(gSeed, RandomTrees::WithoutClock);
    RandomTrees wrapped(gSeed, RandomTrees::WithoutClock | RandomTrees::Wrapped);
    int values = 0;
    for (int i = 0; i < gTrees; ++i) {
        const ExpressionHandle tree = random.tree();
        const ExpressionHandle same = wrapped.tree();
        QVERIFY2(print(same, Readable) == print(tree, Readable), which(i, tree));
        const PropertySet set = random.set();
        wrapped.set();
        const QString value = evaluated(tree, set);
        QVERIFY2(evaluated(same, set) == value, which(i, tree));
        QVERIFY2(value.startsWith(shown(tree->evaluate(set, nullptr))), which(i, tree));
        values += value.startsWith("NULL") ? 0 : 1;
    }
    QVERIFY(values > gTrees / 4);
}

QTEST_APPLESS_MAIN(tst_RandomTrees)
#include "tst_RandomTrees.moc"
