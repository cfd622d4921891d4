#include "ProseFormat.h"

#include "EntryText.h"
#include "GapText.h"
#include "Output.h"
#include "PrintableText.h"
#include "Terminal.h"

#include <Vokit/LogCategory>

namespace {

constexpr int gIndent = 21; // behind the time
constexpr int gShortIndent = 4;
constexpr int gNarrow = 60; // a terminal that has no room for the indent

// Of SGR, which all terminals know.
constexpr const char *gDim = "2";
constexpr const char *gBold = "1";
constexpr const char *gRed = "31";
constexpr const char *gYellow = "33";

// In quotes no text of a file looks like a gap, a heading or a time that was read. Doubled inside,
// they tell where it ends.
QString quoted(QString text)
{
    const QLatin1Char quote('\'');
    return quote + text.replace(quote, QLatin1String("''")) + quote;
}

QString timeOf(const vo::VolRow &row)
{
    const QDateTime time = row.time();
    if (time.isValid())
        return dateText(time, ' ');
    const QString text = row.timeText();
    return text.isEmpty() ? QStringLiteral("(no time)") : quoted(printable(text));
}

// A class that is unknown here has no words for what was done.
QString actionOf(const vo::VolRow &row)
{
    const QString action = row.action();
    return action.isEmpty() ? QStringLiteral("[%1]").arg(printable(row.id())) : printable(action);
}

QString userOf(const vo::VolRow &row)
{
    const QString user = row.user();
    return user.isEmpty() ? QStringLiteral("-") : printable(user);
}

} // namespace

ProseFormat::ProseFormat(Output &output, Headings headings, bool hasColours)
    : m_output(output)
    , m_headings(headings)
    , m_hasColours(hasColours)
    , m_errorCategory(vo::LogCategory(vo::LogCatError).name())
{}

void ProseFormat::beginFile(const QString &name)
{
    if (m_headings == EachFile || !m_isFirstFile) {
        const QString separator = m_isEmpty ? QString() : QStringLiteral("\n");
        m_output.add((separator + QStringLiteral("==> %1 <==\n").arg(printable(name))).toUtf8());
        m_isEmpty = false;
    }
    m_isFirstFile = false;
}

void ProseFormat::entry(const vo::VolFile & /*file*/, const vo::VolRow &row)
{
    const QString time = timeOf(row);
    const QString user = userOf(row);
    const QString action = actionOf(row);
    QString description = printable(row.description());
    if (const int width = terminalWidth(); width > 0) {
        const int indent = width < gNarrow ? gShortIndent : gIndent;
        const int before = columnsOf(time) + columnsOf(user) + columnsOf(action) + 6;
        description = wrapped(description, width - before, width - indent)
                          .join(QLatin1Char('\n') + QString(indent, QLatin1Char(' ')));
    }
    const bool isError = m_hasColours && row.category() == m_errorCategory;
    const char *const plain = isError ? gRed : nullptr;
    QByteArray line;
    line.reserve(time.size() + user.size() + action.size() + description.size() + 32);
    line += coloured(time, isError ? "2;31" : gDim) + "  " + coloured(user, plain) + "  " +
            coloured(action, isError ? "1;31" : gBold);
    if (!description.isEmpty())
        line += "  " + coloured(description, plain);
    m_output.add(line + '\n');
    m_isEmpty = false;
}

void ProseFormat::gap(const vo::VolGap &gap)
{
    m_output.add(coloured(QStringLiteral("-- ") + gapText(gap), gYellow) + '\n');
    m_isEmpty = false;
}

QByteArray ProseFormat::coloured(const QString &text, const char *code) const
{
    if (!m_hasColours || !code)
        return text.toUtf8();
    return "\x1b[" + QByteArray(code) + 'm' + text.toUtf8() + "\x1b[0m";
}
