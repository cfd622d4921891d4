#include "VolCell_p.h"

#include <Vokit/TypedProperties>
#include <VokitExtras/VolRow>

#include <boost/make_shared.hpp>

#include <QLocale>

using vogen::BaseProperty;
using vogen::DateTimeProperty;
using vogen::IntProperty;
using vogen::StringProperty;

namespace vo {

namespace {

bool hasShortYears()
{
    static const bool theAnswer = [] {
        const QString format = QLocale::system().dateTimeFormat(QLocale::ShortFormat);
        return format.contains(QLatin1String("yy")) && !format.contains(QLatin1String("yyyy"));
    }();
    return theAnswer;
}

// With the century that a year of two digits lacks.
QDateTime completed(const QDateTime &date, int referenceYear)
{
    constexpr int century = 100;
    if (!hasShortYears() || !date.isValid())
        return VolRow::dateOf(date);
    int year = referenceYear - referenceYear % century + date.date().year() % century;
    if (year > referenceYear + century / 2)
        year -= century;
    else if (year < referenceYear - century / 2)
        year += century;
    return VolRow::dateOf(
        {QDate(year, date.date().month(), date.date().day()), date.time(), Qt::LocalTime});
}

QVariant::Type typeOf(const LogValue &value)
{
    if (dynamic_cast<const TLogValue<QDateTime> *>(&value))
        return QVariant::DateTime;
    return dynamic_cast<const TLogValue<int> *>(&value) ? QVariant::Int : QVariant::String;
}

boost::shared_ptr<BaseProperty> makeProperty(const QString &name, QVariant::Type type)
{
    if (type == QVariant::DateTime)
        return boost::make_shared<DateTimeProperty>(name);
    if (type == QVariant::Int)
        return boost::make_shared<IntProperty>(name);
    return boost::make_shared<StringProperty>(name);
}

} // namespace

VolCell::VolCell(LogValue &value, bool isColumn)
    : m_value(value)
    , m_type(typeOf(value))
    , m_property(makeProperty(value.name(), m_type))
    , m_isColumn(isColumn)
{}

void VolCell::read(const VolEntry &entry, int referenceYear)
{
    if (m_isRead)
        return;
    m_isRead = true;
    m_text = m_place < 0 ? QString() : entry.value(m_place);
    m_value.setValue(m_text);
    if (m_type == QVariant::DateTime) {
        const QDateTime &date = static_cast<TLogValue<QDateTime> &>(m_value).value();
        m_isNull = !date.isValid();
        DateTimeProperty::setValue(*m_property, completed(date, referenceYear));
    } else if (m_type == QVariant::Int) {
        IntProperty::setValue(*m_property, static_cast<TLogValue<int> &>(m_value).value());
    } else {
        StringProperty::setValue(*m_property, m_value.toString());
    }
}

} // namespace vo
