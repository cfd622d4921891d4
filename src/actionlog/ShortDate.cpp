#include "actionlog/ShortDate_p.h"

#include "actionlog/LocalClock_p.h"
#include "actionlog/ShortDateFormat_p.h"

#include <QLocale>

#include <array>

namespace vo {

namespace {

constexpr uint gCacheSize = 256;

const ShortDateFormat &format()
{
    static const ShortDateFormat theFormat(QLocale::system());
    return theFormat;
}

// Making a local date is most of what reading one costs, and the entries of a log share their
// seconds.
QDateTime readAnew(const QString &text)
{
    if (const auto date = format().read(text))
        return *date;
    return QLocale::system().toDateTime(text, QLocale::ShortFormat);
}

} // namespace

QString ShortDate::toText(const QDateTime &date)
{
    if (const auto text = format().print(date))
        return *text;
    return QLocale::system().toString(date, QLocale::ShortFormat);
}

QDateTime ShortDate::fromText(const QString &text)
{
    struct Recent
    {
        struct Pair
        {
            QString text;
            QDateTime date;
        };
        std::array<Pair, gCacheSize> pairs;
        ZoneSetting zone;
    };
    thread_local Recent recent;

    if (!recent.zone.isCurrent())
        recent = Recent();
    Recent::Pair &pair = recent.pairs.at(qHash(text) % gCacheSize);
    if (pair.text != text || text.isEmpty())
        pair = {text, readAnew(text)};
    return pair.date;
}

} // namespace vo
