#pragma once

#include <QSaveFile>
#include <QString>

/**
 * A file that is written whole or stays as it was.
 *
 * All functions throw Failure, which says "cannot", the action, the file, and the reason.
 */
class WholeFile
{
public:
    /// @param action what is done to the file, such as "save filter"
    WholeFile(const char *action, const QString &name);

    /// Lets group and others do no more than @p most says, on a file system that has such rights.
    void limitPermissions(QFileDevice::Permissions most);

    void write(const QByteArray &bytes);
    /// Then commit() needs no more room.
    void flush();
    /// Without it nothing has happened.
    void commit();

private:
    [[noreturn]] void refuse(const QString &reason) const;

    const char *m_action;
    QString m_name;
    QSaveFile m_file;
};
