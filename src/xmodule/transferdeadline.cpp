#include "xmodule/transferdeadline.h"

#include <atomic>

namespace XModule {

namespace {

// Clock ticks of the deadline; 0 stands for none.
std::atomic<TransferDeadline::Clock::rep> deadlineTicks(0);

}  // namespace

void TransferDeadline::Set(Clock::time_point when)
{
    const Clock::rep ticks = when.time_since_epoch().count();
    deadlineTicks.store(ticks != 0 ? ticks : 1);
}

void TransferDeadline::Clear() { deadlineTicks.store(0); }

bool TransferDeadline::IsSet() { return deadlineTicks.load() != 0; }

bool TransferDeadline::Passed() { return IsSet() && RemainingMs() == 0; }

TransferDeadline::Clock::time_point TransferDeadline::When()
{
    return Clock::time_point(Clock::duration(deadlineTicks.load()));
}

std::int64_t TransferDeadline::RemainingMs()
{
    const Clock::rep ticks = deadlineTicks.load();
    if (ticks == 0) return 0;
    const Clock::duration left = Clock::time_point(Clock::duration(ticks)) - Clock::now();
    if (left <= Clock::duration::zero()) return 0;
    // Rounded up, so that a transfer cut after this many milliseconds ends at or past the deadline,
    // never a fraction before it, where the driver would not see its limit reached.
    return std::chrono::ceil<std::chrono::milliseconds>(left).count();
}

}  // namespace XModule
