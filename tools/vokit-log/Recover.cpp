#include "Recover.h"

#include "Console.h"
#include "Failure.h"
#include "HeldSignals.h"
#include "InputFile.h"
#include "RecoverOptions.h"
#include "RecoverReport.h"
#include "RecoverTargets.h"
#include "Recovery.h"

#include <unistd.h>

#include <cstdio>
#include <limits>

namespace {

constexpr qint64 gLinesOnTerminal = 20;
constexpr qint64 gAll = std::numeric_limits<qint64>::max();
constexpr qint64 gGapsBetweenLooks = 1024; // for a signal that has come

void writeError(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr);
}

/// Between what is read and what becomes of it.
class Run
{
public:
    explicit Run(const RecoverOptions &options)
        : m_options(options)
        , m_listed(::isatty(options.isToStandardOutput() ? STDERR_FILENO : STDOUT_FILENO) == 1
                       ? gLinesOnTerminal
                       : gAll)
        , m_input(options.input)
        , m_targets(options, m_input)
        , m_gaps(options.report.isEmpty() ? m_listed : gAll)
        , m_recovery(
              m_input.device(), [this](const QByteArray &bytes) { writeDocument(bytes); },
              [this](const GapList::Item &item) { takeGap(item); })
    {}

    ExitCode run()
    {
        const bool isRecovered = m_recovery.run();
        m_input.checkEnd();
        if (!isRecovered) {
            warn(QStringLiteral("'%1': no whole entry found").arg(m_input.name()));
            return Damaged;
        }
        if (m_targets.hasReport()) {
            OutputBlocks json([this](const QByteArray &bytes) { m_targets.writeReport(bytes); });
            addReport(json, m_options, m_recovery, m_gaps);
            json.flush();
        }
        m_targets.commit();
        OutputBlocks summary(m_options.isToStandardOutput() ? OutputBlocks::Take(&writeError)
                                                            : OutputBlocks::Take(&writeOutput));
        addSummary(summary, m_options, m_recovery, m_gaps, m_listed);
        summary.flush();
        return Intact;
    }

private:
    void writeDocument(const QByteArray &bytes)
    {
        requireNoSignal();
        m_targets.writeDocument(bytes);
    }

    void takeGap(const GapList::Item &item)
    {
        if (m_gaps.count() % gGapsBetweenLooks == 0)
            requireNoSignal();
        m_gaps.append(item);
    }

    void requireNoSignal() const
    {
        if (m_held.isWaiting())
            throw Failure(QStringLiteral("interrupted"));
    }

    const HeldSignals m_held; ///< first: what has been begun goes before a signal does its work
    const RecoverOptions &m_options;
    const qint64 m_listed;
    InputFile m_input;
    RecoverTargets m_targets;
    GapList m_gaps;
    Recovery m_recovery;
};

} // namespace

ExitCode recover(const QStringList &arguments)
{
    const std::optional<RecoverOptions> options = parseRecoverOptions(arguments);
    return options ? Run(*options).run() : Intact;
}
