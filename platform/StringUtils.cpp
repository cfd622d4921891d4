#include <Vokit/StringUtils>

namespace vo {

QString StringUtils::join(const QStringList &list, const QString &separator)
{
    return list.isEmpty() ? QString() : list.join(separator);
}

} // namespace vo
