#include "GapText.h"

#include <VokitExtras/VolGap>

QString counted(qint64 number, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(number).arg(QLatin1String(number == 1 ? one : many));
}

QString gapText(const vo::VolGap &gap)
{
    return QStringLiteral("%1: %2 from byte %3 on (line %4, column %5)")
        .arg(QLatin1String(gap.kindName()), counted(gap.length, "byte", "bytes"))
        .arg(gap.position)
        .arg(gap.line)
        .arg(gap.column);
}

// By hand: a file may have millions of them.
QByteArray gapJson(const vo::VolGap &gap, const QByteArray &more)
{
    return QByteArray(R"({"kind":")") + gap.kindName() + R"(","position":)" +
           QByteArray::number(gap.position) + R"(,"length":)" + QByteArray::number(gap.length) +
           R"(,"line":)" + QByteArray::number(gap.line) + R"(,"column":)" +
           QByteArray::number(gap.column) + more + '}';
}
