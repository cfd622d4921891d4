#pragma once

#include <Vokit/FourChars>

#include <QMap>
#include <QStringList>

namespace vo {

class LogEntry;

/**
 * Makes entries by their identifiers, as a log file names them.
 *
 * Classes register while the program loads:
 * @code
 * const vo::LogEntryRegistrar MyEntry::sRegistrar{gMyId, &MyEntry::create, MyEntry::sAction};
 * @endcode
 * There is no lock: create() from one thread at a time, as the log does under its own.
 */
class VOKIT_EXPORT LogEntryFactory
{
public:
    using Creator = LogEntry *(*)();

    LogEntryFactory();
    ~LogEntryFactory();
    LogEntryFactory(const LogEntryFactory &) = delete;
    LogEntryFactory &operator=(const LogEntryFactory &) = delete;

    /// A later registration of the same identifier takes the place of an earlier one.
    /// @param name words for the action, not translated; kept as a pointer
    void registerCreator(const FourChars &id, Creator creator, const char *name);

    bool contains(FourChars id) const { return mCreators.value(id) != nullptr; }

    /// A new entry, the caller's; null for an identifier that nobody registered.
    LogEntry *create(FourChars id);

    /// The words for all actions in the user's language, sorted by code unit.
    QStringList entryNames() const;

private:
    QMap<FourChars, Creator> mCreators;
    QMap<FourChars, const char *> mNames;
};

/// The one factory. There from its first use on, also while the program loads.
VOKIT_EXPORT LogEntryFactory *logEntryFactory();

/// Registers an entry class when it is initialised.
class VOKIT_EXPORT LogEntryRegistrar
{
public:
    LogEntryRegistrar(FourChars id, LogEntryFactory::Creator creator, const char *name);
};

} // namespace vo
