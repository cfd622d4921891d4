#pragma once

#include <Vokit/vokit_export.h>

#include <QString>
#include <QStringList>

namespace vo {

class VOKIT_EXPORT StringUtils
{
public:
    StringUtils() = delete;

    /// The items with the separator between them. An empty list gives a null string.
    static QString join(const QStringList &list, const QString &separator);
};

} // namespace vo
