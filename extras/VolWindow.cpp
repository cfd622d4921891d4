#include "VolWindow_p.h"

#include <QIODevice>

#include <algorithm>
#include <iterator>

namespace vo {

namespace {
constexpr int gBlockSize = 64 * 1024;
} // namespace

VolWindow::VolWindow(QIODevice *device)
    : m_device(device)
{}

bool VolWindow::more()
{
    if (m_isAtEnd || isFull())
        return false;
    countTo(m_begin);
    m_bytes.remove(0, m_begin);
    m_start += m_begin;
    m_counted -= m_begin;
    m_begin = 0;
    // Twice as much each time, so that what is looked for is not looked for too often.
    const int held = m_bytes.size();
    const int wanted = std::min(std::max(held, gBlockSize), gGreatestSize - held);
    m_bytes.resize(held + wanted);
    // Some devices give little at a time: what is here is passed on at once, unless it is much.
    const int enough = held < gBlockSize ? 1 : wanted;
    int read = 0;
    while (read < enough) {
        const qint64 more = m_device->read(m_bytes.data() + held + read, wanted - read);
        if (more <= 0)
            break;
        read += static_cast<int>(more);
    }
    m_bytes.resize(held + read);
    m_isAtEnd = read == 0;
    return !m_isAtEnd;
}

void VolWindow::leave(qint64 position, Place place)
{
    m_start = position;
    m_place = place;
    m_bytes.resize(0);
    m_begin = 0;
    m_counted = 0;
    m_isAtEnd = false;
    m_device->seek(m_start);
}

VolWindow::Place VolWindow::place(int offset)
{
    countTo(m_begin);
    return behind(m_place, begin(), begin() + offset);
}

void VolWindow::countTo(int end)
{
    m_place = behind(m_place, m_bytes.constData() + m_counted, m_bytes.constData() + end);
    m_counted = end;
}

VolWindow::Place VolWindow::behind(Place place, const char *begin, const char *end)
{
    if (const auto lines = std::count(begin, end, '\n')) {
        place.line += lines;
        place.column = 1;
        const std::reverse_iterator last(end);
        begin = std::find(last, std::reverse_iterator(begin), '\n').base();
    }
    // A character of UTF-8 has one byte that doesn't continue another.
    place.column += std::count_if(begin, end, [](char c) { return (c & 0xC0) != 0x80; });
    return place;
}

} // namespace vo
