#include "RecoverReport.h"

#include "GapList.h"
#include "GapText.h"
#include "JsonText.h"
#include "PrintableText.h"
#include "RecoverOptions.h"
#include "Recovery.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray headerJson(const vo::VolHeader &header)
{
    QJsonObject attributes;
    for (int i = 0; i < header.attributeCount(); ++i)
        attributes.insert(header.name(i), header.value(i));
    return QJsonDocument(attributes).toJson(QJsonDocument::Compact);
}

} // namespace

void addSummary(OutputBlocks &text, const RecoverOptions &options, const Recovery &recovery,
                GapList &gaps, qint64 listed)
{
    const QString where = options.isToStandardOutput() ? QStringLiteral("the standard output")
                                                       : printable(options.output);
    const QString skipped = recovery.skippedCount() == 0
                                ? QStringLiteral("skipped nothing")
                                : QStringLiteral("skipped %1, %2")
                                      .arg(counted(recovery.skippedCount(), "gap", "gaps"),
                                           counted(recovery.skippedBytes(), "byte", "bytes"));
    text.add(QStringLiteral("recovered %1 to %2\n%3\n")
                 .arg(counted(recovery.entryCount(), "entry", "entries"), where, skipped)
                 .toUtf8());
    gaps.forEach(listed, [&](const GapList::Item &item) {
        text.add("  " + gapText(item.gap).toUtf8() +
                 (item.isEntryKept ? ": a name that XML does not allow, in an entry that was kept; "
                                     "its value stands under another name, at the end of the "
                                     "entry\n"
                                   : "\n"));
    });
    if (gaps.count() > listed) {
        text.add(QStringLiteral("and %1 more; --report FILE lists all\n")
                     .arg(gaps.count() - listed)
                     .toUtf8());
    }
}

void addReport(OutputBlocks &json, const RecoverOptions &options, const Recovery &recovery,
               GapList &gaps)
{
    json.add(R"({"input":)" + jsonString(options.input) + R"(,"output":)" +
             jsonString(options.output) + R"(,"entries":)" +
             QByteArray::number(recovery.entryCount()) + R"(,"bytesRead":)" +
             QByteArray::number(recovery.bytesRead()) + R"(,"condition":")" +
             stateName(recovery.state()) + R"(","header":)" + headerJson(recovery.header()) +
             R"(,"gaps":[)");
    QByteArray before;
    gaps.forEach(gaps.count(), [&](const GapList::Item &item) {
        json.add(before + gapJson(item.gap, item.isEntryKept ? R"(,"entryKept":true)"
                                                             : R"(,"entryKept":false)"));
        before = ",";
    });
    json.add(R"(],"skippedBytes":)" + QByteArray::number(recovery.skippedBytes()) + "}\n");
}
