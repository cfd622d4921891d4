#pragma once

#include "EntrySink.h"

class Output;

/// A line for each entry and each gap. On a terminal what is long goes on in the next line, behind
/// blanks.
class ProseFormat : public EntrySink
{
public:
    enum Headings {
        EachFile,
        ButTheFirst ///< where one file follows another
    };

    ProseFormat(Output &output, Headings headings, bool hasColours);

    void beginFile(const QString &name) override;
    void entry(const vo::VolFile &file, const vo::VolRow &row) override;
    void gap(const vo::VolGap &gap) override;
    void endFile(const vo::VolFile & /*file*/) override {}

private:
    QByteArray coloured(const QString &text, const char *code) const;

    Output &m_output;
    Headings m_headings;
    bool m_hasColours;
    bool m_isFirstFile = true;
    bool m_isEmpty = true;
    QString m_errorCategory;
};
