#include "Console.h"
#include "Failure.h"
#include "Options.h"
#include "PictureFile.h"
#include "Stamp.h"

#include <Vokit/CTimeTranscoder>

#include <QCoreApplication>
#include <QFileInfo>
#include <QRect>

namespace {

enum ExitCode { Done = 0, Unusable = 2 };

void checkFit(const Picture &picture, const Stamp &stamp, QPoint place)
{
    const QRect frame(0, 0, picture.width, picture.height);
    const QSize size = sizeOf(stamp);
    // Compared as rooms left: a far corner could leave the range of int.
    if (frame.contains(place) && size.width() <= picture.width - place.x() &&
        size.height() <= picture.height - place.y())
        return;
    throw Failure(
        QStringLiteral("a stamp of %1 x %2 pixels at %3,%4 is not within the picture of %5 x %6")
            .arg(size.width())
            .arg(size.height())
            .arg(place.x())
            .arg(place.y())
            .arg(picture.width)
            .arg(picture.height));
}

QString outputFile(const QString &output, vo::CTimeTranscoder &time)
{
    if (!QFileInfo(output).isDir())
        return output;
    return output + QLatin1Char('/') + QString::fromStdString(time.toIdString()) +
           QLatin1String(".bmp");
}

void run(const Options &options)
{
    vo::CTimeTranscoder time(options.frameTime);
    Picture picture = options.input.isEmpty() ? testPicture() : readPicture(options.input);
    const Stamp stamp{time.toString(), options.hourglass};
    checkFit(picture, stamp, options.place);
    writeStamp(picture, stamp, options.place);
    const QString file = outputFile(options.output, time);
    writePicture(picture, file);
    writeOutput(QStringLiteral("%1: %2\n").arg(file, QString::fromStdString(stamp.text)).toUtf8());
}

} // namespace

int main(int argc, char *argv[])
{
    prepareConsole();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("frame-stamp"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    try {
        const Options options = parseOptions();
        if (options.answer.isEmpty())
            run(options);
        else
            writeOutput(options.answer.toUtf8());
        return Done;
    } catch (const Failure &failure) {
        warn(failure.message());
        return Unusable;
    }
}
