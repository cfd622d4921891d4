#pragma once

#include <QDateTime>

namespace vo {

/**
 * The current local time, at a third of what QDateTime::currentDateTime() costs where the
 * environment has no TZ: Qt looks at /etc/localtime three times for it, each time a call of the
 * system.
 *
 * A TZ that changes counts from the next call on, as with Qt. A changed /etc/localtime counts
 * within a second.
 */
class LocalClock
{
public:
    LocalClock() = delete;

    static QDateTime now();
};

} // namespace vo
