#include "PrintableText.h"

#include <QVector>

QString printable(const QString &text)
{
    QString result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        result += QChar::isPrint(character)
                      ? QString::fromUcs4(&character, 1)
                      : QStringLiteral("\\x%1").arg(character, 2, 16, QLatin1Char('0'));
    }
    return result;
}
