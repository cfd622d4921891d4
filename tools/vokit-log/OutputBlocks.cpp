#include "OutputBlocks.h"

#include <utility>

namespace {
constexpr int gSize = 64 * 1024;
} // namespace

OutputBlocks::OutputBlocks(Take take)
    : m_take(std::move(take))
    , m_buffer(&m_bytes)
{
    m_bytes.reserve(2 * gSize); // and so keeps its room
    m_buffer.open(QIODevice::WriteOnly);
}

void OutputBlocks::add(const QByteArray &bytes)
{
    m_buffer.write(bytes);
    if (m_bytes.size() >= gSize)
        flush();
}

void OutputBlocks::flush()
{
    m_take(m_bytes);
    m_bytes.resize(0);
    m_buffer.seek(0);
}
