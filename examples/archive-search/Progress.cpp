#include "Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {
constexpr qint64 gRedrawMilliseconds = 100;
constexpr qlonglong gWidth = 40;
} // namespace

Progress::Progress(qlonglong total)
    : m_total(total)
{
    m_sinceStart.start();
}

Progress::~Progress()
{
    if (m_sinceDrawn.isValid())
        std::fputs("\r\x1b[K", stderr);
}

void Progress::update(qlonglong done)
{
    if (m_total <= 0)
        return;
    if (m_sinceDrawn.isValid() && m_sinceDrawn.elapsed() < gRedrawMilliseconds)
        return;
    m_sinceDrawn.start();
    draw(done);
}

bool Progress::isVisible()
{
    return ::isatty(STDERR_FILENO) == 1;
}

void Progress::draw(qlonglong done)
{
    // A folder that grows meanwhile has more rows than were counted.
    const qlonglong shown = std::min(done, m_total);
    const auto filled = static_cast<size_t>(shown * gWidth / m_total);
    const std::string bar =
        std::string(filled, '#') + std::string(static_cast<size_t>(gWidth) - filled, '.');
    const qint64 elapsed = std::max<qint64>(m_sinceStart.elapsed(), 1);
    std::fprintf(stderr, "\r[%s] %3lld %%  %lld rows/s\x1b[K", bar.c_str(), shown * 100 / m_total,
                 done * 1000 / elapsed);
}
