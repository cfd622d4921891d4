#include "LogTurn.h"

#include <Vokit/ActionLog>

namespace {
constexpr int gPatienceMilliseconds = 30000;
} // namespace

LogTurn::LogTurn(vo::ActionLog &log)
    : m_log(log)
    , m_lock(vo::ActionLog::defaultFileInfo().absolutePath() + QLatin1String("/lock"))
{
    if (m_log.isSuspended())
        return;
    m_lock.tryLock(gPatienceMilliseconds); // an entry without a turn is better than none
    m_log.removeAllLogEntries();
    try {
        m_log.readLog();
    } catch (const vo::ActionLogException &) {
        // The next entry meets the same file, and the log then does what is to be done about it.
        m_log.removeAllLogEntries();
        m_log.close();
    }
}

LogTurn::~LogTurn()
{
    m_log.close();
}
