#include "rest/retrypolicy.h"

#include "rest/redfishsettings.h"

namespace Rest {

const std::uint64_t RetryPolicy::DefaultIntervalMs;

RetryPolicy RetryPolicy::FromSettings()
{
    RetryPolicy policy;
    policy.waitMs = GetRedfishSettings().startupWaitMs;
    policy.intervalMs = DefaultIntervalMs;
    return policy;
}

}  // namespace Rest
