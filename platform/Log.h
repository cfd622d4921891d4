#pragma once

#include <Vokit/Mutex>
#include <Vokit/vokit_export.h>

#include <array>
#include <atomic>
#include <iosfwd>

namespace vo {

/**
 * Where diagnostics go: a stream for each level, and the level below which nothing is written.
 *
 * At start every level writes to std::cerr and the log level is LevelWarning. Whoever writes a
 * message takes the stream, checks the level, and holds mutex() from pre() to the flush.
 *
 * Streams are not owned; one must outlive its use here. Settings may change on any thread.
 */
class VOKIT_EXPORT Log
{
public:
    enum ELevel : int { LevelDebug = 0, LevelInfo = 1, LevelWarning = 2, LevelError = 3 };

    static Log &instance();

    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;

    /// The stream of a level; null when that level is switched off.
    std::ostream *getStream(ELevel level) const;
    void setStream(ELevel level, std::ostream *stream);

    /// Messages below this level are not written.
    ELevel logLevel() const;
    void setLogLevel(ELevel level);

    Mutex &mutex() { return m_mutex; }

    /// Begins a message: local time as ISO date and time, a blank, the level's name and ": ".
    void pre(ELevel level);

private:
    Log();

    std::array<std::atomic<std::ostream *>, 4> m_streams;
    std::atomic<ELevel> m_logLevel;
    Mutex m_mutex;
};

} // namespace vo
