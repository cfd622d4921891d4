#include <Vokit/Log>

#include <QDateTime>

#include <iostream>

namespace vo {

namespace {
constexpr std::array<const char *, 4> gLevelNames = {"Debug", "Info", "Warning", "Error"};
}

Log &Log::instance()
{
    static Log log;
    return log;
}

Log::Log()
    : m_logLevel(LevelWarning)
{
    for (auto &stream : m_streams)
        stream = &std::cerr;
}

std::ostream *Log::getStream(ELevel level) const
{
    return m_streams.at(level);
}

void Log::setStream(ELevel level, std::ostream *stream)
{
    m_streams.at(level) = stream;
}

Log::ELevel Log::logLevel() const
{
    return m_logLevel;
}

void Log::setLogLevel(ELevel level)
{
    m_logLevel = level;
}

void Log::pre(ELevel level)
{
    if (std::ostream *const stream = getStream(level)) {
        const QByteArray now = QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1();
        *stream << now.constData() << ' ' << gLevelNames.at(level) << ": ";
    }
}

} // namespace vo
