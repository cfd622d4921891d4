#include "Terminal.h"

#include <QVector>

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr int gUsualWidth = 80; // of a terminal that doesn't tell

struct Range
{
    uint first;
    uint last;
};
// Two columns each, by the Unicode property East_Asian_Width: the large blocks of Wide.
constexpr Range gWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

bool isWide(uint character)
{
    return std::any_of(std::begin(gWide), std::end(gWide), [character](const Range &range) {
        return character >= range.first && character <= range.last;
    });
}

int columnsOf(uint character)
{
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing)
        return 0;
    return isWide(character) ? 2 : 1;
}

} // namespace

int terminalWidth()
{
    if (::isatty(STDOUT_FILENO) != 1)
        return 0;
    winsize size = {};
    const bool isTold = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isTold ? size.ws_col : gUsualWidth;
}

bool wantsColours(const QString &choice)
{
    if (choice != QLatin1String("auto"))
        return choice == QLatin1String("always");
    return ::isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
           qgetenv("TERM") != "dumb";
}

int columnsOf(const QString &text)
{
    int columns = 0;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters)
        columns += columnsOf(character);
    return columns;
}

QStringList wrapped(const QString &text, int firstWidth, int width)
{
    const QVector<uint> characters = text.toUcs4();
    const auto part = [&](int from, int to) {
        return QString::fromUcs4(characters.constData() + from, to - from);
    };
    QStringList lines;
    int start = 0;
    int blank = -1; // the last one of the line
    int columns = 0;
    int room = firstWidth;
    for (int i = 0; i < characters.size(); ++i) {
        const bool isBlank = characters.at(i) == ' ';
        const int more = columnsOf(characters.at(i));
        if (isBlank)
            blank = i;
        if (columns + more <= room || isBlank || (i == start && room == width)) {
            columns += more;
            continue;
        }
        // A word that the whole next line has room for goes there, even from an empty line.
        const bool isBroken = blank < start && room == width;
        const int end = blank >= start ? blank : isBroken ? i : start;
        int textEnd = end;
        while (textEnd > start && characters.at(textEnd - 1) == ' ')
            --textEnd;
        lines.append(part(start, textEnd));
        start = blank >= start ? blank + 1 : end;
        blank = -1;
        room = width;
        columns = 0;
        i = start - 1; // counted anew
    }
    lines.append(part(start, characters.size()));
    return lines;
}
