#pragma once

#include <Vokit/Mutex>

namespace vo {

/// Holds a Mutex until the end of a scope.
class MutexLocker
{
public:
    /// @param lockNow false leaves the mutex alone until lock() is called
    MutexLocker(Mutex &mutex, bool lockNow)
        : m_mutex(mutex)
    {
        if (lockNow)
            lock();
    }
    ~MutexLocker() { unlock(); }
    MutexLocker(const MutexLocker &) = delete;
    MutexLocker &operator=(const MutexLocker &) = delete;

    /// Takes the lock, unless this object holds it.
    void lock()
    {
        if (!m_locked)
            m_mutex.lock();
        m_locked = true;
    }

    /// Gives the lock back, if this object holds it.
    void unlock()
    {
        if (m_locked)
            m_mutex.unlock();
        m_locked = false;
    }

private:
    Mutex &m_mutex;
    bool m_locked = false;
};

} // namespace vo
