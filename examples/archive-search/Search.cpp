#include "Search.h"

#include "Database.h"
#include "Filter.h"
#include "Options.h"
#include "Progress.h"
#include "Recording.h"

#include <QElapsedTimer>

using vogen::PropertySet;

namespace {

constexpr size_t gBatchSize = 64; // recordings that still fit into the processor's cache
constexpr size_t gDisagreementLimit = 10;

using Batch = std::vector<PropertySet>;

class Searcher
{
public:
    Searcher(const Options &options, const Filter &filter, Database &database);

    void readRows(FolderWalk &walk);
    void runInSqlite();
    void explainDisagreements();

    SearchResult result;

private:
    Batch nextBatch(FolderWalk &walk);
    void evaluate(const Batch &batch);
    void keepFirstMatches(const Batch &batch);
    void load(const Batch &batch);
    void commit();

    const Options &m_options;
    const Filter &m_filter;
    Database &m_database;
    RecordingMaker m_maker;
    std::vector<bool> m_matches;     ///< in memory, by row
    std::vector<bool> m_differences; ///< whether SQLite says otherwise, by row
};

Searcher::Searcher(const Options &options, const Filter &filter, Database &database)
    : m_options(options)
    , m_filter(filter)
    , m_database(database)
{}

void Searcher::readRows(FolderWalk &walk)
{
    const bool withProgress = !m_options.json && !m_options.quiet && Progress::isVisible();
    Progress progress(withProgress ? countEntries(m_options.folder) : 0);
    for (Batch batch = nextBatch(walk); !batch.empty(); batch = nextBatch(walk)) {
        evaluate(batch);
        keepFirstMatches(batch);
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
        m_matches.push_back(m_filter.matches(recording));
    result.memory.nanoseconds += timer.nsecsElapsed();
}

void Searcher::keepFirstMatches(const Batch &batch)
{
    const auto limit = static_cast<size_t>(m_options.limit);
    for (size_t i = 0; i < batch.size(); ++i) {
        if (!m_matches[static_cast<size_t>(result.rows) + i])
            continue;
        ++result.memory.matches;
        if (result.firstMatches.size() < limit)
            result.firstMatches.push_back(batch[i]);
    }
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
    m_database.select(m_filter.expression(), [this](qlonglong id) {
        ++result.sqlite.matches;
        m_differences.at(static_cast<size_t>(id)).flip();
    });
    result.sqlite.nanoseconds = timer.nsecsElapsed();
}

void Searcher::explainDisagreements()
{
    for (size_t row = 0; row < m_differences.size(); ++row) {
        if (!m_differences[row])
            continue;
        ++result.disagreementCount;
        if (result.disagreements.size() < gDisagreementLimit) {
            result.disagreements.push_back(explainDisagreement(
                m_filter, m_database, static_cast<qlonglong>(row), m_matches[row]));
        }
    }
}

} // namespace

SearchResult search(const Options &options, const Filter &filter, FolderWalk &walk,
                    Database &database)
{
    Searcher searcher(options, filter, database);
    searcher.readRows(walk);
    searcher.runInSqlite();
    searcher.explainDisagreements();
    return searcher.result;
}
