#ifndef KESTRO_REST_RETRYPOLICY_H
#define KESTRO_REST_RETRYPOLICY_H

#include <cstdint>

namespace Rest {

// How long a verb goes on repeating while the BMC answers 503, and the pause between tries.
struct RetryPolicy {
    static const std::uint64_t DefaultIntervalMs = 5000;

    std::uint64_t waitMs;
    std::uint64_t intervalMs;

    // The start-up wait of global.config and the default pause.
    static RetryPolicy FromSettings();
};

}  // namespace Rest

#endif
