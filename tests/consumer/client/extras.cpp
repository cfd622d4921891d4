#include <Vokit/Vokit.h>
#include <VokitExtras/VokitExtras.h>

#include <QBuffer>

#include <cstdio>

int main()
{
    // The second library adds nothing to what the first one knows.
    bool isWell = vo::logEntryFactory()->entryNames().size() == 8 &&
                  vogen::FunctionExpression::functionMap().size() == 21;
    QBuffer bytes;
    bytes.setData("<Entries><Entry ID=\"ExpD\" User=\"ann\"/><Ent<Entry ID=\"Door\" gate=\"4\"/>");
    bytes.open(QIODevice::ReadOnly);
    vo::VolFile log(&bytes);
    vo::VolRow row;
    const auto filter = vogen::StringProperty("user") == "ann";
    isWell = isWell && log.readNext() == vo::VolFile::Entry && log.entry().toLogEntry();
    row.read(log.entry());
    isWell = isWell && vogen::ExpressionHandle(filter)->evaluate(row.set(), nullptr).toBool();
    isWell = isWell && log.readNext() == vo::VolFile::Gap &&
             log.gap().kind == vo::VolGap::ForeignBytes && log.readNext() == vo::VolFile::Entry &&
             !log.entry().toLogEntry() && log.readNext() == vo::VolFile::End &&
             log.condition() == vo::VolFile::Damaged;
    if (isWell)
        std::puts("all is well");
    return isWell ? 0 : 1;
}
