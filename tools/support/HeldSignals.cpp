#include "HeldSignals.h"

#include <algorithm>
#include <iterator>

namespace {
constexpr int gSignals[] = {SIGHUP, SIGINT, SIGTERM};
} // namespace

HeldSignals::HeldSignals()
{
    ::sigemptyset(&m_held);
    for (const int number : gSignals)
        ::sigaddset(&m_held, number);
    ::sigprocmask(SIG_BLOCK, &m_held, &m_before);
}

HeldSignals::~HeldSignals()
{
    ::sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

bool HeldSignals::isWaiting() const
{
    sigset_t waiting;
    ::sigpending(&waiting);
    return std::any_of(std::begin(gSignals), std::end(gSignals),
                       [&](int number) { return ::sigismember(&waiting, number) == 1; });
}
