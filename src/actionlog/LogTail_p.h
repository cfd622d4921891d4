#pragma once

#include <QtGlobal>

class QFile;

namespace vo {

/// The end of a log file that a crash or a full disk may have cut short.
class LogTail
{
public:
    LogTail() = delete;

    /**
     * The size to which the file is cut, in bytes, so that the next entry can be read again: up to
     * the last whole element if the file ends inside an "Entry" element, else all of it. What only
     * looks like an entry, within a comment say, stays, and so does any other end.
     *
     * @param file open for reading, without QIODevice::Text; left at any position
     */
    static qint64 wholeSize(QFile &file);
};

} // namespace vo
