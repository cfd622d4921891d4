#pragma once

#include <QByteArray>

class QIODevice;

namespace vo {

/// The bytes of a device that are being read: a window that moves on, and knows where it stands.
class VolWindow
{
public:
    struct Place
    {
        qint64 line;
        qint64 column;
    };

    explicit VolWindow(QIODevice *device);

    const char *begin() const { return m_bytes.constData() + m_begin; }
    const char *end() const { return m_bytes.constData() + m_bytes.size(); }
    int size() const { return m_bytes.size() - m_begin; }

    /// Reads more behind end(), and so moves the bytes. False at the end of the device, and where
    /// the window has its greatest size.
    bool more();
    bool isFull() const { return size() >= gGreatestSize; }
    /// The device may have grown: else its end, once found, is the end.
    void forgetEnd() { m_isAtEnd = false; }
    /// Moves begin() on.
    void consume(int size) { m_begin += size; }
    /// Forgets what is behind begin(), to read it anew.
    void leave() { leave(position(), place(0)); }
    /// The same from a place further ahead in the file, where the window was before.
    void leave(qint64 position, Place place);

    /// That of begin().
    qint64 position() const { return m_start + m_begin; }
    /// That of begin() + @p offset.
    Place place(int offset);

    static constexpr int gGreatestSize = 16 * 1024 * 1024;

private:
    void countTo(int end);
    static Place behind(Place place, const char *begin, const char *end);

    QIODevice *const m_device;
    QByteArray m_bytes;
    qint64 m_start = 0; ///< position of the first byte held
    int m_begin = 0;
    int m_counted = 0; ///< up to here, lines and columns are counted
    Place m_place = {1, 1};
    bool m_isAtEnd = false;
};

} // namespace vo
