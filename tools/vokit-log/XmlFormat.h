#pragma once

#include "GapWarnings.h"

class Output;

/// The entries as one complete log, each with the bytes that it has in its file.
class XmlFormat : public GapWarnings
{
public:
    explicit XmlFormat(Output &output)
        : m_output(output)
    {}

    void entry(const vo::VolFile &file, const vo::VolRow &row) override;
    void endFile(const vo::VolFile &file) override;
    void end() override;

private:
    void start(const vo::VolHeader &header);

    Output &m_output;
    bool m_isStarted = false;
};
