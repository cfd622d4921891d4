#include <Vokit/ActionLog>

#include <Vokit/ActionLogContextSwitchEntry>
#include <Vokit/FileUtils>
#include <Vokit/ILogUserSource>
#include <Vokit/IPersistDestination>
#include <Vokit/XMLLogWriter>

#include <QCoreApplication>
#include <QDir>
#include <QMutexLocker>
#include <QTextStream>

namespace vo {

namespace {

ActionLog *gInstance = nullptr;

const QString gGroup = QStringLiteral("ActionLog");
const QString gSplitState = QStringLiteral("SplitState");
const QString gSplitSize = QStringLiteral("SplitSize");
const QString gUser = QStringLiteral("ActionLogUser");
const QString gPassword = QStringLiteral("ActionLogPassword");
const QString gPath = QStringLiteral("ActionLogPath");
const QString gIsDefaultPath = QStringLiteral("isDefaultLogPath");

} // namespace

// Stands in a stored path for the default directory, which may move.
const QString ActionLog::mLocalAppData = QStringLiteral("%LOCALAPPDATA%");

ActionLog *ActionLog::getInstance()
{
    if (!gInstance) {
        const QFileInfo info = defaultFileInfo();
        QDir().mkpath(info.absolutePath());
        gInstance = new ActionLog(info.absoluteFilePath());
    }
    return gInstance;
}

void ActionLog::deleteActionLog()
{
    delete gInstance;
    gInstance = nullptr;
}

QFileInfo ActionLog::defaultFileInfo()
{
    const QString application = QCoreApplication::applicationName();
    const QStringList parts{FileUtils::userLogDir().absolutePath(),
                            QCoreApplication::organizationName(), application,
                            application + QLatin1String(".vol")};
    return QFileInfo(parts.join(QLatin1Char('/')));
}

void ActionLog::activate()
{
    const QMutexLocker locker(mMutex.get());
    if (!mFile.isOpen())
        readEntries(QIODevice::ReadWrite);
    openForWriting();
    flush();
}

QString ActionLog::userName()
{
    QString name;
    if (mUserSource) {
        name = mUserSource->primaryName();
        const QString secondary = mUserSource->secondaryName();
        if (!secondary.isEmpty())
            name.append(QLatin1String(" (")).append(secondary).append(QLatin1Char(')'));
    }
    if (name.isEmpty() && qEnvironmentVariableIsSet("USERNAME"))
        name = qEnvironmentVariable("USERNAME") + QLatin1String(" (System)");
    return name;
}

void ActionLog::setFileUserPassword(const QString &user, const QString &password)
{
    if (password == mPassword && user == mUser)
        return;
    mUser = user;
    mPassword = password;
    mUserPasswordChanged = true;
}

void ActionLog::setFileInfo(const QFileInfo &info)
{
    const bool isOther =
        !info.fileName().isEmpty() && info.absoluteFilePath() != mFileInfo.absoluteFilePath();
    if (!isOther && !mUserPasswordChanged)
        return;
    mUserPasswordChanged = false; // first: what fails on the way comes here again
    moveTo(info);
}

void ActionLog::moveTo(const QFileInfo &info)
{
    removeAllLogEntries();
    switchFileHandle(info.absoluteFilePath());
}

void ActionLog::switchFileHandle(const QString &newPath)
{
    const QMutexLocker locker(mMutex.get());
    const ActionLogContextSwitchEntry entry(mFileInfo.absoluteFilePath(), newPath);
    if (mFile.isOpen()) {
        log(entry);
        close();
    }
    if (mWriter && QFileInfo(newPath).absoluteFilePath() != mFileInfo.absoluteFilePath())
        mWriter->leaveDocument();
    mFile.setFileName(newPath);
    mFileInfo.setFile(mFile);
    mDefaultActive = mFileInfo.absoluteFilePath() == defaultFileInfo().absoluteFilePath();
    if (!mDefaultActive)
        mCustomFileInfo.setFile(mFile);
    log(entry);
    emit switchedFileHandle(mFileInfo.fileName());
}

void ActionLog::load(IPersistDestination *destination)
{
    if (!destination)
        return;
    const QMutexLocker locker(mMutex.get());
    const QFileInfo defaultFile = defaultFileInfo();
    destination->beginGroup(gGroup);
    mSplitPolicy =
        static_cast<ESplitPolicy>(destination->value(gSplitState, int(SplitBySize)).toInt());
    mSplitSize = destination->value(gSplitSize, gDefaultSplitSize).toInt();
    mUser = destination->value(gUser, QString()).toString();
    const QByteArray password = destination->value(gPassword, QByteArray()).toByteArray();
    mPassword = QString::fromLocal8Bit(QByteArray::fromBase64(password).constData());
    QString path = destination->value(gPath, defaultFile.absoluteFilePath()).toString();
    if (path.startsWith(mLocalAppData))
        path.replace(0, mLocalAppData.size(), defaultFile.absolutePath());
    mDefaultActive = destination->value(gIsDefaultPath, true).toBool();
    mCustomFileInfo = QFileInfo(path);

    const QFileInfo wanted = mDefaultActive ? defaultFile : mCustomFileInfo;
    const bool hasName = mDefaultActive || !wanted.fileName().isEmpty();
    if (hasName && wanted.absoluteFilePath() != mFileInfo.absoluteFilePath())
        moveTo(wanted);
    destination->endGroup();
}

void ActionLog::save(IPersistDestination *destination)
{
    if (!destination)
        return;
    const QMutexLocker locker(mMutex.get());
    const bool besideDefault = mCustomFileInfo.absolutePath() == defaultFileInfo().absolutePath();
    destination->beginGroup(gGroup);
    destination->setValue(gSplitState, int(mSplitPolicy));
    destination->setValue(gSplitSize, mSplitSize);
    destination->setValue(gUser, mUser);
    destination->setValue(gPassword, mPassword.toLocal8Bit().toBase64());
    destination->setValue(gIsDefaultPath, mDefaultActive);
    destination->setValue(gPath, besideDefault
                                     ? mLocalAppData + QLatin1Char('/') + mCustomFileInfo.fileName()
                                     : mCustomFileInfo.absoluteFilePath());
    destination->endGroup();
}

// A chosen file that is missing is another one even where QFileInfo finds the two equal: it does so
// for any two files that don't exist.
bool ActionLog::isDefaultFile() const
{
    const QFileInfo current(mFileInfo.filePath());
    const QFileInfo defaultFile = defaultFileInfo();
    return current == defaultFile &&
           (current.exists() || current.absoluteFilePath() == defaultFile.absoluteFilePath());
}

} // namespace vo
