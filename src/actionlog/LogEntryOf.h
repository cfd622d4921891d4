#pragma once

#include <Vokit/LogEntry>
#include <Vokit/LogEntryFactory>

#include <QCoreApplication>

namespace vo {

/**
 * What every entry class says in the same way: its identifier, its category and its words.
 *
 * @tparam Entry the class itself, which has the words as sAction and sDescriptionText, not
 *         translated; they are looked up in the context "ActionLog"
 * @tparam Id four characters, the first one in the most significant byte
 */
template <class Entry, quint32 Id, ELogCategory Category>
class LogEntryOf : public LogEntry
{
public:
    FourChars id() const override { return Id; }
    LogCategory category() const override { return Category; }
    QString descriptionText() const override
    {
        return QCoreApplication::translate("ActionLog", Entry::sDescriptionText);
    }
    QString action() const override
    {
        return QCoreApplication::translate("ActionLog", Entry::sAction);
    }

protected:
    /// For Entry::sRegistrar.
    static LogEntryRegistrar registrar() { return {Id, &Entry::create, Entry::sAction}; }
};

} // namespace vo
