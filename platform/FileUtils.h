#pragma once

#include <Vokit/vokit_export.h>

#include <QDir>

namespace vo {

class VOKIT_EXPORT FileUtils
{
public:
    FileUtils() = delete;

    /// Where the user's log files lie: $XDG_STATE_HOME when that is an absolute path, else
    /// $HOME/.local/state. The folder need not exist.
    static QDir userLogDir();
};

} // namespace vo
