#pragma once

#include <csignal>

/// While it lives, Ctrl-C and the like wait, so that a piece of work can end in order. At its end
/// they do what they always do.
class HeldSignals
{
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals &) = delete;
    HeldSignals &operator=(const HeldSignals &) = delete;

    /// Whether one has come and waits: the work is to be given up.
    bool isWaiting() const;

private:
    sigset_t m_held;
    sigset_t m_before;
};
