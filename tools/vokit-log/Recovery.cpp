#include "Recovery.h"

#include <VokitExtras/VolWriter>

#include <utility>

using vo::VolEntry;
using vo::VolFile;
using vo::VolGap;
using vo::VolWriter;

Recovery::Recovery(QIODevice *log, OutputBlocks::Take takeDocument, TakeGap takeGap)
    : m_log(log)
    , m_document(std::move(takeDocument))
    , m_takeGap(std::move(takeGap))
{}

bool Recovery::run()
{
    for (VolFile::Token token = m_log.readNext(); token != VolFile::End; token = m_log.readNext()) {
        if (token == VolFile::Entry)
            addEntry();
        else
            addGap(m_log.gap());
    }
    giveOddName(false);
    if (m_log.gapCount() > 0 && m_log.entryCount() == 0)
        return false;
    if (!m_isStarted)
        start();
    VolWriter(m_document.device()).writeEnd();
    m_document.flush();
    return true;
}

void Recovery::addEntry()
{
    const VolEntry &entry = m_log.entry();
    giveOddName(m_oddName && m_oddName->position >= entry.position() &&
                m_oddName->end() <= entry.position() + entry.bytes().size());
    if (!m_isStarted)
        start();
    VolWriter(m_document.device()).write(entry);
    m_document.add({});
}

// A name that XML doesn't allow comes in front of its entry, if that is whole.
void Recovery::addGap(const VolGap &gap)
{
    giveOddName(false);
    if (gap.kind == VolGap::IllegalCharacter)
        m_oddName = gap;
    else
        give(gap, false);
}

void Recovery::start()
{
    m_isStarted = true;
    m_header = m_log.header();
    VolWriter(m_document.device()).writeStart(m_header);
}

void Recovery::giveOddName(bool isEntryKept)
{
    if (m_oddName)
        give(*m_oddName, isEntryKept);
    m_oddName.reset();
}

void Recovery::give(const VolGap &gap, bool isEntryKept)
{
    if (!isEntryKept) {
        ++m_skippedCount;
        m_skippedBytes += gap.length;
    }
    m_takeGap({gap, isEntryKept});
}
