#include "PrintableText.h"

#include <QVector>

#include <algorithm>

namespace {

bool isPlain(QChar c)
{
    return c >= QLatin1Char(' ') && c <= QLatin1Char('~');
}

// Some readers take the separators for the end of a line.
bool isShown(uint character)
{
    return QChar::isPrint(character) && character != QChar::LineSeparator &&
           character != QChar::ParagraphSeparator;
}

} // namespace

QString printable(const QString &text)
{
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        result += isShown(character)
                      ? QString::fromUcs4(&character, 1)
                      : QStringLiteral("\\x%1").arg(character, 2, 16, QLatin1Char('0'));
    }
    return result;
}
