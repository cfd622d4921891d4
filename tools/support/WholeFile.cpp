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

void WholeFile::limitPermissions(QFileDevice::Permissions most)
{
    constexpr auto ofOwner = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                             QFileDevice::ReadUser | QFileDevice::WriteUser;
    m_file.setPermissions(m_file.permissions() & (most | ofOwner));
}

void WholeFile::write(const QByteArray &bytes)
{
    // Where there is room for a part, it is the rest that tells why.
    for (qint64 written = 0; written < bytes.size();) {
        const qint64 more = m_file.write(bytes.constData() + written, bytes.size() - written);
        if (more <= 0)
            refuse(m_file.errorString());
        written += more;
    }
}

void WholeFile::flush()
{
    if (!m_file.flush() && !m_file.flush())
        refuse(m_file.errorString());
}

// What QSaveFile fails to write while it closes is lost to it, and it would commit the rest.
void WholeFile::commit()
{
    flush();
    if (!m_file.commit())
        refuse(m_file.errorString());
}

void WholeFile::refuse(const QString &reason) const
{
    throw Failure(
        QStringLiteral("cannot %1 '%2': %3").arg(QLatin1String(m_action), m_name, reason));
}
