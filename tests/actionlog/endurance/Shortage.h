#pragma once

#include <QByteArray>
#include <QFileInfo>
#include <QString>

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

/// Ways to run out of room, with a number of bytes left. The room is back at end().
class Shortage
{
public:
    Shortage() = default;
    Shortage(const Shortage &) = delete;
    Shortage &operator=(const Shortage &) = delete;
    virtual ~Shortage() = default;

    virtual void begin(const QString &fileName, qint64 bytesLeft) = 0;
    virtual void end() = 0;
};

/// How many bytes the program's write() still takes for regular files; below 0 any number of them.
/// Defined beside that write(), in front of the C library's.
extern std::atomic<qint64> gRoom;

/// write() takes what is left in a short count, and then says ENOSPC.
class FullDevice : public Shortage
{
public:
    void begin(const QString & /*fileName*/, qint64 bytesLeft) override { gRoom = bytesLeft; }
    void end() override { gRoom = -1; }
    ~FullDevice() override { FullDevice::end(); }
};

/// The kernel's limit for the size of a file: a short count, and then EFBIG.
class FileSizeLimit : public Shortage
{
public:
    FileSizeLimit()
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
    }
    ~FileSizeLimit() override { FileSizeLimit::end(); }

    void begin(const QString &fileName, qint64 bytesLeft) override
    {
        rlimit limit = m_before;
        limit.rlim_cur = static_cast<rlim_t>(QFileInfo(fileName).size() + bytesLeft);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    void end() override { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

/// A file system in memory that another file fills up, seen by this thread alone. What is left of
/// the log's last page stays with the log.
class FullFileSystem : public Shortage
{
public:
    explicit FullFileSystem(const QString &folder)
        : m_folder(folder.toLocal8Bit())
        , m_filler(m_folder + "/filler")
    {
        m_isMounted = ::unshare(CLONE_NEWNS) == 0 &&
                      ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                      ::mount("log", m_folder.constData(), "tmpfs", 0, "size=4m") == 0;
    }
    ~FullFileSystem() override
    {
        if (m_isMounted)
            ::umount2(m_folder.constData(), MNT_DETACH);
    }

    bool isMounted() const { return m_isMounted; }

    void begin(const QString & /*fileName*/, qint64 /*bytesLeft*/) override
    {
        const int file = ::open(m_filler.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        const std::array<char, 4096> block{};
        while (::write(file, block.data(), block.size()) > 0) {
        }
        ::close(file);
    }
    void end() override { ::unlink(m_filler.constData()); }

private:
    const QByteArray m_folder;
    const QByteArray m_filler;
    bool m_isMounted = false;
};
