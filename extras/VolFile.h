#pragma once

#include <VokitExtras/VolEntry>
#include <VokitExtras/VolGap>
#include <VokitExtras/VolHeader>

#include <memory>

class QIODevice;

namespace vo {

class VolScanner;

/**
 * Reads a log file, whole or damaged: all entries that are whole, and between them the gaps.
 *
 * @code
 * VolFile log(&file);
 * while (true) {
 *     switch (log.readNext()) {
 *     case VolFile::Entry: show(log.entry()); break;
 *     case VolFile::Gap:   warn(log.gap());   break;
 *     case VolFile::End:   return log.condition();
 *     }
 * }
 * @endcode
 *
 * An intact file gives what XMLLogReader gives, in the same order. Behind any damage, reading goes
 * on at the next entry. What comes back is what was written: an entry has to be whole from its "<"
 * to its ">". Damage that leaves an entry whole, such as a letter of a value that has become
 * another one, can't be seen.
 *
 * Reads forward in blocks, from any device, and holds one block and one entry of up to 16 MiB and
 * 4096 attributes; what is longer is no entry. References to entities of the file's own are not
 * followed: what has one is not whole. Text is UTF-8, as the log writes it. One object belongs to
 * one thread at a time, and toLogEntry() asks logEntryFactory(), which has no lock.
 */
class VOKIT_EXTRAS_EXPORT VolFile
{
public:
    enum Token {
        Entry, ///< entry() is the next one
        Gap,   ///< gap() is the next one
        End    ///< nothing is left
    };

    /// How a file is, from best to worst. Of what was read so far.
    enum Condition {
        Complete, ///< the root has its end tag, and nothing is amiss
        Live, ///< the root is open, as the log leaves it, and nothing is amiss; empty files, too
        Torn, ///< it breaks off at its end, and nothing else is amiss
        Damaged
    };

    /// @param device open for reading, not in text mode; not owned, and read by nobody else
    explicit VolFile(QIODevice *device);
    ~VolFile();
    VolFile(const VolFile &) = delete;
    VolFile &operator=(const VolFile &) = delete;

    Token readNext();

    /// Valid until the next readNext().
    const VolEntry &entry() const;
    const VolGap &gap() const { return m_gap; }
    /// The last start tag of a root that could be read, as far as it goes; null before there is
    /// one.
    const VolHeader &header() const;

    Condition condition() const;
    qint64 entryCount() const { return m_entryCount; }
    qint64 gapCount() const { return m_gapCount; }
    /// Where the file is damaged; the default one if it isn't.
    const VolGap &firstGap() const { return m_firstGap; }

    /**
     * Whether somebody is still writing the file.
     *
     * Then what the file ends in is no gap yet: readNext() gives End, and reads that end anew with
     * the next call, as the writer may complete it or put something else in its place. Needs a
     * device that can seek.
     */
    void setLive(bool live) { m_live = live; }

    /// Behind what was read to a result.
    qint64 position() const;

private:
    Token give(const VolGap &gap);

    std::unique_ptr<VolScanner> m_scanner;
    VolGap m_gap;
    VolGap m_firstGap;
    VolGap m_pending; ///< found, and may go on
    qint64 m_entryCount = 0;
    qint64 m_gapCount = 0;
    bool m_isPending = false;
    bool m_entryWaits = false; ///< found, and comes behind the gap
    bool m_live = false;
};

} // namespace vo
