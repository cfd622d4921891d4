#pragma once

#include <VokitExtras/VolEntry>

#include <Vokit/PropertySet>

#include <QDateTime>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>
#include <vector>

namespace vo {

/**
 * An entry as a row that expressions can filter.
 *
 *     id           text   four characters
 *     category     text   its name; empty for an unknown class
 *     time         date   local; when it was logged
 *     user         text
 *     action       text   a few words; empty for an unknown class
 *     description  text   the sentence; for an unknown class the names and values
 *
 * and each value by its name, as the class calls it, "Time" and "User" included, and with its type:
 * a text, a number (int) or a date. A name of the above means the above. What the class doesn't
 * know, and all of an unknown class, goes by its identifier, as texts. A text or a number that the
 * file doesn't have is empty or 0. A date that it doesn't have, or that this locale doesn't read,
 * is not in the set, and so is NULL in an expression.
 *
 * Nothing of the file is left out: where XMLLogReader stops at a value that the class doesn't know,
 * a row goes on.
 *
 * @code
 * VolRow row;
 * row.setReferenceDate(log.header().date());
 * row.read(log.entry());
 * filter->evaluate(row.set(), nullptr).toBool();
 * @endcode
 */
class VOKIT_EXTRAS_EXPORT VolRow
{
public:
    struct Value
    {
        QString name;
        QVariant value; ///< the text in the place of a date that can't be read
    };

    VolRow();
    ~VolRow();
    VolRow(const VolRow &) = delete;
    VolRow &operator=(const VolRow &) = delete;

    /// The date that stands for a local time in all rows: the first one where the clock shows it
    /// twice. What is compared with a row's dates has to be one of these.
    static QDateTime dateOf(const QDateTime &local);

    /// Many locales' short dates have two digits for the year. Such a year is the one nearest to
    /// the file's, which is that of this date; of today if none is given.
    void setReferenceDate(const QDateTime &date);

    /**
     * The columns that set() has to have, where a filter is known to ask for no other one: the rest
     * then costs nothing. All if none are named. What the functions below give is the same.
     *
     * In set() a column that wasn't named may be there, with a value of no meaning.
     */
    void setColumns(const QStringList &names);

    void read(const VolEntry &entry);

    // Of the last entry read; there must have been one.

    /// Valid until the next read(), and so are its properties.
    const vogen::PropertySet &set() const;
    /// All values but time and user: those of the class in its order, then what it doesn't know.
    const std::vector<Value> &values() const;

    QString id() const;
    QString category() const;
    /// Invalid if it can't be read.
    QDateTime time() const;
    /// As it stands in the file.
    QString timeText() const;
    QString user() const;
    QString action() const;
    QString description() const;

private:
    class Rows;

    std::map<FourChars, std::unique_ptr<Rows>> m_known;
    std::unique_ptr<Rows> m_unknown;
    Rows *m_rows = nullptr; ///< of the class of the last entry
    QStringList m_columns;
    int m_referenceYear = 0;
};

} // namespace vo
