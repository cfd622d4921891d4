#pragma once

#include <VokitExtras/VolFile>
#include <VokitExtras/VolRow>

#include <QString>

/// What becomes of the entries of files that the filter lets through.
class EntrySink
{
public:
    EntrySink() = default;
    virtual ~EntrySink() = default;
    EntrySink(const EntrySink &) = delete;
    EntrySink &operator=(const EntrySink &) = delete;

    virtual void beginFile(const QString &name) = 0;
    /// @param file has the entry that the row was read from
    virtual void entry(const vo::VolFile &file, const vo::VolRow &row) = 0;
    virtual void gap(const vo::VolGap &gap) = 0;
    virtual void endFile(const vo::VolFile &file) = 0;
    /// Behind the last file.
    virtual void end() {}
};
