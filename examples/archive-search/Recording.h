#pragma once

#include <Vokit/PropertySet>

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

struct FileFacts;
struct WalkEntry;

/// One column of a recording: a property in memory, a column of the table in SQLite.
struct Column
{
    QString name;
    QString description;
    const char *sqlType;
    boost::shared_ptr<vogen::BaseProperty> (*make)(const Column &column, const FileFacts &facts);
};

/// All columns, in the order of the table.
const std::vector<Column> &recordingColumns();

QStringList columnNames();

/// Turns files into recordings: property sets that hold one property for each column.
class RecordingMaker
{
public:
    RecordingMaker();

    vogen::PropertySet make(const WalkEntry &entry);

    /// How many of the files have a path that isn't UTF-8, and so was decoded with U+FFFD.
    qlonglong notUtf8() const { return m_notUtf8; }

private:
    QString decode(const QByteArray &path);
    QString ownerName(uint user);

    qint64 m_start; ///< of the program, in milliseconds: all ages count from here
    QHash<uint, QString> m_owners;
    qlonglong m_notUtf8 = 0;
};

/// What SQLite stores for a property's value: dates become microseconds, as in printed filters.
QVariant toSqlValue(const QVariant &value);

/// A recording read back from SQLite: @p values in the order of recordingColumns().
vogen::PropertySet recordingFromSql(const std::vector<QVariant> &values);
