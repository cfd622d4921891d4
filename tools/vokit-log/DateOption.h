#pragma once

#include <QDateTime>
#include <QString>

/// What a date of an option stands for: from begin on, and before end. Local.
struct DateSpan
{
    QDateTime begin;
    QDateTime end; ///< the next day for a whole day, the next second for a time
};

/// @param text 2026-11-21, 2026-11-21T15:04, 2026-11-21T15:04:05, "today" or "yesterday"
/// @throws UsageFailure for anything else
DateSpan parseDate(const QString &text);
