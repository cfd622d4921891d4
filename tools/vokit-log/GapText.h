#pragma once

#include <QByteArray>
#include <QString>

namespace vo {
struct VolGap;
}

/// "1 entry", "12 entries".
QString counted(qint64 number, const char *one, const char *many);

/// "torn entry: 34 bytes from byte 1234 on (line 1, column 1200)"
QString gapText(const vo::VolGap &gap);

/// A JSON object of kind, position, length, line and column.
/// @param more further members, each with "," in front
QByteArray gapJson(const vo::VolGap &gap, const QByteArray &more = {});
