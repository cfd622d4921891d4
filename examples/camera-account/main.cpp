#include "Account.h"
#include "Console.h"
#include "Failure.h"
#include "Options.h"
#include "Password.h"

#include <Vokit/Crypt>

#include <QCoreApplication>

namespace {

enum ExitCode { Done = 0, WrongPassword = 1, Unusable = 2 };

ExitCode printRecord(const Options &options)
{
    const QString password = readPassword(Typed::Twice);
    const QString record =
        vogen::Crypt::cameraUserAccess(options.user, password, options.group, options.realm);
    writeOutput(record.toLatin1() + '\n');
    return Done;
}

ExitCode checkPassword(const Options &options)
{
    const QByteArray record = readRecord(options.recordFile, options.user);
    const bool isRight = fits(record, readPassword(Typed::Once), options.realm);
    writeOutput(isRight ? "The password fits.\n" : "The password does not fit.\n");
    return isRight ? Done : WrongPassword;
}

ExitCode run(const Options &options)
{
    if (options.answer.isEmpty())
        return options.recordFile.isEmpty() ? printRecord(options) : checkPassword(options);
    writeOutput(options.answer.toUtf8());
    return Done;
}

} // namespace

int main(int argc, char *argv[])
{
    prepareConsole();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("camera-account"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    try {
        return run(parseOptions());
    } catch (const Failure &failure) {
        warn(failure.message());
        return Unusable;
    }
}
