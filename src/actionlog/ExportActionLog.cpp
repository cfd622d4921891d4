#include <Vokit/ExportActionLog>

#include <Vokit/ActionLog>
#include <Vokit/ExportLogEntries>

#include <QCoreApplication>

#include <algorithm>

namespace vo {

namespace {

using Row = ExportActionLog::LogFormatData;

constexpr Row gFormats[] = {
    {ExportActionLog::FormatBitmap, QT_TRANSLATE_NOOP("ExportActionLog", "Bitmap")},
    {ExportActionLog::FormatJpeg, QT_TRANSLATE_NOOP("ExportActionLog", "JPEG")},
    {ExportActionLog::FormatClip, QT_TRANSLATE_NOOP("ExportActionLog", "Vodec clip")},
    {ExportActionLog::FormatAvi, QT_TRANSLATE_NOOP("ExportActionLog", "AVI")},
    {ExportActionLog::FormatMp4, QT_TRANSLATE_NOOP("ExportActionLog", "MP4")},
    {ExportActionLog::FormatMov, QT_TRANSLATE_NOOP("ExportActionLog", "MOV")},
    {ExportActionLog::FormatWebM, QT_TRANSLATE_NOOP("ExportActionLog", "WebM")},
    {ExportActionLog::FormatMatroska, QT_TRANSLATE_NOOP("ExportActionLog", "Matroska")},
    {ExportActionLog::FormatFileServer,
     QT_TRANSLATE_NOOP("ExportActionLog", "VORTENA file server storage")},
    {ExportActionLog::FormatPrinter, QT_TRANSLATE_NOOP("ExportActionLog", "Printer")},
    {ExportActionLog::FormatUnknown, QT_TRANSLATE_NOOP("ExportActionLog", "unknown")},
};

constexpr Row gStates[] = {
    {ExportActionLog::StateStart, QT_TRANSLATE_NOOP("ExportActionLog", "Start")},
    {ExportActionLog::StateFinished, QT_TRANSLATE_NOOP("ExportActionLog", "Finished")},
    {ExportActionLog::StateAbort, QT_TRANSLATE_NOOP("ExportActionLog", "Abort")},
    {ExportActionLog::StateError, QT_TRANSLATE_NOOP("ExportActionLog", "Error")},
    {ExportActionLog::StateNone, ""},
};

// By value; the last row stands for all that is beyond.
template <std::size_t size>
const Row &rowOf(const Row (&rows)[size], int value)
{
    return rows[std::min(static_cast<std::size_t>(value), size - 1)];
}

// Sentences by period (none, a moment, from and to) and by whether there is a target. The
// catalogues have them in the context "ExportFormats", and they are looked up in "ActionLog": so
// they are English in every language, as the logs of all clients are.
constexpr const char *gSentences[3][2] = {
    {QT_TRANSLATE_NOOP("ExportFormats", "Format='%1'; Source='%2'."),
     QT_TRANSLATE_NOOP("ExportFormats", "Format='%1'; Source='%2'; Target='%3'.")},
    {QT_TRANSLATE_NOOP("ExportFormats", "Format='%1'; Source='%2'; Timestamp='%4'.%3"),
     QT_TRANSLATE_NOOP("ExportFormats", "Format='%1'; Source='%2'; Timestamp='%4'; Target='%3'.")},
    {QT_TRANSLATE_NOOP(
         "ExportFormats",
         "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'.%3"),
     QT_TRANSLATE_NOOP(
         "ExportFormats",
         "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'; Target='%3'.")},
};
constexpr char gRenameSentence[] = QT_TRANSLATE_NOOP("ExportFormats", "'%1%2' to '%1%3'.");

QString translated(const char *sentence)
{
    return QCoreApplication::translate("ActionLog", sentence);
}

QString sentence(const QString &target, quint64 from, quint64 to)
{
    const int period = from == 0 ? 0 : to == 0 ? 1 : 2;
    return translated(gSentences[period][target.isEmpty() ? 0 : 1]);
}

// 0 is the first second of 1970, and no missing date.
QDateTime toDate(quint64 microseconds)
{
    QDateTime date;
    date.setTime_t(static_cast<uint>(microseconds / 1000000));
    return date;
}

void log(const LogEntry &entry)
{
    ActionLog::getInstance()->log(entry);
}

} // namespace

const ExportActionLog::LogFormatData &ExportActionLog::formatsData(int format)
{
    return rowOf(gFormats, format);
}

const ExportActionLog::LogFormatData &ExportActionLog::stateData(int state)
{
    return rowOf(gStates, state);
}

void ExportActionLog::send(EFormat format, const QString &source, const QString &target,
                           quint64 from, quint64 to, EState state)
{
    const QString text = sentence(target, from, to);
    const QString name = QString::fromLatin1(formatsData(format).name);
    if (state == StateStart)
        log(ExportStartLogEntry(text, name, source, target, toDate(from), toDate(to)));
    else if (state == StateFinished)
        log(ExportWrittenLogEntry(text, name, source, target, toDate(from), toDate(to)));
}

void ExportActionLog::send(const QString &text, EState state)
{
    if (state == StateFinished)
        log(ExportDoneLogEntry(text));
    else if (state == StateError)
        log(ExportErrorLogEntry(text));
    else if (state == StateAbort)
        log(ExportAbortLogEntry(text));
}

void ExportActionLog::send(QString path, QString second, QString third)
{
    log(ExportRenameLogEntry(translated(gRenameSentence), path, third, second));
}

} // namespace vo
