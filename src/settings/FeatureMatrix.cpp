#include <Vokit/FeatureMatrix>

#include "LogNotice_p.h"

#include <Vokit/IPersistDestination>

#include <algorithm>

namespace vo {

namespace {

constexpr char gGroup[] = "FeatureMatrix";
constexpr char gRows[] = "Rows";
constexpr char gColumns[] = "Columns";
constexpr char gMatrix[] = "Matrix";

constexpr int gBitsPerNumber = 32;

// Takes the numbers off a persisted text, from the front.
class Numbers
{
public:
    explicit Numbers(const QByteArray &text)
        : m_text(text)
    {}

    // False when no further "+" closes a number. What is no number reads as 0.
    bool next(quint32 &number)
    {
        const int end = m_text.indexOf('+', m_begin);
        if (end < 0)
            return false;
        number = m_text.mid(m_begin, end - m_begin).toUInt();
        m_begin = end + 1;
        return true;
    }

private:
    QByteArray m_text;
    int m_begin = 0;
};

} // namespace

FeatureMatrix::FeatureMatrix(int rows, int columns)
    : m_allowed(std::make_unique<std::unique_ptr<bool[]>[]>(rows))
    , m_modified(false)
    , m_rows(rows)
    , m_columns(columns)
{
    for (int row = 0; row < rows; ++row) {
        m_allowed[row] = std::make_unique<bool[]>(columns);
        std::fill_n(m_allowed[row].get(), columns, true);
    }
}

FeatureMatrix::~FeatureMatrix()
{
    m_allowed.reset();
    qDeleteAll(m_featureGroups);
    qDeleteAll(m_userGroups);
}

bool *FeatureMatrix::cell(int row, int column) const
{
    const bool inside = row >= 0 && row < m_rows && column >= 0 && column < m_columns;
    return inside ? &m_allowed[row][column] : nullptr;
}

bool FeatureMatrix::isAllowed(int row, int column) const
{
    const bool *const allowed = cell(row, column);
    return allowed && *allowed;
}

void FeatureMatrix::setAllowed(int row, int column, bool allowed)
{
    bool *const present = cell(row, column);
    if (!present || *present == allowed)
        return;
    *present = allowed;
    m_modified = true;
}

void FeatureMatrix::addUserGroup(UserGroup *group)
{
    m_userGroups.insert(group->id(), group);
}

void FeatureMatrix::addFeatureGroup(FeatureGroup *group)
{
    m_featureGroups.insert(group->id(), group);
}

void FeatureMatrix::addFeatureToGroup(Feature *feature, int groupId)
{
    m_featureGroups[groupId]->addFeature(feature);
}

bool FeatureMatrix::containsFeatureGroup(int groupId) const
{
    return m_featureGroups.contains(groupId);
}

bool FeatureMatrix::isFeatureAllowed(int featureId, int column) const
{
    return std::any_of(
        m_featureGroups.cbegin(), m_featureGroups.cend(), [&](const FeatureGroup *group) {
            return group->containsFeature(featureId) && isAllowed(group->id(), column);
        });
}

void FeatureMatrix::disableAbilityToChange(int row, int column)
{
    m_locked.append({row, column});
}

QByteArray FeatureMatrix::cellsAsText() const
{
    QByteArray text;
    quint32 number = 0;
    int bit = 0;
    const auto endNumber = [&] {
        text += QByteArray::number(number) + '+';
        number = 0;
        bit = 0;
    };
    for (int row = 0; row < m_featureGroups.size(); ++row) {
        for (int column = 0; column < m_userGroups.size(); ++column) {
            number |= quint32(isAllowed(row, column)) << bit;
            if (++bit == gBitsPerNumber)
                endNumber();
        }
    }
    if (bit > 0)
        endNumber();
    return text;
}

void FeatureMatrix::save(IPersistDestination *destination) const
{
    const QByteArray text = cellsAsText();
    destination->beginGroup(gGroup);
    destination->setValue(gRows, m_featureGroups.size());
    destination->setValue(gColumns, m_userGroups.size());
    destination->setValue(gMatrix, text);
    destination->endGroup();
    m_modified = false;
}

void FeatureMatrix::load(IPersistDestination *destination)
{
    destination->beginGroup(gGroup);
    const int rows = destination->value(gRows, QVariant()).toInt();
    const int columns = destination->value(gColumns, QVariant()).toInt();
    Numbers numbers(destination->value(gMatrix, QVariant()).toByteArray());
    destination->endGroup();
    if (rows != m_featureGroups.size() || columns != m_userGroups.size()) {
        logNotice(Log::LevelError,
                  QStringLiteral("Saved matrix not compatible with current matrix."));
        return;
    }

    quint32 number = 0;
    if (!numbers.next(number))
        return;
    int bit = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            setAllowed(row, column, (number >> bit) & 1u);
            if (++bit < gBitsPerNumber)
                continue;
            // Asked for even behind the last cell; if none follows, m_modified stays as it is.
            if (!numbers.next(number))
                return;
            bit = 0;
        }
    }
    m_modified = false;
}

} // namespace vo
