#pragma once

#include <QByteArray>
#include <QIODevice>

#include <algorithm>

namespace test {

/// Gives what it holds in small portions, as a pipe does, and can't seek.
class Pipe : public QIODevice
{
public:
    Pipe(const QByteArray &bytes, int portion)
        : m_bytes(bytes)
        , m_portion(portion)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() - m_at; }
    int reads() const { return m_reads; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        ++m_reads;
        const qint64 size = std::min<qint64>({most, m_portion, m_bytes.size() - m_at});
        std::copy_n(m_bytes.constData() + m_at, size, data);
        m_at += static_cast<int>(size);
        return size;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray m_bytes;
    const int m_portion;
    int m_at = 0;
    int m_reads = 0;
};

/// Fails behind so many bytes, reading or writing.
class BrokenDevice : public QIODevice
{
public:
    BrokenDevice(const QByteArray &bytes, int good)
        : m_bytes(bytes.left(good))
        , m_good(good)
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }
    const QByteArray &written() const { return m_written; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 at = pos();
        if (at >= m_bytes.size())
            return -1;
        const qint64 size = std::min<qint64>(most, m_bytes.size() - at);
        std::copy_n(m_bytes.constData() + at, size, data);
        return size;
    }
    qint64 writeData(const char *data, qint64 size) override
    {
        const qint64 taken = std::min<qint64>(size, m_good - m_written.size());
        m_written.append(data, static_cast<int>(taken));
        return taken > 0 ? taken : -1;
    }

private:
    const QByteArray m_bytes;
    const int m_good;
    QByteArray m_written;
};

} // namespace test
