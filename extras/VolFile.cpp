#include <VokitExtras/VolFile>

#include "VolScanner_p.h"

namespace vo {

VolFile::VolFile(QIODevice *device)
    : m_scanner(std::make_unique<VolScanner>(device))
{}

VolFile::~VolFile() = default;

VolFile::Token VolFile::readNext()
{
    while (!m_entryWaits) {
        const VolScanner::Piece piece = m_scanner->next(m_live);
        if (piece == VolScanner::Junk) {
            const VolGap &junk = m_scanner->junk();
            const bool goesOn = m_isPending && m_pending.kind == VolGap::ForeignBytes &&
                                junk.kind == VolGap::ForeignBytes;
            if (goesOn) {
                m_pending.length = junk.end() - m_pending.position;
            } else if (m_isPending) {
                const VolGap found = m_pending;
                m_pending = junk;
                return give(found);
            } else {
                m_pending = junk;
                m_isPending = true;
            }
            continue;
        }
        m_entryWaits = piece == VolScanner::Entry;
        // In a file that is being written, what it ends in may go on.
        if (m_isPending && !(m_live && piece == VolScanner::End)) {
            m_isPending = false;
            return give(m_pending);
        }
        if (piece == VolScanner::End)
            return End;
    }
    m_entryWaits = false;
    ++m_entryCount;
    return Entry;
}

VolFile::Token VolFile::give(const VolGap &gap)
{
    m_gap = gap;
    if (m_gapCount++ == 0)
        m_firstGap = gap;
    return Gap;
}

const VolEntry &VolFile::entry() const
{
    return m_scanner->entry();
}

const VolHeader &VolFile::header() const
{
    return m_scanner->header();
}

VolFile::Condition VolFile::condition() const
{
    if (m_gapCount == 0)
        return m_scanner->isClosed() ? Complete : Live;
    return m_gapCount == 1 && m_firstGap.kind == VolGap::TruncatedEnd ? Torn : Damaged;
}

qint64 VolFile::position() const
{
    return m_scanner->position();
}

} // namespace vo
