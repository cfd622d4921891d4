#include "InputFile.h"

#include "FileName.h"

#include <sys/stat.h>
#include <unistd.h>

InputFile::InputFile(const QString &name)
    : m_name(name)
    , m_file(absoluteName(name))
{
    constexpr QIODevice::OpenMode mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    if (name.isEmpty())
        refuse(QStringLiteral("it has no name"));
    const bool isOpen = name == QLatin1String("-")
                            ? static_cast<QFile &>(m_file).open(STDIN_FILENO, mode)
                            : m_file.open(mode);
    if (!isOpen && name.contains(QChar(QChar::ReplacementCharacter)))
        refuse(QStringLiteral("there is no such file, or its name is not UTF-8"));
    if (!isOpen)
        refuse(m_file.errorString());
    if (!m_file.headerCompatible)
        refuse(QStringLiteral("it belongs to another cipher"));
    if (isTheOutput())
        refuse(QStringLiteral("the output goes there"));
}

void InputFile::checkEnd() const
{
    if (m_file.error() != QFileDevice::NoError)
        refuse(m_file.errorString());
}

QFileDevice::Permissions InputFile::permissions() const
{
    struct Right
    {
        mode_t bit;
        QFileDevice::Permission permission;
    };
    static constexpr Right rights[] = {
        {S_IRGRP, QFileDevice::ReadGroup},  {S_IWGRP, QFileDevice::WriteGroup},
        {S_IXGRP, QFileDevice::ExeGroup},   {S_IROTH, QFileDevice::ReadOther},
        {S_IWOTH, QFileDevice::WriteOther}, {S_IXOTH, QFileDevice::ExeOther},
    };
    struct stat status;
    const bool isRegular = ::fstat(m_file.handle(), &status) == 0 && S_ISREG(status.st_mode);
    QFileDevice::Permissions permissions;
    for (const Right &right : rights)
        permissions.setFlag(right.permission, !isRegular || (status.st_mode & right.bit) != 0);
    return permissions;
}

bool InputFile::isSameAs(const QString &name) const
{
    struct stat mine;
    struct stat other;
    return ::fstat(m_file.handle(), &mine) == 0 &&
           ::stat(QFile::encodeName(name).constData(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

// Then each line would be read again, for ever.
bool InputFile::isTheOutput() const
{
    struct stat mine;
    struct stat output;
    return ::fstat(m_file.handle(), &mine) == 0 && ::fstat(STDOUT_FILENO, &output) == 0 &&
           S_ISREG(mine.st_mode) && mine.st_dev == output.st_dev && mine.st_ino == output.st_ino;
}

void InputFile::refuse(const QString &reason) const
{
    throw InputFailure(QStringLiteral("cannot read '%1': %2").arg(m_name, reason));
}
