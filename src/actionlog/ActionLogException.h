#pragma once

#include <Vokit/vokit_export.h>

#include <QString>

#include <exception>
#include <string>

namespace vo {

/**
 * Why a log file can't be used. ActionLog::readLog() and activate() throw these; log() never does
 * and tells by signals.
 */
class VOKIT_EXPORT ActionLogException : public std::exception
{
public:
    explicit ActionLogException(const QString &message);
    ActionLogException(const ActionLogException &) = default;
    ActionLogException &operator=(const ActionLogException &) = default;
    ~ActionLogException() override;

    /// The message in the local 8-bit encoding; valid until the next call or the object's end.
    const char *what() const noexcept override;
    virtual QString message() const;

private:
    QString mMessage;
    mutable std::string mWhat;
};

/// A file that can't be opened.
class VOKIT_EXPORT ActionLogFileException : public ActionLogException
{
public:
    enum eType : int {
        eOpenFailed = 1,
        eBackupFailed = 3, ///< could not be moved aside; only as an argument of errorFile()
        eInvalidHeader = 4 ///< its header has a version that isn't supported
    };

    ActionLogFileException(const QString &message, const QString &file, eType type);
    ActionLogFileException(const ActionLogFileException &) = default;
    ActionLogFileException &operator=(const ActionLogFileException &) = default;
    ~ActionLogFileException() override;

    const QString &file() const { return mFile; }
    eType type() const { return mType; }

private:
    QString mFile;
    eType mType;
};

/// A file that is not well-formed.
class VOKIT_EXPORT ActionLogXmlException : public ActionLogException
{
public:
    ActionLogXmlException(const QString &message, const QString &error, int line, int colum);
    ActionLogXmlException(const ActionLogXmlException &) = default;
    ActionLogXmlException &operator=(const ActionLogXmlException &) = default;
    ~ActionLogXmlException() override;

    const QString &error() const { return mError; }
    int line() const { return mLine; }
    int colum() const { return mColum; }

private:
    QString mError;
    int mLine;
    int mColum;
};

/// The log's own user could not be logged on. Nothing here throws it: it is for a FileEncrypt that
/// reaches its file as that user.
class VOKIT_EXPORT ActionLogImpersonateException : public ActionLogException
{
public:
    ActionLogImpersonateException(const QString &message, const QString &user, int error);
    ActionLogImpersonateException(const ActionLogImpersonateException &) = default;
    ActionLogImpersonateException &operator=(const ActionLogImpersonateException &) = default;
    ~ActionLogImpersonateException() override;

    const QString &user() const { return mUser; }
    int error() const { return mError; }

private:
    QString mUser;
    int mError;
};

} // namespace vo
