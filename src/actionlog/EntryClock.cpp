#include "actionlog/EntryClock_p.h"

#include "IsExactly_p.h"
#include "actionlog/LocalClock_p.h"

#include <Vokit/LogEntry>

#include <utility>

namespace vo {

namespace {

thread_local bool gWithheld = false;
thread_local EntryClock::Creator gMayMark = nullptr;
thread_local bool gMarking = false;

// A moment that neither a clock nor the text of a date gives.
const QDateTime &mark()
{
    static const QDateTime date(QDate(-4000, 1, 1), QTime(1, 2, 3, 456), Qt::UTC);
    return date;
}

bool isMark(const QDateTime &date)
{
    return date.timeSpec() == Qt::UTC && date == mark();
}

} // namespace

EntryClock::Call::Call(Creator creator)
    : m_before(gMayMark)
{
    gMayMark = std::exchange(gWithheld, false) ? creator : nullptr;
}

EntryClock::Call::~Call()
{
    gMayMark = m_before;
}

EntryClock::Marking::Marking(Creator self)
{
    gMarking = gMayMark == self;
}

EntryClock::Marking::~Marking()
{
    gMarking = false;
}

EntryClock::Withheld::Withheld()
    : m_before(gWithheld)
{
    gWithheld = true;
}

EntryClock::Withheld::~Withheld()
{
    gWithheld = m_before;
}

void EntryClock::Withheld::supply(LogEntry &entry) const
{
    QDateTime now;
    for (LogValue *value : entry.values()) {
        if (!vogen::isExactly<TLogValue<QDateTime>>(*value))
            continue;
        auto *const date = static_cast<TLogValue<QDateTime> *>(value);
        if (!isMark(date->value()))
            continue;
        if (now.isNull())
            now = LocalClock::now();
        date->setValue(now);
    }
}

QDateTime EntryClock::now()
{
    return gMarking ? mark() : LocalClock::now();
}

} // namespace vo
