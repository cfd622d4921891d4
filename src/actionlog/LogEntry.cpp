#include <Vokit/LogEntry>

#include "actionlog/EntryClock_p.h"
#include "actionlog/Sentence_p.h"

#include <Vokit/LogEntryFactory>
#include <Vokit/ProsaLogWriter>

#include <QTextStream>

#include <algorithm>

namespace vo {

namespace {

constexpr int gFirstOwnValue = 2; // behind time and user
constexpr int gUsualValueCount = 8;

} // namespace

LogEntry::LogEntry()
    : mTime(0x54696D65, QStringLiteral("Time"), EntryClock::now())
    , mUser(0x55736572, QStringLiteral("User"), QString())
{
    mValues.reserve(gUsualValueCount);
    append(&mTime);
    append(&mUser);
}

LogEntry::~LogEntry() = default;

QString LogEntry::description() const
{
    QString text = descriptionText();
    if (!text.isEmpty()) {
        Sentence sentence(text);
        for (int i = gFirstOwnValue; i < mValues.size() && sentence.takesMore(); ++i)
            sentence.fillIn(mValues.at(i)->toString());
        return sentence.text();
    }
    QTextStream stream(&text, QIODevice::ReadWrite);
    ProsaLogWriter writer(stream, ' ');
    for (int i = gFirstOwnValue; i < mValues.size(); ++i)
        writer.writeAttribute(*mValues.at(i));
    stream.flush();
    return text;
}

LogValue *LogEntry::logValue(FourChars id)
{
    for (LogValue *value : qAsConst(mValues)) {
        if (value->id() == id)
            return value;
    }
    return nullptr;
}

void LogEntry::writeTo(ILogWriter &writer) const
{
    writer.writeStartElement(*this);
    for (const LogValue *value : mValues)
        writer.writeAttribute(*value);
    writer.writeEndElement(*this);
}

LogEntry *LogEntry::clone() const
{
    const EntryClock::Withheld dates;
    LogEntry *const copy = logEntryFactory()->create(id());
    if (copy) {
        copy->copyFrom(*this);
        dates.supply(*copy);
    }
    return copy;
}

void LogEntry::copyFrom(const LogEntry &other)
{
    const int count = std::min(mValues.size(), other.mValues.size());
    for (int i = 0; i < count; ++i)
        mValues.at(i)->copyFrom(*other.mValues.at(i));
}

bool LogEntry::operator==(const LogEntry &other) const
{
    return mTime.value() == other.mTime.value() && id() == other.id() &&
           category() == other.category() && mUser.value() == other.mUser.value();
}

void LogEntry::append(LogValue *value)
{
    mValues.append(value);
}

} // namespace vo
