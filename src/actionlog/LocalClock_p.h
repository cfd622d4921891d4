#pragma once

#include <Vokit/vokit_export.h>

#include <QByteArray>
#include <QDateTime>

namespace vo {

/// The value of TZ when this was made: what was found out about local times holds as long as it.
class ZoneSetting
{
public:
    ZoneSetting();
    bool isCurrent() const;
    bool isSet() const { return !m_value.isNull(); }

private:
    QByteArray m_value;
};

/**
 * The current local time, at a third of what QDateTime::currentDateTime() costs where the
 * environment has no TZ: Qt looks at /etc/localtime three times for it, each time a call of the
 * system.
 *
 * A TZ that changes counts from the next call on, as with Qt. A changed /etc/localtime counts
 * within a second.
 */
class VOKIT_EXPORT LocalClock // for VokitExtras
{
public:
    LocalClock() = delete;

    static QDateTime now();

    /**
     * Whether no hour of a local day is skipped or comes twice. False for a day with a change of
     * the clock, for some beside one, and from 2038 on, where Qt has changes of its own.
     */
    static bool isEven(const QDate &date);

    /// The first one of two equal local times; the date itself if there is no other one.
    static QDateTime firstOf(const QDateTime &local);
};

} // namespace vo
