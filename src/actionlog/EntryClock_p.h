#pragma once

#include <QDateTime>

namespace vo {

class LogEntry;

/**
 * The clock that new entries are dated by.
 *
 * Reading it is most of what a new entry costs, and an entry that is made to be filled, from a file
 * or from another entry, needs no date of its own. For such a one the clock is withheld: an entry
 * of this library gets a mark in place of a date, and whatever still holds the mark when the entry
 * is filled gets the time of one reading.
 *
 * It is withheld from one creator alone, the one that the factory calls for the entry to be filled.
 * The classes of applications find their clock as it is, and so does everything that their creators
 * and values make or copy while they are called: nobody ever sees a mark.
 */
class EntryClock
{
public:
    EntryClock() = delete;

    using Creator = LogEntry *(*)();

    /// For the factory: the next creator that it calls is the one that the clock is withheld from,
    /// if it is withheld at all.
    class Call
    {
    public:
        explicit Call(Creator creator);
        ~Call();
        Call(const Call &) = delete;
        Call &operator=(const Call &) = delete;

    private:
        const Creator m_before;
    };

    /// For the creators of this library: the entry made in its scope gets marks, if it is that
    /// creator.
    class Marking
    {
    public:
        explicit Marking(Creator self);
        ~Marking();
        Marking(const Marking &) = delete;
        Marking &operator=(const Marking &) = delete;
    };

    /// For those who fill entries: withholds the clock of this thread, for one call of the factory.
    class Withheld
    {
    public:
        Withheld();
        ~Withheld();
        Withheld(const Withheld &) = delete;
        Withheld &operator=(const Withheld &) = delete;

        /// Dates what still holds the mark.
        void supply(LogEntry &entry) const;

    private:
        const bool m_before;
    };

    /// The current local time, or the mark.
    static QDateTime now();
};

} // namespace vo
