#ifndef KESTRO_XMODULE_TRANSFERDEADLINE_H
#define KESTRO_XMODULE_TRANSFERDEADLINE_H

#include <chrono>
#include <cstdint>

namespace XModule {

// The moment by which the network transfers of the current piece of work must end. The driver of
// a run sets it around each type it collects; the REST client reads it, so that a service which
// never finishes (endless redirects, a stalled or dripping answer, 503 for ever) cannot hold the
// run beyond its time limits. One deadline for the process: the driver collects one type at a time.
class TransferDeadline {
public:
    typedef std::chrono::steady_clock Clock;

    static void Set(Clock::time_point when);
    static void Clear();
    static bool IsSet();
    static bool Passed();
    // The deadline; the clock's epoch when none is set.
    static Clock::time_point When();
    // Milliseconds left, rounded up (so at least 1 while the deadline lies ahead); 0 once it has passed.
    static std::int64_t RemainingMs();
};

}  // namespace XModule

#endif
