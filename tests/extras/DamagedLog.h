#pragma once

#include <QByteArray>

#include <memory>
#include <random>
#include <vector>

namespace test {

/// Numbers that are the same everywhere, which the standard's distributions are not.
class Dice
{
public:
    explicit Dice(quint64 seed)
        : m_engine(seed)
    {}
    /// 0 to @p count - 1
    int below(int count) { return static_cast<int>(m_engine() % static_cast<quint64>(count)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool once(int in) { return below(in) == 0; }

private:
    std::mt19937_64 m_engine;
};

struct Range
{
    int begin;
    int end;
};

/// A log as the library's writer made it, and where it put what.
struct WrittenLog
{
    QByteArray bytes;
    std::vector<Range> entries;
    int rootTag = 0;    ///< the place of its "<"
    int rootTagEnd = 0; ///< behind its last attribute
    bool isClosed = false;
};

/// @param entryCount of all classes of the library, and of one that no reader knows
WrittenLog writeLog(Dice &dice, int entryCount);

/**
 * Logs, and what became of them.
 *
 * Holds not bytes but where each comes from: so what is left of the entries follows from how the
 * damage was done, and is not searched for.
 */
class DamagedLog
{
public:
    enum Kind {
        Undamaged,
        Truncated,
        TornTail,
        UnfinishedRoot,
        ZeroInName,
        FlippedBytes,
        RemovedBlocks,
        ForeignBlocks,
        RunTogether,
        ForeignFront,
        ZeroedBlocks,
        KindCount
    };
    static const char *name(Kind kind);

    DamagedLog(Dice &dice, WrittenLog log);

    /// Any number of damages, one after the other.
    void damage(Kind kind);

    /// What is read.
    QByteArray bytes() const;
    /// Entries that stand in bytes() as they were written, from the front.
    std::vector<Range> intact() const;
    /// How many were written, to whichever of the logs.
    int written() const;
    /// Whether a place where something was changed, taken out or put in lies within the range.
    bool isHit(Range range) const;

private:
    struct Piece
    {
        std::shared_ptr<const WrittenLog> log; ///< null for what no log wrote
        QByteArray foreign;
        int begin = 0; ///< in the log
        int size = 0;
    };

    int size() const;
    std::size_t split(int at);
    void insert(int at, const Piece &piece);
    void insertForeign(int at, const QByteArray &bytes);
    void remove(int at, int size);
    void replace(int at, const QByteArray &bytes);
    void join();
    int entryStart();
    std::shared_ptr<const WrittenLog> addLog();

    void tearTail();
    void leaveRootOpen();
    void zeroNames();
    void flipBytes();
    QByteArray foreignBlock();

    Dice &m_dice;
    std::shared_ptr<const WrittenLog> m_log;
    std::vector<std::shared_ptr<const WrittenLog>> m_logs;
    std::vector<Piece> m_pieces;
};

} // namespace test
