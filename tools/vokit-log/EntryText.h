#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

/// "2026-11-21 15:04:05", in digits of every locale; a "T" between makes it ISO 8601.
QString dateText(const QDateTime &date, char between);

/// A value as a text: a date as ISO 8601 has it.
QString valueText(const QVariant &value);
