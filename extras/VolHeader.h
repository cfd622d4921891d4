#pragma once

#include <VokitExtras/VolElement>

#include <QDateTime>

namespace vo {

/// The root's start tag, with what the log says of itself: "Version", "LogFile", "Date",
/// "ApplicationVersion", "LanguageVersion".
class VOKIT_EXTRAS_EXPORT VolHeader : public VolElement
{
public:
    /// When the process that wrote the file began to log; invalid if the tag doesn't say.
    QDateTime date() const;
};

} // namespace vo
