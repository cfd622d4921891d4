#pragma once

#include <VokitExtras/VolRow>

#include <QByteArray>
#include <QString>

#include <vector>

/// Appends a text as a JSON string, in one line for every reader: what some take for the end of a
/// line is escaped, as control characters are.
void appendJson(QByteArray &json, const QString &text);
QByteArray jsonString(const QString &text);

/// Appends values as a JSON object, in their order. A second one of the same name becomes
/// "name (2)": many readers keep one of a name only.
void appendJson(QByteArray &json, const std::vector<vo::VolRow::Value> &values);
