#include "Password.h"

#include "Account.h"
#include "Console.h"
#include "Failure.h"

#include <QByteArray>
#include <QTextCodec>

#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace {

constexpr int gLengthLimit = 1024; // bytes

constexpr std::array<int, 5> gSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};
volatile std::sig_atomic_t gSignal = 0;

extern "C" void noteSignal(int signal)
{
    gSignal = signal;
}

/// While it lives, the terminal doesn't show what is typed. A signal that would end or stop the
/// program comes while it waits for input, is noted, and raised once the terminal is as it was.
class HiddenInput
{
public:
    HiddenInput()
    {
        if (::tcgetattr(STDIN_FILENO, &m_shown) != 0)
            throw Failure(QStringLiteral("cannot use the terminal: %1").arg(systemReason()));
        sigset_t blocked;
        ::sigemptyset(&blocked);
        struct sigaction note = {};
        note.sa_handler = &noteSignal;
        for (std::size_t i = 0; i < gSignals.size(); ++i) {
            ::sigaddset(&blocked, gSignals[i]);
            ::sigaction(gSignals[i], &note, &m_actions[i]);
        }
        ::pthread_sigmask(SIG_BLOCK, &blocked, &m_mask);

        termios hidden = m_shown;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        hidden.c_lflag |= ECHONL;
        if (::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) != 0) {
            const QString reason = systemReason();
            restore();
            throw Failure(QStringLiteral("the terminal would show the password: %1").arg(reason));
        }
    }
    ~HiddenInput()
    {
        restore();
        if (gSignal != 0)
            std::raise(gSignal);
    }
    HiddenInput(const HiddenInput &) = delete;
    HiddenInput &operator=(const HiddenInput &) = delete;

    /// @throws Failure for a signal; none can slip by between a look for one and the waiting
    void waitForInput() const
    {
        fd_set inputs;
        int ready = 0;
        do {
            FD_ZERO(&inputs);
            FD_SET(STDIN_FILENO, &inputs);
            ready = ::pselect(STDIN_FILENO + 1, &inputs, nullptr, nullptr, nullptr, &m_mask);
        } while (ready < 0 && errno == EINTR && gSignal == 0);
        if (gSignal != 0)
            throw Failure(QStringLiteral("interrupted"));
    }

private:
    void restore()
    {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_shown);
        for (std::size_t i = 0; i < gSignals.size(); ++i)
            ::sigaction(gSignals[i], &m_actions[i], nullptr);
        ::pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
    }

    termios m_shown;
    std::array<struct sigaction, gSignals.size()> m_actions;
    sigset_t m_mask;
};

// Without the line feed; what stands behind it is left alone. On a terminal, through hidden.
QByteArray readLine(const HiddenInput *hidden)
{
    QByteArray line;
    for (;;) {
        if (hidden)
            hidden->waitForInput();
        char byte = 0;
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0)
            throw Failure(QStringLiteral("cannot read the password: %1").arg(systemReason()));
        if (count == 0 || byte == '\n')
            return line;
        if (line.size() == gLengthLimit)
            throw Failure(QStringLiteral("the password is longer than %1 bytes").arg(gLengthLimit));
        line += byte;
    }
}

QByteArray ask(const char *prompt)
{
    const HiddenInput hidden;
    std::fputs(prompt, stderr);
    return readLine(&hidden);
}

QByteArray passwordLine(Typed typed)
{
    if (::isatty(STDIN_FILENO) == 0)
        return readLine(nullptr);
    QByteArray line = ask("Password: ");
    if (typed == Typed::Twice && ask("Again: ") != line)
        throw Failure(QStringLiteral("these were two different passwords"));
    return line;
}

} // namespace

QString readPassword(Typed typed)
{
    const QByteArray line = passwordLine(typed);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString password =
        QTextCodec::codecForName("UTF-8")->toUnicode(line.constData(), line.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        throw Failure(QStringLiteral("the password is not UTF-8"));
    if (password.isEmpty())
        throw Failure(QStringLiteral("the password is empty"));
    requireLatin1(password, QStringLiteral("the password"));
    return password;
}
