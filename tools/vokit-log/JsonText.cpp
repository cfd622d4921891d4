#include "JsonText.h"

#include "EntryText.h"

#include <QSet>

#include <algorithm>

namespace {

bool isPlain(QChar c)
{
    const ushort unit = c.unicode();
    return unit >= 0x20 && unit < 0x7F && unit != '"' && unit != '\\';
}

// Control characters, the line and paragraph separators, and what JSON itself uses.
QString escaped(QChar c)
{
    const ushort unit = c.unicode();
    switch (unit) {
    case '"':
        return QStringLiteral("\\\"");
    case '\\':
        return QStringLiteral("\\\\");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    if (!isControl && unit != QChar::LineSeparator && unit != QChar::ParagraphSeparator)
        return c;
    return QString::asprintf("\\u%04x", uint(unit));
}

void appendJson(QByteArray &json, const QVariant &value)
{
    if (value.type() == QVariant::Int)
        json += QByteArray::number(value.toInt());
    else
        appendJson(json, valueText(value));
}

QString unusedName(const QString &name, const QSet<QString> &used)
{
    QString result = name;
    for (int i = 2; used.contains(result); ++i)
        result = QStringLiteral("%1 (%2)").arg(name).arg(i);
    return result;
}

} // namespace

void appendJson(QByteArray &json, const QString &text)
{
    json += '"';
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        const int size = json.size();
        json.resize(size + text.size());
        std::transform(text.begin(), text.end(), json.begin() + size,
                       [](QChar c) { return c.toLatin1(); });
    } else {
        QString result;
        for (const QChar c : text)
            result += escaped(c);
        json += result.toUtf8();
    }
    json += '"';
}

QByteArray jsonString(const QString &text)
{
    QByteArray json;
    appendJson(json, text);
    return json;
}

void appendJson(QByteArray &json, const std::vector<vo::VolRow::Value> &values)
{
    json += '{';
    QSet<QString> used;
    for (const vo::VolRow::Value &value : values) {
        const QString name = unusedName(value.name, used);
        if (!used.isEmpty())
            json += ',';
        used.insert(name);
        appendJson(json, name);
        json += ':';
        appendJson(json, value.value);
    }
    json += '}';
}
