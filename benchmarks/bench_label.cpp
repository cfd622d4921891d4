#include "Report.h"

#include <Vokit/CText2Image>
#include <Vokit/CTimeTranscoder>

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

namespace {

// A day in March 2026; one frame follows the other after 40 ms.
constexpr unsigned long long gFirstFrame = 1772700000123456;
constexpr unsigned long long gFrameDistance = 40000;

struct Label
{
    int fields[8];
    std::string display;
    std::string id;

    bool operator==(const Label &other) const
    {
        return std::equal(std::begin(fields), std::end(fields), other.fields) &&
               display == other.display && id == other.id;
    }
};

// The texts are copied out as a caller has to; the fields are read.
Label labelOf(vo::CTimeTranscoder transcoder)
{
    return {{transcoder.microsecond(), transcoder.millisecond(), transcoder.second(),
             transcoder.minute(), transcoder.hour(), transcoder.day(), transcoder.month(),
             transcoder.year()},
            transcoder.toString(),
            transcoder.toIdString()};
}

Label byStrftime(unsigned long long time)
{
    const auto seconds = static_cast<std::time_t>(time / 1000000);
    const int milliSecond = static_cast<int>(time / 1000 % 1000);
    std::tm local;
    ::localtime_r(&seconds, &local);
    char display[40];
    const size_t displaySize = std::strftime(display, 32, "%d.%m.%Y-%H:%M:%S", &local);
    std::snprintf(display + displaySize, 5, ".%03d", milliSecond);
    char id[40];
    const size_t idSize = std::strftime(id, 32, "%Y%m%d_%H%M%S", &local);
    std::snprintf(id + idSize, 5, "_%03d", milliSecond);
    return {{static_cast<int>(time % 1000), milliSecond, local.tm_sec, local.tm_min, local.tm_hour,
             local.tm_mday, local.tm_mon + 1, local.tm_year + 1900},
            std::string(display, displaySize + 4),
            std::string(id, idSize + 4)};
}

// The two texts alone: the least that Qt has to format.
std::pair<std::string, std::string> byQt(unsigned long long time)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(time / 1000));
    return {local.toString(QStringLiteral("dd.MM.yyyy-hh:mm:ss.zzz")).toStdString(),
            local.toString(QStringLiteral("yyyyMMdd_hhmmss_zzz")).toStdString()};
}

/// Registers label/CONTESTANT/ZONE. Without a zone the process has no TZ, and /etc/localtime
/// counts.
template <typename Make>
void registerLabel(const std::string &contestant, const char *zone, Make make)
{
    const std::string title = "label/" + contestant + (zone ? "/TZ" : "/noTZ");
    benchmark::RegisterBenchmark(title.c_str(), [zone, make](benchmark::State &state) {
        if (zone)
            qputenv("TZ", zone);
        else
            qunsetenv("TZ");
        ::tzset();
        unsigned long long time = gFirstFrame;
        for (auto _ : state) {
            auto made = make(time);
            benchmark::DoNotOptimize(made);
            time += gFrameDistance;
        }
        reportTimePerItem(state, 1);
    });
}

// The glyphs of a label: 23 cells, one behind the other, in the order of the characters.
const std::string gText = "05.03.2026-09:40:00.123";
constexpr size_t gCellSize = 960;
constexpr size_t gRowSize = 48;
constexpr size_t gStripRowSize = 16 * gRowSize;

std::string stripOfGlyphs()
{
    QFile bitmap(QStringLiteral(":/Text2Image/digits.bmp"));
    require(bitmap.open(QIODevice::ReadOnly), "glyphs: no bitmap");
    return bitmap.readAll().mid(54).toStdString();
}

size_t cellOf(char character)
{
    switch (character) {
    case ' ':
        return 13;
    case '-':
        return 12;
    case ':':
        return 10;
    case '.':
        return 11;
    default:
        return static_cast<size_t>(character - '0');
    }
}

void copyGlyphsByLibrary(char *cells)
{
    static const vo::CText2Image glyphs;
    for (const char character : gText) {
        glyphs.digit2Image(reinterpret_cast<unsigned char *>(cells), character);
        cells += gCellSize;
    }
}

// The limit: the same moves, with every size known to the compiler and no call.
void copyGlyphsInline(char *cells)
{
    static const std::string strip = stripOfGlyphs();
    for (const char character : gText) {
        const char *row = strip.data() + cellOf(character) * gRowSize;
        for (int i = 0; i < 20; ++i) {
            std::memcpy(cells, row, gRowSize);
            cells += gRowSize;
            row += gStripRowSize;
        }
    }
}

// As many bytes in one piece.
void copyAtOnce(char *cells)
{
    static const std::string ready = [] {
        std::string made(gText.size() * gCellSize, '\0');
        copyGlyphsInline(made.data());
        return made;
    }();
    std::memcpy(cells, ready.data(), ready.size());
}

void registerGlyphs()
{
    using Copy = void (*)(char *);
    const std::pair<const char *, Copy> contestants[] = {{"glyphs/library", copyGlyphsByLibrary},
                                                         {"glyphs/inline", copyGlyphsInline},
                                                         {"glyphs/memcpy", copyAtOnce}};
    std::string expected(gText.size() * gCellSize, '\0');
    copyGlyphsInline(expected.data());
    for (const auto &[name, copy] : contestants) {
        std::string made(expected.size(), '\1');
        copy(made.data());
        require(made == expected, "glyphs: contestants copy different bytes");
        benchmark::RegisterBenchmark(name,
                                     [copy = copy, cells = made](benchmark::State &state) mutable {
                                         for (auto _ : state) {
                                             copy(cells.data());
                                             benchmark::ClobberMemory();
                                         }
                                         reportTimePerItem(state, 1);
                                     });
    }
}

} // namespace

int main(int argc, char **argv)
{
    const auto byLibrary = [](unsigned long long time) { return vo::CTimeTranscoder(time); };
    qputenv("TZ", "Europe/Berlin");
    const Label expected = byStrftime(gFirstFrame);
    require(labelOf(byLibrary(gFirstFrame)) == expected, "label: the library's is another");
    require(byQt(gFirstFrame) == std::pair(expected.display, expected.id),
            "label: Qt's is another");
    for (const char *zone : {"Europe/Berlin", static_cast<const char *>(nullptr)}) {
        registerLabel("library", zone, byLibrary);
        registerLabel("strftime", zone, byStrftime);
        registerLabel("qt_two_texts", zone, byQt);
    }
    registerGlyphs();
    return runBenchmarks(argc, argv);
}
