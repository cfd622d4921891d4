#pragma once

#include "GapWarnings.h"

class Output;

/// One JSON object a line.
class JsonFormat : public GapWarnings
{
public:
    explicit JsonFormat(Output &output)
        : m_output(output)
    {}

    void beginFile(const QString &name) override;
    void entry(const vo::VolFile &file, const vo::VolRow &row) override;

private:
    Output &m_output;
    QByteArray m_start; ///< of the lines of a file, up to the position
};
