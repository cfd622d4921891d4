#include "Console.h"

#include "Failure.h"
#include "PrintableText.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

namespace {

// A standard stream that came in closed would give its number to the next thing that is opened,
// and a report would be written into that. Opened the wrong way round, it still fails.
void occupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

void prepareConsole()
{
    occupyStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

QString systemReason()
{
    return QString::fromStdString(std::generic_category().message(errno));
}

bool writeOutput(const QByteArray &text)
{
    const auto size = static_cast<size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return true;
    // A reader that has gone away wants no more, and no complaint either.
    if (errno != EPIPE)
        throw Failure(QStringLiteral("cannot write the output: %1").arg(systemReason()));
    return false;
}

void warn(const QString &message)
{
    const QString name = QCoreApplication::applicationName();
    const QByteArray line = printable(QStringLiteral("%1: ").arg(name) + message).toUtf8();
    std::fprintf(stderr, "%s\n", line.constData());
}
