#include "SortKey.h"

#include "Failure.h"
#include "Recording.h"

#include <Vokit/TypeTool>
#include <Vokit/UnaryOperator>
#include <Vokit/ValueExpression>

using vogen::Expression;
using vogen::PropertySet;
using vogen::TypeTool;
using vogen::UnaryOperator;
using vogen::ValueExpression;

namespace {

constexpr long long gMicroSecondsPerSecond = 1000000;

long long secondsOf(const QVariant &date)
{
    return TypeTool::dateMicroSeconds(date) / gMicroSecondsPerSecond;
}

} // namespace

SortKey::SortKey(const QString &text)
    : m_text(text)
    , m_descending(text.startsWith(QLatin1Char('-')))
    , m_column(text.mid(m_descending ? 1 : 0))
{
    const QStringList names = columnNames();
    if (!names.contains(m_column)) {
        throw Failure(QStringLiteral("'%1' is no field to sort by: use one of %2, or one with - in "
                                     "front for the reverse order")
                          .arg(text, names.join(QLatin1String(", "))));
    }
    m_expression = ValueExpression(m_column, QLatin1String(""));
    if (m_descending)
        m_expression = UnaryOperator(UnaryOperator::Minus, m_expression);
}

QString SortKey::sql() const
{
    return m_expression->toString(Expression::PrintSql | Expression::PrintOrderBy);
}

QVariant SortKey::valueOf(const PropertySet &recording) const
{
    return m_expression->evaluate(recording, nullptr);
}

bool SortKey::isLess(const QVariant &a, const QVariant &b)
{
    return TypeTool(false, false).compare(a, b) < 0;
}

QString SortKey::rule() const
{
    switch (kind()) {
    case Kind::Exact:
        break;
    case Kind::Text:
        return QStringLiteral("Texts are ordered by UTF-16 code units in memory and by UTF-8 bytes "
                              "in SQLite: characters beyond U+FFFF may stand elsewhere");
    case Kind::Double:
        return QStringLiteral("Numbers with a fraction that differ by less than 1 are the same in "
                              "memory, and not in SQLite: their order may differ");
    case Kind::DateDescending:
        return QStringLiteral("A date that sorts in reverse counts whole seconds in memory, and "
                              "the first second of 1970 comes first; SQLite is exact");
    }
    return {};
}

bool SortKey::explains(const PropertySet &first, const PropertySet &second) const
{
    const QVariant a = first[m_column].variantValue();
    const QVariant b = second[m_column].variantValue();
    switch (kind()) {
    case Kind::Exact:
        break;
    case Kind::Text: {
        const bool aheadByUnits = a.toString() < b.toString();
        const bool aheadByBytes = a.toString().toUtf8() < b.toString().toUtf8();
        return aheadByUnits != aheadByBytes;
    }
    case Kind::Double:
        return true; // steps of less than 1 add up, so the two themselves may lie farther apart
    case Kind::DateDescending:
        return secondsOf(a) == secondsOf(b) || secondsOf(a) == 0;
    }
    return false;
}

SortKey::Kind SortKey::kind() const
{
    const PropertySet columns = recordingFromSql({});
    const QVariant::Type type = columns[m_column].variantValue().type();
    if (type == QVariant::String)
        return Kind::Text;
    if (type == QVariant::Double)
        return Kind::Double;
    return m_descending && TypeTool::isDate(type) ? Kind::DateDescending : Kind::Exact;
}
