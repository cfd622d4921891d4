#pragma once

#include <QDateTime>

namespace test {

/// The clock of a test program that is linked with TestClock.cpp: every current time of Qt comes
/// from here. It stands still, so that no test meets the turn of a second or of a day.
class TestClock
{
public:
    TestClock() = delete;

    /// Before the first call it is noon of 5 March 2026, a Thursday of week 10, local time.
    static void set(const QDateTime &now);
    static void advance(int seconds);
};

} // namespace test
