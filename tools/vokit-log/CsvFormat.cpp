#include "CsvFormat.h"

#include "CsvLine.h"
#include "EntryText.h"
#include "JsonText.h"
#include "Output.h"

#include <cstring>

namespace {

bool mayBeFormula(const QString &field)
{
    const char first = field.isEmpty() ? '\0' : field.at(0).toLatin1();
    return first != '\0' && std::strchr("=+-@\t\r", first);
}

} // namespace

QByteArray safeCsvLine(QStringList fields)
{
    for (QString &field : fields) {
        if (mayBeFormula(field))
            field.prepend(QLatin1Char('\''));
    }
    return csvLine(fields);
}

CsvFormat::CsvFormat(Output &output)
    : m_output(output)
{
    m_output.add("file,time,id,category,user,action,description,values\r\n");
}

void CsvFormat::entry(const vo::VolFile & /*file*/, const vo::VolRow &row)
{
    const QDateTime time = row.time();
    QByteArray values;
    appendJson(values, row.values());
    m_output.add(safeCsvLine({fileName(), time.isValid() ? dateText(time, ' ') : row.timeText(),
                              row.id(), row.category(), row.user(), row.action(), row.description(),
                              QString::fromUtf8(values)}));
}
