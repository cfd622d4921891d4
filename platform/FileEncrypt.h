#pragma once

#include <Vokit/vokit_export.h>

#include <QFile>

namespace vo {

/// The file that holds a log. This one stores plain bytes; a client may put a cipher in its place.
class VOKIT_EXPORT FileEncrypt : public QFile
{
public:
    FileEncrypt();
    explicit FileEncrypt(const QString &name);
    ~FileEncrypt() override;

    /// False when the file's header belongs to another cipher; always true here.
    bool headerCompatible = true;
};

} // namespace vo
