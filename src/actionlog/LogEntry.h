#pragma once

#include <Vokit/LogCategory>
#include <Vokit/LogValue>

#include <QList>

namespace vo {

class ILogWriter;

/**
 * One action of a user: when, who, and what else the class has to say, as values in order.
 *
 * The values are members of the entry; the list leads to them. So entries can't be copied but by
 * clone(). One object belongs to one thread at a time.
 *
 * A class of the application's own needs a four-character identifier, a registration, and nothing
 * else for the log to write, read and show it; examples/custom-log-entry has one.
 */
class VOKIT_EXPORT LogEntry
{
public:
    virtual ~LogEntry();
    LogEntry(const LogEntry &) = delete;
    LogEntry &operator=(const LogEntry &) = delete;

    /// What the class is registered under, and stands in log files.
    virtual FourChars id() const = 0;
    virtual LogCategory category() const = 0;
    /// A sentence with %1, %2 ... for the values behind the user; translated. May be empty.
    virtual QString descriptionText() const = 0;
    /// A few words; translated.
    virtual QString action() const = 0;
    /// The sentence filled in: each value fills the lowest placeholder that is left, those that
    /// came in with a value before included. Without a sentence, the names and values.
    /// Placeholders in values may multiply each other: the value that would so make it longer than
    /// all of them once and a million characters is not filled in, nor is what follows.
    virtual QString description() const;

    QDateTime time() const { return mTime.value(); }
    QString user() const { return mUser.value(); }
    /// The log stamps an entry that it takes by const reference.
    void setTime(const QDateTime &time) const { mTime.setValue(time); }
    void setUser(const QString &user) const { mUser.setValue(user); }

    /// Time, user, then those of the class.
    const QList<LogValue *> &values() const { return mValues; }
    /// The first value of that identifier, or null.
    LogValue *logValue(FourChars id);

    void writeTo(ILogWriter &writer) const;

    /**
     * A new entry of the same class and values, the caller's; null for a class that isn't
     * registered with logEntryFactory().
     */
    LogEntry *clone() const;
    /// Takes the other's values, place by place, where the types are the same.
    void copyFrom(const LogEntry &other);

    /// Whether time, class, category and user are the same; the other values don't count.
    bool operator==(const LogEntry &other) const;
    bool operator!=(const LogEntry &other) const { return !(*this == other); }

protected:
    /// The time is now, the user empty.
    LogEntry();

    /// Adds a member as the next value.
    void append(LogValue *value);

private:
    QList<LogValue *> mValues;
    mutable TLogValue<QDateTime> mTime;
    mutable TLogValue<QString> mUser;
};

} // namespace vo
