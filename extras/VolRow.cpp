#include <VokitExtras/VolRow>

#include "VolCell_p.h"
#include "actionlog/LocalClock_p.h"
#include "actionlog/Sentence_p.h"

#include <Vokit/LogEntry>
#include <Vokit/LogEntryFactory>
#include <Vokit/TypedProperties>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>

using vogen::BaseProperty;
using vogen::DateTimeProperty;
using vogen::PropertySet;
using vogen::StringProperty;

namespace vo {

namespace {

constexpr int gFirstOwnValue = 2; // behind time and user

/// What stands for a class that this process doesn't know: it has no value of its own.
class UnknownEntry : public LogEntry
{
public:
    FourChars id() const override { return {}; }
    LogCategory category() const override { return LogCatNone; }
    QString descriptionText() const override { return {}; }
    QString action() const override { return {}; }
};

std::unique_ptr<LogEntry> makeEntry(FourChars id)
{
    if (logEntryFactory()->contains(id))
        return std::unique_ptr<LogEntry>(logEntryFactory()->create(id));
    return std::make_unique<UnknownEntry>();
}

/// The columns of every row that are texts.
enum Text { Id, Category, User, Action, Description, TextCount };
constexpr const char *gTexts[] = {"id", "category", "user", "action", "description"};

/// Those of an entry's first two values.
enum Place : std::size_t { TimePlace, UserPlace };

} // namespace

/// The rows of one class of entries: each takes the place of the one before.
class VolRow::Rows
{
public:
    /// @param columns those to be filled; all if none are named
    Rows(FourChars id, const QStringList &columns);

    void read(const VolEntry &entry, int referenceYear);

    const PropertySet &set() const { return m_set; }

    // What was not asked for as a column is read when it is asked for here.

    const std::vector<Value> &values();
    const QString &text(std::size_t place) { return cell(place).text(); }
    QDateTime time()
    {
        const VolCell &time = cell(TimePlace);
        return time.isNull() ? QDateTime() : DateTimeProperty::getValue(*time.property(), {});
    }
    QString id() const { return StringProperty::getValue(*m_texts[Id], {}); }
    QString category();
    QString action();
    QString description();

private:
    bool isWanted(const QString &column) const
    {
        return m_columns.isEmpty() || m_columns.contains(column);
    }
    void setText(Text column, const QString &text)
    {
        StringProperty::setValue(*m_texts[column], text);
    }
    VolCell &cell(std::size_t place)
    {
        m_cells[place].read(m_read, m_referenceYear);
        return m_cells[place];
    }
    void place(const VolEntry &entry);
    void readAll();
    void fillSet();
    void addUnknown(const QString &name, const QString &text);
    bool isColumn(const QString &name) const;
    void setShown(const boost::shared_ptr<BaseProperty> &property, bool isShown);
    QString namesAndValues();

    const QStringList m_columns;
    const bool m_isKnown;
    std::unique_ptr<LogEntry> m_entry;
    std::vector<VolCell> m_cells;      ///< one for each value of m_entry
    std::vector<std::size_t> m_wanted; ///< those that are columns, and to be filled
    boost::shared_ptr<BaseProperty> m_texts[TextCount];
    boost::shared_ptr<BaseProperty> m_time;
    PropertySet m_set;

    VolEntry m_read; ///< the last entry read
    int m_referenceYear = 0;
    std::vector<int> m_unknown; ///< its attributes that the class doesn't have
    QStringList m_unknownColumns;
    std::vector<Value> m_values;
    bool m_hasValues = false;
};

VolRow::Rows::Rows(FourChars id, const QStringList &columns)
    : m_columns(columns)
    , m_isKnown(logEntryFactory()->contains(id))
    , m_entry(makeEntry(id))
    , m_time(boost::make_shared<DateTimeProperty>(QStringLiteral("time")))
{
    for (int i = 0; i < TextCount; ++i) {
        m_texts[i] = boost::make_shared<StringProperty>(QLatin1String(gTexts[i]));
        m_set.add(m_texts[i]);
    }
    m_set.add(m_time);
    for (LogValue *value : m_entry->values()) {
        const bool isColumn = !m_set.contains(value->name());
        m_cells.emplace_back(*value, isColumn);
        if (isColumn)
            m_set.add(m_cells.back().property());
        if (isColumn && isWanted(value->name()))
            m_wanted.push_back(m_cells.size() - 1);
    }
    setText(Id, id.toString());
}

void VolRow::Rows::read(const VolEntry &entry, int referenceYear)
{
    m_read = entry;
    m_referenceYear = referenceYear;
    m_hasValues = false;
    place(entry);
    fillSet();
}

// Finds the attribute of each value.
void VolRow::Rows::place(const VolEntry &entry)
{
    m_unknown.clear();
    for (VolCell &cell : m_cells)
        cell.setPlace(-1);
    const int idPlace = entry.indexOf(QLatin1String("ID"));
    for (int i = 0; i < entry.attributeCount(); ++i) {
        const FourChars id = entry.attributeId(i);
        const auto cell = std::find_if(m_cells.begin(), m_cells.end(),
                                       [id](const VolCell &c) { return c.id() == id; });
        if (cell != m_cells.end() && cell->place() < 0)
            cell->setPlace(i);
        else if (i != idPlace)
            m_unknown.push_back(i);
    }
}

void VolRow::Rows::fillSet()
{
    for (const QString &name : qAsConst(m_unknownColumns))
        m_set.remove(name);
    m_unknownColumns.clear();

    for (const std::size_t i : m_wanted)
        setShown(cell(i).property(), !cell(i).isNull());
    if (isWanted(m_time->name())) {
        const VolCell &time = cell(TimePlace);
        m_time->setVariantValue(time.property()->variantValue());
        setShown(m_time, !time.isNull());
    }
    if (isWanted(m_texts[User]->name()))
        setText(User, cell(UserPlace).text());
    if (isWanted(m_texts[Category]->name()))
        setText(Category, category());
    if (isWanted(m_texts[Action]->name()))
        setText(Action, action());
    if (isWanted(m_texts[Description]->name()))
        setText(Description, description());
    for (const int i : m_unknown)
        addUnknown(m_read.name(i), m_read.value(i));
}

void VolRow::Rows::addUnknown(const QString &name, const QString &text)
{
    if (!isWanted(name) || m_set.contains(name) || isColumn(name)) // which may be NULL at present
        return;
    m_set.add(boost::make_shared<StringProperty>(name, QString(), text));
    m_unknownColumns.append(name);
}

bool VolRow::Rows::isColumn(const QString &name) const
{
    return name == m_time->name() ||
           std::any_of(m_cells.begin(), m_cells.end(), [&name](const VolCell &cell) {
               return cell.isColumn() && cell.name() == name;
           });
}

void VolRow::Rows::setShown(const boost::shared_ptr<BaseProperty> &property, bool isShown)
{
    if (m_set.contains(property->name()) == isShown)
        return;
    if (isShown)
        m_set.add(property);
    else
        m_set.remove(property->name());
}

const std::vector<VolRow::Value> &VolRow::Rows::values()
{
    if (m_hasValues)
        return m_values;
    m_hasValues = true;
    m_values.clear();
    for (std::size_t i = gFirstOwnValue; i < m_cells.size(); ++i)
        m_values.push_back({m_cells[i].name(), cell(i).shown()});
    for (const int i : m_unknown)
        m_values.push_back({m_read.name(i), m_read.value(i)});
    return m_values;
}

// What a class says of itself may depend on any value.
void VolRow::Rows::readAll()
{
    for (std::size_t i = 0; i < m_cells.size(); ++i)
        cell(i);
}

QString VolRow::Rows::category()
{
    if (!m_isKnown)
        return {};
    readAll();
    return m_entry->category().name();
}

QString VolRow::Rows::action()
{
    readAll();
    return m_entry->action();
}

// A date that can't be read stands in the sentence as it does in the file.
QString VolRow::Rows::description()
{
    readAll();
    const auto own = m_cells.begin() + gFirstOwnValue;
    const bool isReadable =
        std::none_of(own, m_cells.end(), [](const VolCell &cell) { return cell.isUnreadable(); });
    if (m_isKnown && isReadable)
        return m_entry->description();
    Sentence sentence(m_entry->descriptionText());
    if (sentence.text().isEmpty())
        return namesAndValues();
    for (auto cell = own; cell != m_cells.end() && sentence.takesMore(); ++cell)
        sentence.fillIn(cell->shownText());
    return sentence.text();
}

QString VolRow::Rows::namesAndValues()
{
    QStringList pairs;
    for (const Value &value : values())
        pairs.append(value.name + QLatin1String(": ") + value.value.toString());
    return pairs.join(QLatin1Char(' '));
}

VolRow::VolRow() = default;
VolRow::~VolRow() = default;

void VolRow::setReferenceDate(const QDateTime &date)
{
    m_referenceYear = date.isValid() ? date.date().year() : QDate::currentDate().year();
}

void VolRow::setColumns(const QStringList &names)
{
    m_columns = names;
    m_known.clear();
    m_rows = nullptr;
}

void VolRow::read(const VolEntry &entry)
{
    if (m_referenceYear == 0)
        setReferenceDate({});
    const FourChars id = entry.id();
    std::unique_ptr<Rows> &rows = entry.isKnown() ? m_known[id] : m_unknown;
    // There may be any number of unknown classes.
    if (!rows || &rows == &m_unknown)
        rows = std::make_unique<Rows>(id, m_columns);
    m_rows = rows.get();
    m_rows->read(entry, m_referenceYear);
}

const PropertySet &VolRow::set() const
{
    return m_rows->set();
}

const std::vector<VolRow::Value> &VolRow::values() const
{
    return m_rows->values();
}

QString VolRow::id() const
{
    return m_rows->id();
}

QString VolRow::category() const
{
    return m_rows->category();
}

QDateTime VolRow::time() const
{
    return m_rows->time();
}

QString VolRow::timeText() const
{
    return m_rows->text(TimePlace);
}

QString VolRow::user() const
{
    return m_rows->text(UserPlace);
}

QDateTime VolRow::dateOf(const QDateTime &local)
{
    return LocalClock::firstOf(local);
}

QString VolRow::action() const
{
    return m_rows->action();
}

QString VolRow::description() const
{
    return m_rows->description();
}

} // namespace vo
