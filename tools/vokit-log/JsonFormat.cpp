#include "JsonFormat.h"

#include "EntryText.h"
#include "JsonText.h"
#include "Output.h"

namespace {

constexpr int gKeysSize = 128; // about

void appendColumn(QByteArray &json, const char *key, const QString &text)
{
    json += key;
    appendJson(json, text);
}

} // namespace

void JsonFormat::beginFile(const QString &name)
{
    GapWarnings::beginFile(name);
    m_start.clear();
    appendColumn(m_start, "{\"file\":", name);
    m_start += ",\"position\":";
}

void JsonFormat::entry(const vo::VolFile &file, const vo::VolRow &row)
{
    QByteArray line;
    line.reserve(m_start.size() + 2 * file.entry().bytes().size() + gKeysSize);
    line += m_start + QByteArray::number(file.entry().position());
    if (const QDateTime time = row.time(); time.isValid())
        appendColumn(line, ",\"time\":", dateText(time, 'T'));
    else
        appendColumn(line, ",\"time\":null,\"timeText\":", row.timeText());
    appendColumn(line, ",\"id\":", row.id());
    appendColumn(line, ",\"category\":", row.category());
    appendColumn(line, ",\"user\":", row.user());
    appendColumn(line, ",\"action\":", row.action());
    appendColumn(line, ",\"description\":", row.description());
    line += ",\"values\":";
    appendJson(line, row.values());
    m_output.add(line + "}\n");
}
