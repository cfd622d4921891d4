#pragma once

#include <VokitExtras/vokit_extras_export.h>

#include <QtGlobal>

namespace vo {

/// Bytes of a log file that are part of no whole entry, and that the log never wrote there.
struct VOKIT_EXTRAS_EXPORT VolGap
{
    enum Kind {
        TornEntry,         ///< an entry whose text breaks off, or is no entry's any more
        UnfinishedRootTag, ///< the root's start tag without its end; of length 0 where there is
                           ///< none
        IllegalCharacter,  ///< what XML doesn't allow, in text that is whole otherwise
        ForeignBytes,      ///< anything else
        TruncatedEnd       ///< the file ends in the middle of what the log writes
    };

    /// "torn entry" and the like.
    const char *kindName() const;
    /// Behind the last byte.
    qint64 end() const { return position + length; }

    Kind kind = ForeignBytes;
    qint64 position = 0; ///< of the first byte, counted from the start of the file
    qint64 length = 0;   ///< in bytes
    qint64 line = 1;     ///< of the first byte, as the column; both count from 1
    qint64 column = 1;   ///< in characters
};

} // namespace vo
