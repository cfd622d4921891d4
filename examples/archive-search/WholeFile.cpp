#include "WholeFile.h"

#include "Failure.h"
#include "FileName.h"

#include <QFileInfo>

WholeFile::WholeFile(const char *action, const QString &name)
    : m_action(action)
    , m_name(name)
    , m_file(absoluteName(name))
{
    // It would take the place of whatever has the name, of a device too.
    const QFileInfo there(m_file.fileName());
    if (there.exists() && !there.isFile())
        refuse(QStringLiteral("it is not a regular file"));
    if (!m_file.open(QIODevice::WriteOnly))
        refuse(m_file.errorString());
}

void WholeFile::write(const QByteArray &bytes)
{
    if (m_file.write(bytes) != bytes.size())
        refuse(m_file.errorString());
}

void WholeFile::commit()
{
    if (!m_file.commit())
        refuse(m_file.errorString());
}

void WholeFile::refuse(const QString &reason) const
{
    throw Failure(
        QStringLiteral("cannot %1 '%2': %3").arg(QLatin1String(m_action), m_name, reason));
}
