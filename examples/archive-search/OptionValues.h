#pragma once

#include "Options.h"

#include <QDateTime>
#include <QString>

/**
 * @file
 * The values of options, from text. Each throws Failure, with what would have been right, for a
 * text that it doesn't understand as a whole.
 */

/// Bytes: "4096", "10K", "1.5M", "2G", "1T", in steps of 1024. A fraction of a byte is cut off.
qlonglong parseSize(const QString &text);

/// "2026-03-05", "2026-03-05T10:00", "2026-03-05T10:00:30Z", "...+02:00". Without a zone the time
/// is local; the result is always in UTC.
QDateTime parseDate(const QString &text);

/// Days, with or without a fraction, 0 or more.
double parseDays(const QString &text);

/// A regular expression, if both sides understand it: QRegExp in memory, QRegularExpression where
/// SQLite asks for it.
QString parseRegexp(const QString &text);

/// "none", "daily", "weekly", "monthly", or a size from 1 byte to 2G.
SplitChoice parseSplit(const QString &text);

/// The name of a user, not empty.
QString parseUser(const QString &text);

/// A whole number, 0 or more.
int parseCount(const QString &text);
