#pragma once

#include <Vokit/Vokit.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

/**
 * @file
 * The rows that the benchmarks filter, the same in every run, and the filter:
 *
 *     (camera IN (3 names) AND duration >= 30 AND size > 1000000)
 *         OR (type = 'alarm' AND NOT archived)
 *
 * About one row in nine matches.
 */

/// One row. Its texts lie in memory of their own, and so do those of its copies below, as they
/// would in rows that come from a database.
struct Recording
{
    QString camera;   ///< one of 32
    QString type;     ///< one of 8
    qulonglong start; ///< microseconds
    int duration;     ///< 0 to 119 seconds
    qlonglong size;   ///< 0 to 2,999,999 bytes
    double score;     ///< 0 to 1
    bool archived;    ///< every second one
    QString note;
};

/// The names under which the fields are filed, in the order of the struct. Written down once: the
/// rows of a set or a map, the filter and the lambdas all share these strings.
struct Columns
{
    QString camera = QStringLiteral("camera");
    QString type = QStringLiteral("type");
    QString start = QStringLiteral("start");
    QString duration = QStringLiteral("duration");
    QString size = QStringLiteral("size");
    QString score = QStringLiteral("score");
    QString archived = QStringLiteral("archived");
    QString note = QStringLiteral("note");
};

/// What the filter compares with.
struct Wanted
{
    QStringList cameras = {QStringLiteral("Camera 03"), QStringLiteral("Camera 11"),
                           QStringLiteral("Camera 27")};
    int duration = 30;
    int size = 1000000;
    QString type = QStringLiteral("alarm");
};

/// The same text in memory of its own.
QString own(const QString &text);

template <class Property, typename T>
void add(vogen::PropertySet &set, const QString &name, const T &value)
{
    set.add(boost::shared_ptr<vogen::BaseProperty>(new Property(name, QString(), value)));
}

/// The first @p count rows of the one sequence.
std::vector<Recording> recordings(int count);

QMap<QString, QVariant> toVariantMap(const Recording &recording);
vogen::PropertySet toPropertySet(const Recording &recording);

/// The properties that a client declares once, to write its filters with.
struct RecordingProperties
{
    vogen::StringProperty camera{Columns().camera};
    vogen::StringProperty type{Columns().type};
    vogen::IntProperty duration{Columns().duration};
    vogen::S64Property size{Columns().size};
    vogen::BoolProperty archived{Columns().archived};
};

/// The filter, built by operators.
vogen::ExpressionHandle buildFilter(const RecordingProperties &columns, const Wanted &wanted);

/// The number of sets for which the filter is true.
int countMatches(const std::vector<vogen::PropertySet> &sets,
                 const vogen::ExpressionHandle &filter);
