#include "TestClock.h"

#include <atomic>

namespace {

std::atomic<bool> g_fixed{false};
std::atomic<std::time_t> g_now{0};

} // namespace

extern "C" std::time_t __real_time(std::time_t* out);

extern "C" std::time_t __wrap_time(std::time_t* out)
{
    if (!g_fixed.load())
        return __real_time(out);
    const std::time_t now = g_now.load();
    if (out)
        *out = now;
    return now;
}

TestClock::TestClock(std::time_t now)
{
    set(now);
    g_fixed.store(true);
}

TestClock::~TestClock()
{
    g_fixed.store(false);
}

void TestClock::set(std::time_t now)
{
    g_now.store(now);
}
