#include "DamagedLog.h"
#include "VolReading.h"

#include <QtTest>

#include <cstdio>

using test::DamagedLog;
using test::Dice;
using test::Range;

/// Damages logs in every way that is known to happen, and counts what comes back.
///
/// The environment says how many (VOKIT_DAMAGED_LOGS) and from which seed (VOKIT_SEED); a log is
/// the same whatever stands before it.
class tst_VolDamage : public QObject
{
    Q_OBJECT

private slots:
    void damagedLogs();
};

namespace {

constexpr int gUsualCount = 10000;
constexpr int gUsualSeed = 20261121;
constexpr int gBlock = 64 * 1024;                ///< of what VolFile reads at once
constexpr int gTwoKinds = DamagedLog::KindCount; ///< a row of its own
constexpr int gRowCount = gTwoKinds + 1;

struct Counts
{
    int logs = 0;
    int written = 0;
    int intact = 0;
    int cameBack = 0;
    int undetectable = 0; ///< hit, and whole all the same
    int neverWritten = 0;
    int gaps = 0;

    Counts &operator+=(const Counts &other)
    {
        logs += other.logs;
        written += other.written;
        intact += other.intact;
        cameBack += other.cameBack;
        undetectable += other.undetectable;
        neverWritten += other.neverWritten;
        gaps += other.gaps;
        return *this;
    }
    double percent() const { return intact ? 100.0 * cameBack / intact : 100.0; }
};

int setting(const char *name, int usual)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(name, &isSet);
    return isSet ? value : usual;
}

DamagedLog::Kind anyDamage(Dice &dice)
{
    return static_cast<DamagedLog::Kind>(dice.between(1, DamagedLog::KindCount - 1));
}

DamagedLog damagedLog(Dice &dice, int row)
{
    constexpr int mostEntries = 60;
    const int entryCount = dice.once(15) ? 0 : dice.between(1, mostEntries);
    DamagedLog log(dice, writeLog(dice, entryCount));
    if (row < gTwoKinds) {
        log.damage(static_cast<DamagedLog::Kind>(row));
        return log;
    }
    DamagedLog::Kind first = anyDamage(dice);
    DamagedLog::Kind second = anyDamage(dice);
    while (second == first)
        second = anyDamage(dice);
    if (second == DamagedLog::UnfinishedRoot) // the tag has to be at its place
        std::swap(first, second);
    log.damage(first);
    log.damage(second);
    return log;
}

Counts compare(const DamagedLog &log, const test::VolReading &reading)
{
    Counts counts;
    counts.logs = 1;
    counts.written = log.written();
    const std::vector<Range> intact = log.intact();
    counts.intact = static_cast<int>(intact.size());
    auto next = intact.begin();
    for (const test::VolToken &token : reading.tokens) {
        if (!token.isEntry) {
            ++counts.gaps;
            continue;
        }
        const Range range{static_cast<int>(token.position()), static_cast<int>(token.end())};
        while (next != intact.end() && next->begin < range.begin)
            ++next;
        if (next != intact.end() && next->begin == range.begin && next->end == range.end)
            ++counts.cameBack;
        else if (log.isHit(range))
            ++counts.undetectable;
        else
            ++counts.neverWritten;
    }
    return counts;
}

void print(const char *name, const Counts &counts)
{
    std::printf("%-24s %6d %8d %8d %9d %8.3f %% %8d %8d %8d\n", name, counts.logs, counts.written,
                counts.intact, counts.cameBack, counts.percent(), counts.undetectable,
                counts.neverWritten, counts.gaps);
}

void print(const std::vector<Counts> &rows, const Counts &all, int seed)
{
    std::printf("\nseed %d\n%-24s %6s %8s %8s %9s %10s %8s %8s %8s\n", seed, "", "", "entries", "",
                "of them", "", "hit, yet", "never", "");
    std::printf("%-24s %6s %8s %8s %9s %10s %8s %8s %8s\n", "damage", "logs", "written", "intact",
                "come back", "", "whole", "written", "gaps");
    for (std::size_t row = 0; row < rows.size(); ++row) {
        print(row < gTwoKinds ? DamagedLog::name(static_cast<DamagedLog::Kind>(row))
                              : "two of these",
              rows[row]);
    }
    print("all", all);
    std::fflush(stdout);
}

} // namespace

void tst_VolDamage::damagedLogs()
{
    constexpr double enough = 99.5;
    const int count = setting("VOKIT_DAMAGED_LOGS", gUsualCount);
    const int seed = setting("VOKIT_SEED", gUsualSeed);
    std::vector<Counts> rows(gRowCount);
    Counts all;
    int longLogs = 0;
    for (int i = 0; i < count; ++i) {
        const int row = i % gRowCount;
        Dice dice(static_cast<quint64>(seed) << 32 | static_cast<quint64>(i));
        const DamagedLog log = damagedLog(dice, row);
        const QByteArray bytes = log.bytes();
        longLogs += bytes.size() > gBlock;
        const test::VolReading reading = test::readVol(bytes);
        const Counts counts = compare(log, reading);
        rows[static_cast<std::size_t>(row)] += counts;
        all += counts;
        // In order, without overlaps, and a gap for each byte that is no log's.
        const QString wrong = row == DamagedLog::Undamaged && reading.gapCount == 0
                                  ? test::disagreement(reading, bytes)
                                  : test::misreading(reading, bytes);
        QVERIFY2(wrong.isEmpty(), qPrintable(QString("log %1: %2").arg(i).arg(wrong)));
        QVERIFY2(counts.neverWritten == 0, qPrintable(QString("log %1").arg(i)));
        if (counts.cameBack != counts.intact)
            std::printf("log %d: %d of %d come back\n", i, counts.cameBack, counts.intact);
    }
    print(rows, all, seed);
    std::printf("%d logs are longer than a block of 64 KiB\n", longLogs);
    QVERIFY(all.intact > 0 || count == 0);
    for (const Counts &counts : rows)
        QVERIFY(counts.percent() >= enough);
    // Nothing was damaged: nothing is lost, and nothing is more than was written.
    const Counts &whole = rows[DamagedLog::Undamaged];
    QCOMPARE(whole.intact, whole.written);
    QCOMPARE(whole.cameBack, whole.written);
    QCOMPARE(whole.undetectable, 0);
}

QTEST_GUILESS_MAIN(tst_VolDamage)
#include "tst_VolDamage.moc"
