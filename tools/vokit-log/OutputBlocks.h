#pragma once

#include <QBuffer>
#include <QByteArray>

#include <functional>

/// Gathers output, so that it goes out in blocks.
class OutputBlocks
{
public:
    using Take = std::function<void(const QByteArray &)>;

    /// @param take where the blocks go; what it throws, add() and flush() throw
    explicit OutputBlocks(Take take);

    void add(const QByteArray &bytes);
    /// Has to come at the end: what is left is lost otherwise.
    void flush();

    /// For what writes to a device: add({}) has to follow.
    QIODevice *device() { return &m_buffer; }

private:
    Take m_take;
    QByteArray m_bytes;
    QBuffer m_buffer;
};
