#pragma once

#include <Vokit/vokit_export.h>

#include <QString>

namespace vo {

/**
 * The trail that exports leave in the log of the process.
 *
 * From any thread, once ActionLog::getInstance() has been called. Nothing reports a failure, and
 * nothing is logged while the log is suspended.
 */
class VOKIT_EXPORT ExportActionLog
{
public:
    ExportActionLog() = delete;

    enum EFormat : int {
        FormatBitmap = 0,
        FormatJpeg = 1,
        FormatClip = 2,
        FormatAvi = 3,
        FormatMp4 = 4,
        FormatMov = 5,
        FormatWebM = 6,
        FormatMatroska = 7,
        FormatFileServer = 8,
        FormatPrinter = 9,
        FormatUnknown = 10
    };

    enum EState : int {
        StateStart = 0,
        StateFinished = 1,
        StateAbort = 2,
        StateError = 3,
        StateNone = 4
    };

    /// A format or a state with its name, not translated.
    struct LogFormatData
    {
        int value;
        const char *name;
    };

    /// The row of an EFormat; that of FormatUnknown for a greater value. Not below 0.
    static const LogFormatData &formatsData(int format);
    /// The row of an EState; that of StateNone for a greater value. Not below 0.
    static const LogFormatData &stateData(int state);

    /**
     * The writing of one file begins, with StateStart, or is over, with StateFinished; another
     * state logs nothing.
     *
     * @param from,to microseconds since 1970, in UTC; 0 for none
     */
    static void send(EFormat format, const QString &source, const QString &target, quint64 from,
                     quint64 to, EState state);

    /// How an export ended: StateFinished, StateError or StateAbort; another state logs nothing.
    static void send(const QString &text, EState state);

    /// A result got a new name: from @p path and @p third to @p path and @p second.
    static void send(QString path, QString second, QString third);
};

} // namespace vo
