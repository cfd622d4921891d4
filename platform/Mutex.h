#pragma once

#include <mutex>

namespace vo {

/// A recursive lock: a stream that is written under it may log in turn.
class Mutex
{
public:
    Mutex() = default;
    Mutex(const Mutex &) = delete;
    Mutex &operator=(const Mutex &) = delete;

    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }
    bool tryLock() { return m_mutex.try_lock(); }

private:
    std::recursive_mutex m_mutex;
};

} // namespace vo
