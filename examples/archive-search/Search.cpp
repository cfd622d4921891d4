#include "Search.h"

#include "Database.h"
#include "FileName.h"
#include "Options.h"
#include "Progress.h"
#include "Query.h"
#include "Recording.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

using vogen::ExpressionHandle;
using vogen::PropertySet;

namespace {

constexpr size_t gBatchSize = 64; // recordings that still fit into the processor's cache
constexpr size_t gDisagreementLimit = 10;

using Batch = std::vector<PropertySet>;

class Searcher
{
public:
    Searcher(const Options &options, const Query &query, Database &database);

    void readRows(FolderWalk &walk);
    void runInSqlite();
    void explainDisagreements();
    void sort();

    SearchResult result;

private:
    Batch nextBatch(FolderWalk &walk);
    void evaluate(const Batch &batch);
    void takeMatches(const Batch &batch);
    void takeMatch(qlonglong id, const PropertySet &recording);
    void load(const Batch &batch);
    void commit();
    void compareOrders(std::vector<qlonglong> inMemory);

    const Options &m_options;
    const Query &m_query;
    Database &m_database;
    RecordingMaker m_maker;
    std::vector<bool> m_matches;     ///< in memory, by row
    std::vector<bool> m_differences; ///< whether SQLite says otherwise, by row
    std::optional<Ordering> m_ordering;
};

Searcher::Searcher(const Options &options, const Query &query, Database &database)
    : m_options(options)
    , m_query(query)
    , m_database(database)
{
    if (query.sortKey)
        m_ordering.emplace(*query.sortKey);
    if (!options.exportTo.isEmpty()) {
        result.exported.emplace();
        result.exported->folder = absoluteName(QString::fromUtf8(options.folder));
        result.exported->file = options.exportTo;
    }
}

void Searcher::readRows(FolderWalk &walk)
{
    const bool withProgress = !m_options.json && !m_options.quiet && Progress::isVisible();
    Progress progress(withProgress ? countEntries(m_options.folder) : 0);
    for (Batch batch = nextBatch(walk); !batch.empty(); batch = nextBatch(walk)) {
        evaluate(batch);
        takeMatches(batch);
        load(batch);
        result.rows += static_cast<qlonglong>(batch.size());
        progress.update(result.rows);
    }
    commit();
    result.notUtf8 = m_maker.notUtf8();
    result.skipped = walk.skipped();
}

Batch Searcher::nextBatch(FolderWalk &walk)
{
    Batch batch;
    batch.reserve(gBatchSize);
    for (WalkEntry entry; batch.size() < gBatchSize && walk.next(entry);)
        batch.push_back(m_maker.make(entry));
    return batch;
}

void Searcher::evaluate(const Batch &batch)
{
    QElapsedTimer timer;
    timer.start();
    for (const PropertySet &recording : batch)
        m_matches.push_back(m_query.filter.matches(recording));
    result.memory.nanoseconds += timer.nsecsElapsed();
}

void Searcher::takeMatches(const Batch &batch)
{
    qlonglong id = result.rows;
    for (const PropertySet &recording : batch) {
        if (m_matches[static_cast<size_t>(id)])
            takeMatch(id, recording);
        ++id;
    }
}

void Searcher::takeMatch(qlonglong id, const PropertySet &recording)
{
    ++result.memory.matches;
    if (m_query.grouped)
        result.groups.add(recording);
    if (result.exported)
        result.exported->add(id, recording);
    if (m_ordering)
        m_ordering->add(id, recording);
    else if (result.firstMatches.size() < static_cast<size_t>(m_options.limit))
        result.firstMatches.push_back(recording);
}

void Searcher::load(const Batch &batch)
{
    QElapsedTimer timer;
    timer.start();
    qlonglong id = result.rows;
    for (const PropertySet &recording : batch)
        m_database.insert(id++, recording);
    result.loadNanoseconds += timer.nsecsElapsed();
}

void Searcher::commit()
{
    QElapsedTimer timer;
    timer.start();
    m_database.commit();
    result.loadNanoseconds += timer.nsecsElapsed();
}

void Searcher::runInSqlite()
{
    // A row that SQLite finds flips its bit, so what stays set was found by one side only.
    m_differences = m_matches;
    QElapsedTimer timer;
    timer.start();
    m_database.select(m_query.filter.expression(), ExpressionHandle(), [this](qlonglong id) {
        ++result.sqlite.matches;
        m_differences.at(static_cast<size_t>(id)).flip();
    });
    result.sqlite.nanoseconds = timer.nsecsElapsed();
    if (m_query.grouped)
        result.groups.addFrom(m_database, m_query.filter.expression());
}

void Searcher::explainDisagreements()
{
    for (size_t row = 0; row < m_differences.size(); ++row) {
        if (!m_differences[row])
            continue;
        ++result.disagreementCount;
        if (result.disagreements.size() < gDisagreementLimit) {
            result.disagreements.push_back(explainDisagreement(
                m_query.filter, m_database, static_cast<qlonglong>(row), m_matches[row]));
        }
    }
}

void Searcher::sort()
{
    if (!m_ordering)
        return;
    result.order.emplace();
    QElapsedTimer timer;
    timer.start();
    std::vector<qlonglong> sorted = m_ordering->takeSorted();
    result.order->memoryNanoseconds = timer.nsecsElapsed();
    if (result.exported)
        result.exported->ids = sorted;

    const size_t listed = std::min(sorted.size(), static_cast<size_t>(m_options.limit));
    for (size_t i = 0; i < listed; ++i)
        result.firstMatches.push_back(m_database.recording(sorted[i]));
    compareOrders(std::move(sorted));
}

// A row that one side alone has found has no place to compare.
void Searcher::compareOrders(std::vector<qlonglong> inMemory)
{
    const auto isSingle = [this](qlonglong id) { return m_differences[static_cast<size_t>(id)]; };
    inMemory.erase(std::remove_if(inMemory.begin(), inMemory.end(), isSingle), inMemory.end());
    OrderComparer comparer(*m_query.sortKey, std::move(inMemory));
    QElapsedTimer timer;
    timer.start();
    m_database.select(m_query.filter.expression(), m_query.sortKey->expression(),
                      [&](qlonglong id) {
                          if (!isSingle(id))
                              comparer.add(id);
                      });
    result.order->sqliteNanoseconds = timer.nsecsElapsed();
    result.order->comparison = comparer.result(m_database);
}

} // namespace

bool SearchResult::sidesAgree() const
{
    return disagreementCount == 0 && groups.agree() &&
           (!order || order->comparison.differences == 0);
}

SearchResult search(const Options &options, const Query &query, FolderWalk &walk,
                    Database &database)
{
    Searcher searcher(options, query, database);
    searcher.readRows(walk);
    searcher.runInSqlite();
    searcher.explainDisagreements();
    searcher.sort();
    return searcher.result;
}
