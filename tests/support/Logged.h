#pragma once

#include <Vokit/Log>

#include <QRegularExpression>
#include <QString>

#include <array>
#include <iostream>
#include <sstream>

namespace test {

/// What the call writes to the client's log, level by level, without the time before each line.
template <typename Call>
QString logged(Call call, vo::Log::ELevel logLevel = vo::Log::LevelWarning)
{
    vo::Log &log = vo::Log::instance();
    std::array<std::ostringstream, 4> streams;
    for (std::size_t level = 0; level < streams.size(); ++level) {
        streams.at(level) << std::hex;
        log.setStream(static_cast<vo::Log::ELevel>(level), &streams.at(level));
    }
    log.setLogLevel(logLevel);
    call();
    log.setLogLevel(vo::Log::LevelWarning);
    QString text;
    for (std::size_t level = 0; level < streams.size(); ++level) {
        log.setStream(static_cast<vo::Log::ELevel>(level), &std::cerr);
        if (!(streams.at(level).flags() & std::ios_base::hex))
            return "the stream's format has changed";
        text += QString::fromStdString(streams.at(level).str());
    }
    static const QRegularExpression time("^[-0-9]{10}T[:0-9]{8} ",
                                         QRegularExpression::MultilineOption);
    return text.remove(time);
}

} // namespace test
