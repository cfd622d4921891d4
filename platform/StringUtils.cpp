#include <Vokit/StringUtils>

namespace vo {

QString StringUtils::join(const QStringList &list, const QString &separator)
{
    if (list.isEmpty())
        return QString();
    QString text = list.first(); // where QStringList::join() would make null of one empty item
    for (int i = 1; i < list.size(); ++i)
        text += separator + list.at(i);
    return text;
}

} // namespace vo
