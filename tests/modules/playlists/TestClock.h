#pragma once

#include <ctime>

// Fixes what time() answers in this test executable for the lifetime of the
// object, so that code seeding rand() from the clock draws numbers a test can
// foresee. The executable is linked with --wrap=time; while no TestClock
// lives, time() answers the real clock.
class TestClock
{
public:
    explicit TestClock(std::time_t now);
    ~TestClock();

    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;

    void set(std::time_t now);
};
