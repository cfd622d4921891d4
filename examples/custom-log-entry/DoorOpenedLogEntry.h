#pragma once

#include <Vokit/LogEntryOf>

/// A door of the building stood open: an entry class of an application.
class DoorOpenedLogEntry
    : public vo::LogEntryOf<DoorOpenedLogEntry, 0x446F6F72 /* "Door" */, vo::LogCatAccess>
{
public:
    DoorOpenedLogEntry(const QString &door, int seconds)
        : mDoor(0x4E616D65 /* "Name" */, "door", door)
        , mSeconds(0x5365636F /* "Seco" */, "seconds", seconds)
    {
        append(&mDoor);
        append(&mSeconds);
    }

    // For the log, which makes an entry before it reads the values.
    static vo::LogEntry *create() { return new DoorOpenedLogEntry(QString(), 0); }

    static constexpr const char *sAction = "Door opened";
    static constexpr const char *sDescriptionText = "'%1' stood open for %2 seconds.";

private:
    static const vo::LogEntryRegistrar sRegistrar;

    vo::TLogValue<QString> mDoor;
    vo::TLogValue<int> mSeconds;
};
