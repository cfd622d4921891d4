#pragma once

#include <QDateTime>
#include <QString>

namespace vo {

/// Dates in the short format of the system's locale, as log files hold them.
class ShortDate
{
public:
    ShortDate() = delete;

    static QString toText(const QDateTime &date);
    /// An invalid date for a text in any other format.
    static QDateTime fromText(const QString &text);
};

} // namespace vo
