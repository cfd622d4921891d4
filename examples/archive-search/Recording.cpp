#include "Recording.h"

#include "AccountName.h"
#include "FolderWalk.h"

#include <Vokit/TypeTool>
#include <Vokit/TypedProperties>

#include <boost/make_shared.hpp>

using vogen::BaseProperty;
using vogen::BoolProperty;
using vogen::DateTimeProperty;
using vogen::DoubleProperty;
using vogen::IntProperty;
using vogen::PropertySet;
using vogen::S64Property;
using vogen::StringProperty;
using vogen::TypeTool;

// The values of a recording. Texts are never null: SQLite would store NULL for them.
struct FileFacts
{
    QString path = QStringLiteral("");
    QString name = QStringLiteral("");
    QString extension = QStringLiteral("");
    qlonglong size = 0;
    QDateTime modified;
    double age = 0;
    bool hidden = false;
    int depth = 0;
    bool link = false;
    int permissions = 0;
    QString owner = QStringLiteral("");
};

namespace {

template <class Property, auto fact>
boost::shared_ptr<BaseProperty> make(const Column &column, const FileFacts &facts)
{
    return boost::make_shared<Property>(column.name, column.description, facts.*fact);
}

QString extensionOf(const QString &name)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot + 1) : QStringLiteral("");
}

bool isHidden(const QString &path)
{
    return path.startsWith(QLatin1Char('.')) || path.contains(QLatin1String("/."));
}

// Some file systems keep any 64 bits of seconds; what lies beyond the bound would overflow.
qint64 milliseconds(const timespec &time)
{
    constexpr qint64 farAway = 1000000000000;
    return qBound<qint64>(-farAway, time.tv_sec, farAway) * 1000 + time.tv_nsec / 1000000;
}

PropertySet makeRecording(const FileFacts &facts)
{
    PropertySet recording;
    for (const Column &column : recordingColumns())
        recording.add(column.make(column, facts));
    return recording;
}

} // namespace

const std::vector<Column> &recordingColumns()
{
    static const std::vector<Column> columns = {
        {QStringLiteral("path"), QStringLiteral("Path below the searched folder"), "TEXT",
         &make<StringProperty, &FileFacts::path>},
        {QStringLiteral("name"), QStringLiteral("Last part of the path"), "TEXT",
         &make<StringProperty, &FileFacts::name>},
        {QStringLiteral("extension"), QStringLiteral("What follows the name's last dot"), "TEXT",
         &make<StringProperty, &FileFacts::extension>},
        {QStringLiteral("size"), QStringLiteral("Size in bytes"), "INTEGER",
         &make<S64Property, &FileFacts::size>},
        {QStringLiteral("modified"), QStringLiteral("Last modification, UTC"), "INTEGER",
         &make<DateTimeProperty, &FileFacts::modified>},
        {QStringLiteral("age"), QStringLiteral("Days from there to the search"), "REAL",
         &make<DoubleProperty, &FileFacts::age>},
        {QStringLiteral("hidden"), QStringLiteral("A part of the path begins with a dot"),
         "INTEGER", &make<BoolProperty, &FileFacts::hidden>},
        {QStringLiteral("depth"), QStringLiteral("Folders above it, below the searched one"),
         "INTEGER", &make<IntProperty, &FileFacts::depth>},
        {QStringLiteral("link"), QStringLiteral("Is a symbolic link"), "INTEGER",
         &make<BoolProperty, &FileFacts::link>},
        {QStringLiteral("permissions"), QStringLiteral("The 12 mode bits"), "INTEGER",
         &make<IntProperty, &FileFacts::permissions>},
        {QStringLiteral("owner"), QStringLiteral("Name or number of the owner"), "TEXT",
         &make<StringProperty, &FileFacts::owner>},
    };
    return columns;
}

QStringList columnNames()
{
    QStringList names;
    for (const Column &column : recordingColumns())
        names.append(column.name);
    return names;
}

RecordingMaker::RecordingMaker()
    : m_start(QDateTime::currentMSecsSinceEpoch())
{}

PropertySet RecordingMaker::make(const WalkEntry &entry)
{
    constexpr double millisecondsPerDay = 24 * 60 * 60 * 1000;
    const qint64 modified = milliseconds(entry.status.st_mtim);
    FileFacts facts;
    facts.path = decode(entry.path);
    facts.name = facts.path.mid(facts.path.lastIndexOf(QLatin1Char('/')) + 1);
    facts.extension = extensionOf(facts.name);
    facts.size = entry.status.st_size;
    facts.modified = QDateTime::fromMSecsSinceEpoch(modified, Qt::UTC);
    facts.age = static_cast<double>(m_start - modified) / millisecondsPerDay;
    facts.hidden = isHidden(facts.path);
    facts.depth = facts.path.count(QLatin1Char('/'));
    facts.link = S_ISLNK(entry.status.st_mode);
    facts.permissions = static_cast<int>(entry.status.st_mode & 07777U);
    facts.owner = ownerName(entry.status.st_uid);
    return makeRecording(facts);
}

QString RecordingMaker::decode(const QByteArray &path)
{
    // The "/" in front keeps a name's byte order mark, which decoding drops at the very beginning.
    QString text = QString::fromUtf8('/' + path).mid(1);
    if (text.toUtf8() != path)
        ++m_notUtf8;
    return text;
}

QString RecordingMaker::ownerName(uint user)
{
    auto known = m_owners.constFind(user);
    if (known == m_owners.constEnd())
        known = m_owners.insert(user, accountName(user));
    return *known;
}

QVariant toSqlValue(const QVariant &value)
{
    if (TypeTool::isDate(value.type()))
        return QVariant(TypeTool::dateMicroSeconds(value));
    return value;
}

PropertySet recordingFromSql(const std::vector<QVariant> &values)
{
    PropertySet recording = makeRecording(FileFacts());
    for (size_t i = 0; i < values.size(); ++i) {
        BaseProperty &property = recording[recordingColumns().at(i).name];
        // Not vo::fromMicroSeconds, which cuts off the milliseconds.
        if (TypeTool::isDate(property.variantValue().type())) {
            const qint64 modified = values[i].toLongLong() / 1000;
            property.setVariantValue(QDateTime::fromMSecsSinceEpoch(modified, Qt::UTC));
        } else {
            property.setVariantValue(values[i]);
        }
    }
    return recording;
}
