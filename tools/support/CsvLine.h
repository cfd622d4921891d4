#pragma once

#include <QByteArray>
#include <QStringList>

/// A line of a CSV file as RFC 4180 has it, in UTF-8, with its line end.
QByteArray csvLine(const QStringList &fields);
