#pragma once

#include "Failure.h"

#include <Vokit/FileEncrypt>

#include <QString>

/// A file that can't be read. The others of the command line may be.
class InputFailure : public Failure
{
public:
    using Failure::Failure;
};

/// A log file to read, as the client reads it. It is never written to.
class InputFile
{
public:
    /**
     * @param name "-" for the standard input
     * @throws InputFailure if it can't be opened, or is a directory
     */
    explicit InputFile(const QString &name);

    /// What VolFile reads from.
    QIODevice *device() { return &m_file; }
    int descriptor() const { return m_file.handle(); }
    /// As the user gave it.
    const QString &name() const { return m_name; }

    /// To be called at the end: to VolFile, what can't be read is the end of the file.
    /// @throws InputFailure if something could not be read
    void checkEnd() const;

    /// What group and others may do with it: all, if it is no regular file.
    QFileDevice::Permissions permissions() const;

    /// Whether that name leads to this very file, by a link or otherwise.
    bool isSameAs(const QString &name) const;

private:
    bool isTheOutput() const;
    [[noreturn]] void refuse(const QString &reason) const;

    QString m_name;
    vo::FileEncrypt m_file;
};
