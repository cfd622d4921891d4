#include "PictureFile.h"

#include "Failure.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <utility>

namespace {

constexpr int BMP_HEADER_SIZE = 54;
constexpr int LARGEST_SIDE = 16384; // so that no size below leaves an int

[[noreturn]] void failToRead(const char *reason)
{
    throw Failure(QString::fromLatin1(reason));
}

template <typename Integer>
Integer numberAt(const QByteArray &bytes, int place)
{
    return qFromLittleEndian<Integer>(bytes.constData() + place);
}

void checkSides(qint64 width, qint64 height)
{
    if (width < 1 || width > LARGEST_SIDE || height < 1 || height > LARGEST_SIDE)
        failToRead("its width or height is not from 1 to 16384");
}

void swapBlueAndRed(Picture &picture)
{
    char *const pixels = picture.pixels.data();
    for (int i = 0; i + 2 < picture.pixels.size(); i += 3)
        std::swap(pixels[i], pixels[i + 2]);
}

// Each row fills a multiple of four bytes.
int bmpRowSize(int width)
{
    return (width * 3 + 3) / 4 * 4;
}

Picture fromBmp(const QByteArray &bytes)
{
    if (bytes.size() < BMP_HEADER_SIZE)
        failToRead("it ends within its header");
    if (numberAt<quint16>(bytes, 28) != 24 || numberAt<quint32>(bytes, 30) != 0)
        failToRead("only BMP files of 24 bits per pixel, not compressed, are taken");
    const qint64 offset = numberAt<quint32>(bytes, 10);
    const qint64 width = numberAt<qint32>(bytes, 18);
    const qint64 height = numberAt<qint32>(bytes, 22); // negative: the top row comes first
    checkSides(width, std::abs(height));
    const int rowSize = bmpRowSize(static_cast<int>(width));
    if (offset < BMP_HEADER_SIZE || bytes.size() - offset < rowSize * std::abs(height))
        failToRead("it ends within its pixels");

    Picture picture = newPicture(static_cast<int>(width), static_cast<int>(std::abs(height)));
    const char *source = bytes.constData() + offset;
    for (int i = 0; i < picture.height; ++i) {
        std::copy_n(source, picture.rowSize(),
                    picture.row(height < 0 ? i : picture.height - 1 - i));
        source += rowSize;
    }
    return picture;
}

// The next number of a PPM header, behind white space and comments; -1 for none.
int nextNumber(const QByteArray &bytes, int &place)
{
    const auto at = [&bytes](int i) { return i < bytes.size() ? int(uchar(bytes.at(i))) : 0; };
    while (std::isspace(at(place)) || at(place) == '#') {
        if (at(place) == '#')
            place = bytes.indexOf('\n', place) < 0 ? bytes.size() : bytes.indexOf('\n', place);
        else
            ++place;
    }
    int number = -1;
    for (; std::isdigit(at(place)) && number <= LARGEST_SIDE; ++place)
        number = std::max(number, 0) * 10 + at(place) - '0';
    return number;
}

Picture fromPpm(const QByteArray &bytes)
{
    int place = 2; // behind "P6"
    const int width = nextNumber(bytes, place);
    const int height = nextNumber(bytes, place);
    const int greatest = nextNumber(bytes, place);
    checkSides(width, height);
    if (greatest != 255)
        failToRead("only PPM files with 255 as their greatest value are taken");
    ++place; // one white space character

    const int size = width * 3 * height;
    if (bytes.size() - place < size)
        failToRead("it ends within its pixels");
    Picture picture{width, height, bytes.mid(place, size)};
    swapBlueAndRed(picture);
    return picture;
}

template <typename Integer>
void append(QByteArray &bytes, Integer number)
{
    char little[sizeof(Integer)];
    qToLittleEndian(number, little);
    bytes.append(little, sizeof little);
}

QByteArray toBmp(const Picture &picture)
{
    const int rowSize = bmpRowSize(picture.width);
    const int size = rowSize * picture.height;
    QByteArray bytes("BM");
    append<quint32>(bytes, static_cast<quint32>(BMP_HEADER_SIZE + size));
    append<quint32>(bytes, 0);
    append<quint32>(bytes, BMP_HEADER_SIZE);
    append<quint32>(bytes, 40);
    append<qint32>(bytes, picture.width);
    append<qint32>(bytes, picture.height);
    append<quint16>(bytes, 1);
    append<quint16>(bytes, 24);
    append<quint32>(bytes, 0);
    append<quint32>(bytes, static_cast<quint32>(size));
    bytes.append(16, '\0'); // resolution not told, no palette
    for (int y = picture.height - 1; y >= 0; --y) {
        bytes.append(picture.row(y), picture.rowSize());
        bytes.append(rowSize - picture.rowSize(), '\0');
    }
    return bytes;
}

QByteArray toPpm(Picture picture)
{
    swapBlueAndRed(picture);
    return "P6\n" + QByteArray::number(picture.width) + ' ' + QByteArray::number(picture.height) +
           "\n255\n" + picture.pixels;
}

Picture fromBytes(const QByteArray &bytes)
{
    if (bytes.startsWith("BM"))
        return fromBmp(bytes);
    if (bytes.startsWith("P6") && bytes.size() > 2 && std::isspace(uchar(bytes.at(2))))
        return fromPpm(bytes);
    failToRead("it is no BMP and no binary PPM file");
}

} // namespace

Picture readPicture(const QString &path)
{
    QFile file(path);
    const QString failure = QStringLiteral("cannot read picture '%1': %2");
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(failure.arg(path, file.errorString()));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        throw Failure(failure.arg(path, file.errorString()));
    try {
        return fromBytes(bytes);
    } catch (const std::runtime_error &error) {
        throw Failure(failure.arg(path, QString::fromUtf8(error.what())));
    }
}

void writePicture(const Picture &picture, const QString &path)
{
    const bool bmp = path.endsWith(QLatin1String(".bmp"), Qt::CaseInsensitive);
    if (!bmp && !path.endsWith(QLatin1String(".ppm"), Qt::CaseInsensitive))
        throw Failure(
            QStringLiteral("cannot write '%1': the name must end in .bmp or .ppm").arg(path));
    const QByteArray bytes = bmp ? toBmp(picture) : toPpm(picture);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw Failure(QStringLiteral("cannot write '%1': %2").arg(path, file.errorString()));
}
