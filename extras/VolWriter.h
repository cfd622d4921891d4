#pragma once

#include <VokitExtras/vokit_extras_export.h>

#include <QByteArray>

class QIODevice;

namespace vo {

class VolEntry;
class VolHeader;

/**
 * Writes entries to a log file of their own, a complete document that XMLLogReader reads to its
 * end. Each keeps its bytes; see VolEntry::wellFormedBytes().
 *
 * Each function says whether the device took it all.
 */
class VOKIT_EXTRAS_EXPORT VolWriter
{
public:
    /// @param device open for writing; not owned
    explicit VolWriter(QIODevice *device);

    /// The declaration, and a root with what @p header says; one of the current version and date
    /// for a null header.
    bool writeStart(const VolHeader &header);
    bool write(const VolEntry &entry);
    bool writeEnd();

private:
    bool write(const QByteArray &bytes);

    QIODevice *m_device;
};

} // namespace vo
