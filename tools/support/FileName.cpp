#include "FileName.h"

#include <QDir>

QString absoluteName(const QString &file)
{
    return file.startsWith(QLatin1Char('/')) ? file : QDir::currentPath() + QLatin1Char('/') + file;
}
