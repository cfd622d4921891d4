#include "Interruption.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t gHasHappened = 0;

void note(int /*signal*/)
{
    gHasHappened = 1;
}

// Writing goes on, sleeping doesn't.
void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM})
        ::sigaction(signal, &action, nullptr);
}

} // namespace

Interruption::Interruption()
{
    gHasHappened = 0;
    setHandler(&note);
}

Interruption::~Interruption()
{
    setHandler(SIG_DFL);
}

bool Interruption::hasHappened()
{
    return gHasHappened != 0;
}
