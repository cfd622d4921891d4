#include <VokitExtras/VolHeader>

namespace vo {

QDateTime VolHeader::date() const
{
    const int index = indexOf(QLatin1String("Date"));
    return index < 0 ? QDateTime() : QDateTime::fromString(value(index), Qt::ISODate);
}

} // namespace vo
