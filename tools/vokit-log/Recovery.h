#pragma once

#include "GapList.h"
#include "LogState.h"
#include "OutputBlocks.h"

#include <VokitExtras/VolFile>
#include <VokitExtras/VolHeader>

#include <functional>
#include <optional>

/// Goes through a log, and makes a complete document of its whole entries.
class Recovery
{
public:
    using TakeGap = std::function<void(const GapList::Item &)>;

    /**
     * @param log open, not in text mode
     * @param takeDocument the document, in blocks
     * @param takeGap each gap, in the order of the file
     */
    Recovery(QIODevice *log, OutputBlocks::Take takeDocument, TakeGap takeGap);

    /// False if there are gaps and no entry: then there is no document.
    /// @throws what the two functions throw
    bool run();

    // How it went.

    LogState state() const { return stateOf(m_log); }
    qint64 entryCount() const { return m_log.entryCount(); }
    qint64 bytesRead() const { return m_log.position(); }
    /// Gaps without those that lie in an entry of the document.
    qint64 skippedCount() const { return m_skippedCount; }
    qint64 skippedBytes() const { return m_skippedBytes; }
    /// That of the document; null if the log has none in front of its first entry.
    const vo::VolHeader &header() const { return m_header; }

private:
    void addEntry();
    void addGap(const vo::VolGap &gap);
    void start();
    void giveOddName(bool isEntryKept);
    void give(const vo::VolGap &gap, bool isEntryKept);

    vo::VolFile m_log;
    OutputBlocks m_document;
    TakeGap m_takeGap;
    vo::VolHeader m_header;
    std::optional<vo::VolGap> m_oddName; ///< waits for the entry that it may lie in
    qint64 m_skippedCount = 0;
    qint64 m_skippedBytes = 0;
    bool m_isStarted = false;
};
