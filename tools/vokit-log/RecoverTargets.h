#pragma once

#include "RecoverOptions.h"
#include "WholeFile.h"

#include <memory>

class InputFile;

/// The files that a recovery makes: both appear whole, or none does.
class RecoverTargets
{
public:
    /// @throws Failure if one can't be made, is there already, or is the input
    RecoverTargets(const RecoverOptions &options, const InputFile &input);

    void writeDocument(const QByteArray &bytes);
    bool hasReport() const { return m_report != nullptr; }
    void writeReport(const QByteArray &bytes) { m_report->write(bytes); }

    /// Without it nothing has happened.
    void commit();

private:
    std::unique_ptr<WholeFile> m_document; ///< null for the standard output
    std::unique_ptr<WholeFile> m_report;   ///< null for none
};
