#include <Vokit/FileUtils>

#include <QFile>

namespace vo {

QDir FileUtils::userLogDir()
{
    const QString state = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    if (QDir::isAbsolutePath(state))
        return QDir(state);
    return QDir(QFile::decodeName(qgetenv("HOME")) + QLatin1String("/.local/state"));
}

} // namespace vo
