#include "GapWarnings.h"

#include "Console.h"
#include "GapText.h"

namespace {
constexpr qint64 gMostWarnings = 20; // of one file
} // namespace

void GapWarnings::beginFile(const QString &name)
{
    m_fileName = name;
    m_count = 0;
}

void GapWarnings::gap(const vo::VolGap &gap)
{
    if (m_count++ < gMostWarnings)
        warn(QStringLiteral("%1: %2").arg(m_fileName, gapText(gap)));
}

void GapWarnings::endFile(const vo::VolFile & /*file*/)
{
    if (m_count > gMostWarnings)
        warn(QStringLiteral("%1: and %2 more").arg(m_fileName).arg(m_count - gMostWarnings));
}
