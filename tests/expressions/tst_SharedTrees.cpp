#include "support/RandomTrees.h"

#include <Vokit/ExpressionOperators>

#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace vogen;
using namespace test;

/// One tree, many threads: each copies the handle, prints, evaluates and writes it.
class tst_SharedTrees : public QObject
{
    Q_OBJECT

private slots:
    void manyReaders();
    void eachThreadBuildsOnASharedPart();
    void anyTree();
};

namespace {

constexpr int gThreads = 4;
constexpr int gRounds = 500;

template <typename Work>
int failuresOf(Work work)
{
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < gThreads; ++i) {
        threads.emplace_back([&failures, &work, i] {
            for (int round = 0; round < gRounds; ++round) {
                if (!work(i))
                    ++failures;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    return failures;
}

} // namespace

void tst_SharedTrees::manyReaders()
{
    const IntProperty a("a");
    const StringProperty b("b");
    const ExpressionHandle filter =
        (a > 5 && !(b == "x")) || ElementOf(b).append(QVariant("y")).append(QVariant("z"));
    const QString text = bindable(filter);
    const QByteArray bytes = written(filter);

    QCOMPARE(failuresOf([&](int thread) {
                 const ExpressionHandle mine = filter; // NOLINT: the copy is what is tested
                 const PropertySet set = setOf(
                     {new IntProperty("a", "", 4 + thread), new StringProperty("b", "", "q")});
                 return mine->evaluate(set, nullptr) == QVariant(4 + thread > 5) &&
                        bindable(mine) == text && written(mine) == bytes && mine.equals(filter);
             }),
             0);
    QCOMPARE(bindable(filter), text);
}

void tst_SharedTrees::eachThreadBuildsOnASharedPart()
{
    const ExpressionHandle part = ref("a") == bound(1);
    QCOMPARE(failuresOf([&](int thread) {
                 ExpressionHandle mine = part && ref("b");
                 dynamic_cast<BooleanOperator &>(*mine).append(bound(thread));
                 ExpressionHandle own = part;
                 dynamic_cast<Comparator &>(*own).append(literal(thread)); // a write: copied first
                 return print(mine, Sql) == QString("a = 1 AND b AND %1").arg(thread) &&
                        readBack(written(mine)).equals(mine);
             }),
             0);
    QCOMPARE(written(part), written(ref("a") == bound(1)));
    QCOMPARE(part->ref.loadRelaxed(), 1);
}

void tst_SharedTrees::anyTree()
{
    constexpr int trees = 300;
    constexpr quint32 seed = 20261121;
    RandomTrees random(seed, RandomTrees::WithoutPatterns | RandomTrees::WithoutClock);
    QList<ExpressionHandle> list;
    QList<PropertySet> sets;
    QStringList expected;
    for (int i = 0; i < trees; ++i) {
        list.append(random.tree());
        sets.append(random.set());
        expected.append(evaluated(list.last(), sets.last()));
    }
    std::atomic<int> next{0};
    QCOMPARE(failuresOf([&](int /*thread*/) {
                 const int i = next++ / gThreads % trees; // four at a time on one tree
                 return evaluated(list.at(i), sets.at(i)) == expected.at(i);
             }),
             0);
}

QTEST_APPLESS_MAIN(tst_SharedTrees)
#include "tst_SharedTrees.moc"
