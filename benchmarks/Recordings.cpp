#include "Recordings.h"

#include <algorithm>

using namespace vogen;

namespace {

/// SplitMix64: the same numbers on every machine.
class Random
{
public:
    explicit Random(quint64 seed)
        : m_state(seed)
    {}

    quint64 next()
    {
        m_state += 0x9E3779B97F4A7C15u;
        quint64 z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    /// 0 to @p bound - 1.
    int below(int bound) { return static_cast<int>(next() % static_cast<quint64>(bound)); }

private:
    quint64 m_state;
};

Recording makeRecording(Random &random)
{
    static const char *const types[] = {"alarm", "motion", "manual", "schedule",
                                        "audio", "door",   "tamper", "lost"};
    Recording row;
    row.camera = QStringLiteral("Camera %1").arg(random.below(32), 2, 10, QLatin1Char('0'));
    row.type = QLatin1String(types[random.below(8)]);
    row.start = 1500000000000000u + random.next() % 100000000000000u;
    row.duration = random.below(120);
    row.size = random.below(3000000);
    row.score = random.below(1000001) / 1e6;
    row.archived = random.below(2) == 1;
    row.note = QStringLiteral("Recording number %1").arg(random.below(1000000));
    return row;
}

} // namespace

QString own(const QString &text)
{
    return QString(text.constData(), text.size());
}

std::vector<Recording> recordings(int count)
{
    Random random(42);
    std::vector<Recording> rows;
    rows.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        rows.push_back(makeRecording(random));
    return rows;
}

QMap<QString, QVariant> toVariantMap(const Recording &recording)
{
    const Columns columns;
    return {{columns.camera, own(recording.camera)}, {columns.type, own(recording.type)},
            {columns.start, recording.start},        {columns.duration, recording.duration},
            {columns.size, recording.size},          {columns.score, recording.score},
            {columns.archived, recording.archived},  {columns.note, own(recording.note)}};
}

PropertySet toPropertySet(const Recording &recording)
{
    const Columns columns;
    PropertySet set;
    add<StringProperty>(set, columns.camera, own(recording.camera));
    add<StringProperty>(set, columns.type, own(recording.type));
    add<U64Property>(set, columns.start, recording.start);
    add<IntProperty>(set, columns.duration, recording.duration);
    add<S64Property>(set, columns.size, recording.size);
    add<DoubleProperty>(set, columns.score, recording.score);
    add<BoolProperty>(set, columns.archived, recording.archived);
    add<StringProperty>(set, columns.note, own(recording.note));
    return set;
}

ExpressionHandle buildFilter(const RecordingProperties &columns, const Wanted &wanted)
{
    ElementOf cameraWanted(columns.camera);
    for (const QString &camera : wanted.cameras)
        cameraWanted.append(QVariant(camera));
    const ExpressionHandle archived = ValueExpression(columns.archived, QStringLiteral(""));
    return (cameraWanted && columns.duration >= wanted.duration && columns.size > wanted.size) ||
           (columns.type == wanted.type && !archived);
}

int countMatches(const std::vector<PropertySet> &sets, const ExpressionHandle &filter)
{
    const Expression &node = *filter;
    return static_cast<int>(std::count_if(sets.begin(), sets.end(), [&](const PropertySet &set) {
        return node.evaluate(set, nullptr).toBool();
    }));
}
