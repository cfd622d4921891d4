#include <Vokit/FourChars>

#include <QByteArray>
#include <QTextStream>
#include <QtEndian>

namespace vo {

namespace {
constexpr int gLength = 4;
}

FourChars::FourChars(const QString &text)
    : FourChars(QStringRef(&text))
{}

FourChars::FourChars(const QStringRef &text)
{
    for (int i = 0; i < gLength; ++i) {
        const ushort unit = i < text.size() ? text.at(i).unicode() : ushort(' ');
        mValue = mValue << 8 | (unit < 0x100 ? unit : '?'); // as QString::toLatin1() has it
    }
}

FourChars::FourChars(const QString *text)
{
    if (text)
        *this = FourChars(*text);
}

void FourChars::initFourChars(QByteArray &bytes)
{
    if (bytes.size() < gLength)
        bytes = bytes.leftJustified(gLength, ' ');
    mValue = qFromBigEndian<quint32>(bytes.constData());
}

QString FourChars::toString() const
{
    char bytes[gLength];
    qToBigEndian(mValue, bytes);
    return QString::fromLatin1(bytes, gLength);
}

void FourChars::writeTo(QTextStream &stream) const
{
    stream << toString();
}

} // namespace vo
