#pragma once

#include "EntryFilter.h"
#include "Verb.h"

#include <VokitExtras/VolFile>
#include <VokitExtras/VolRow>

class EntrySink;
class Output;

/// Brings the entries of files that match a filter to where they go, and the gaps.
class EntryReader
{
public:
    EntryReader(EntryFilter &filter, EntrySink &sink, const Output &output)
        : m_filter(filter)
        , m_sink(sink)
        , m_output(output)
    {
        m_row.setColumns(filter.columns());
    }

    /// Reads whole files, one after the other. What can't be read is a warning.
    ExitCode readFiles(const QStringList &names);

    // The steps of the above, for a file that grows.

    void begin(const QString &name);
    /// To the end of what is there.
    void read(vo::VolFile &file);
    /// How the file is.
    ExitCode end(const vo::VolFile &file);
    /// Behind the last file.
    void finish();

    /// Whether nobody reads the output any more, or the program was interrupted.
    bool isDone() const;

private:
    ExitCode readFile(const QString &name);
    void readEntry(const vo::VolFile &file);

    EntryFilter &m_filter;
    EntrySink &m_sink;
    const Output &m_output;
    vo::VolRow m_row;
    qint64 m_header = -1; ///< position of the one that the row refers to
};
