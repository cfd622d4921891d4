#pragma once

#include <QLockFile>

namespace vo {
class ActionLog;
}

/**
 * While it lives, the log is this process's alone: runs at the same time take turns, and each goes
 * on behind what the others have written.
 *
 * Begins with the log read, from which it knows the date of its last entry: that decides whether it
 * splits. Does nothing for a suspended log.
 */
class LogTurn
{
public:
    explicit LogTurn(vo::ActionLog &log);
    ~LogTurn();
    LogTurn(const LogTurn &) = delete;
    LogTurn &operator=(const LogTurn &) = delete;

private:
    vo::ActionLog &m_log;
    QLockFile m_lock;
};
