#include "Options.h"

#include "Failure.h"

#include <Vokit/TimeConversions>

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

const char gDescription[] =
    R"(Writes a time stamp into a picture.

OUTPUT is the file to write, by its name a BMP or a PPM file, or a folder that is there: the file in
it is then named after the time, as 20261121_150405_123.bmp.
TIME is a frame time, microseconds since 1970-01-01 00:00:00 UTC, or a date such as
2026-11-21T15:04:05.123: local time unless a zone follows, as in 2026-11-21T14:04:05Z.
The stamp shows local time; TZ=UTC before the command makes that UTC.

Exit codes:
  0  done
  2  wrong use, or a picture that can't be read or written)";

unsigned long long parseTime(const QString &text)
{
    bool ok = false;
    const unsigned long long frameTime = text.toULongLong(&ok);
    if (ok)
        return frameTime;
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    const qint64 milliSeconds = date.isValid() ? date.toMSecsSinceEpoch() : -1;
    if (milliSeconds < 0)
        throw Failure(QStringLiteral("'%1' is no time from 1970 on; --help tells more").arg(text));
    return static_cast<unsigned long long>(milliSeconds) * 1000;
}

QPoint parsePlace(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool xOk = false;
    bool yOk = false;
    const QPoint place(parts.first().toInt(&xOk), parts.last().toInt(&yOk));
    if (parts.size() != 2 || !xOk || !yOk)
        throw Failure(QStringLiteral("'%1' is no place; write it as 16,16").arg(text));
    return place;
}

QString answerTo(const QCommandLineParser &parser)
{
    if (parser.isSet("help"))
        return parser.helpText();
    if (parser.isSet("version")) {
        return QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                             QCoreApplication::applicationVersion());
    }
    return {};
}

} // namespace

Options parseOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(gDescription));
    parser.addPositionalArgument("OUTPUT", "The file or the folder to write to.");
    parser.addOptions({
        {"input",
         "The picture to write into: BMP of 24 bits, or binary PPM. Without it, a test picture.",
         "FILE"},
        {"time", "The time to write; now if not given.", "TIME"},
        {"at", "The upper left corner of the stamp, in pixels; 16,16 if not given.", "X,Y"},
        {"hourglass", "Put an hourglass behind the time, as for a picture that is late."},
        {{"h", "help"}, "Print this help."},
        {{"v", "version"}, "Print the version."},
    });
    if (!parser.parse(QCoreApplication::arguments()))
        throw Failure(parser.errorText());

    Options options;
    options.answer = answerTo(parser);
    if (!options.answer.isEmpty())
        return options;
    const QStringList outputs = parser.positionalArguments();
    if (outputs.size() != 1) {
        throw Failure(QStringLiteral("one output is needed, %1 are given; --help tells more")
                          .arg(outputs.size()));
    }
    options.output = outputs.first();
    if (parser.isSet("input") && parser.value("input").isEmpty())
        throw Failure(QStringLiteral("--input needs the name of a file"));
    options.input = parser.value("input");
    options.frameTime =
        parser.isSet("time") ? parseTime(parser.value("time")) : vo::currentFrameTime();
    if (parser.isSet("at"))
        options.place = parsePlace(parser.value("at"));
    options.hourglass = parser.isSet("hourglass");
    return options;
}
