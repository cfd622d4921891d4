#include <Vokit/ActionLogException>

namespace vo {

ActionLogException::ActionLogException(const QString &message)
    : mMessage(message)
{}

ActionLogException::~ActionLogException() = default;

const char *ActionLogException::what() const noexcept
{
    mWhat = message().toLocal8Bit().toStdString();
    return mWhat.c_str();
}

QString ActionLogException::message() const
{
    return mMessage;
}

ActionLogFileException::ActionLogFileException(const QString &message, const QString &file,
                                               eType type)
    : ActionLogException(message)
    , mFile(file)
    , mType(type)
{}

ActionLogFileException::~ActionLogFileException() = default;

ActionLogXmlException::ActionLogXmlException(const QString &message, const QString &error, int line,
                                             int colum)
    : ActionLogException(message)
    , mError(error)
    , mLine(line)
    , mColum(colum)
{}

ActionLogXmlException::~ActionLogXmlException() = default;

ActionLogImpersonateException::ActionLogImpersonateException(const QString &message,
                                                             const QString &user, int error)
    : ActionLogException(message)
    , mUser(user)
    , mError(error)
{}

ActionLogImpersonateException::~ActionLogImpersonateException() = default;

} // namespace vo
