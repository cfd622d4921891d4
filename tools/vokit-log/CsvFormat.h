#pragma once

#include "GapWarnings.h"

#include <QStringList>

class Output;

/// A line of CSV in which no field is a formula to a spreadsheet: "'" stands in front of what could
/// be one.
QByteArray safeCsvLine(QStringList fields);

/// A line of CSV for each entry, below a header.
class CsvFormat : public GapWarnings
{
public:
    explicit CsvFormat(Output &output);

    void entry(const vo::VolFile &file, const vo::VolRow &row) override;

private:
    Output &m_output;
};
