#include "EntryReader.h"

#include "Console.h"
#include "EntrySink.h"
#include "InputFile.h"
#include "Interruption.h"
#include "LogState.h"
#include "Output.h"

#include <algorithm>
#include <memory>

using vo::VolFile;

ExitCode EntryReader::readFiles(const QStringList &names)
{
    ExitCode worst = Intact;
    for (const QString &name : names) {
        if (isDone())
            break;
        worst = std::max(worst, readFile(name));
    }
    finish();
    return worst;
}

ExitCode EntryReader::readFile(const QString &name)
{
    std::unique_ptr<InputFile> input;
    try {
        input = std::make_unique<InputFile>(name);
    } catch (const InputFailure &failure) {
        warn(failure.message());
        return Unusable;
    }
    VolFile file(input->device());
    begin(name);
    read(file);
    const ExitCode code = end(file);
    try {
        input->checkEnd();
    } catch (const InputFailure &failure) {
        warn(failure.message());
        return Unusable;
    }
    return code;
}

void EntryReader::begin(const QString &name)
{
    m_header = -1;
    m_row.setReferenceDate({});
    m_sink.beginFile(name);
}

void EntryReader::read(VolFile &file)
{
    while (!isDone()) {
        switch (file.readNext()) {
        case VolFile::Entry:
            readEntry(file);
            break;
        case VolFile::Gap:
            m_sink.gap(file.gap());
            break;
        case VolFile::End:
            return;
        }
    }
}

void EntryReader::readEntry(const VolFile &file)
{
    const vo::VolHeader &header = file.header();
    if (!header.isNull() && header.position() != m_header) {
        m_header = header.position();
        m_row.setReferenceDate(header.date());
    }
    m_row.read(file.entry());
    if (m_filter.matches(m_row))
        m_sink.entry(file, m_row);
}

ExitCode EntryReader::end(const VolFile &file)
{
    m_sink.endFile(file);
    return exitCodeOf(stateOf(file));
}

void EntryReader::finish()
{
    m_sink.end();
    m_filter.warnOfUnreadTimes();
}

bool EntryReader::isDone() const
{
    return !m_output.isWanted() || Interruption::hasHappened();
}
