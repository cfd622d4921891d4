#pragma once

#include <Vokit/Log>
#include <Vokit/MutexLocker>

#include <QString>

#include <ostream>

namespace vo {

/// Writes one line to the client's log, if the level is on: as one piece, whatever other threads
/// write, and leaving the stream's format as it was.
inline void logNotice(Log::ELevel level, const QString &text)
{
    Log &log = Log::instance();
    std::ostream *const stream = log.getStream(level);
    if (!stream || log.logLevel() > level)
        return;
    const MutexLocker locker(log.mutex(), true);
    const std::ios_base::fmtflags flags = stream->flags();
    log.pre(level);
    *stream << text.toUtf8().constData() << '\n';
    stream->flush();
    stream->flags(flags);
}

} // namespace vo
