#pragma once

/// While it lives, SIGINT and SIGTERM don't end the program but are noted, each once: what comes
/// again ends it.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    static bool hasHappened();
};
