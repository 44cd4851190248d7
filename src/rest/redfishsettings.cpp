#include "rest/redfishsettings.h"

#include "kestro/xmodule/globalconfig.h"

namespace Rest {

namespace {

const int DEFAULT_STARTUP_WAIT_SECONDS = 180;
const int DEFAULT_ACTION_TIMEOUT_SECONDS = 0;

}  // namespace

RedfishSettings ReadRedfishSettings()
{
    RedfishSettings settings;
    const int waitSeconds =
        XModule::GetGlobalConfigValue("REDFISH_STARTUP_WAIT_TIME", DEFAULT_STARTUP_WAIT_SECONDS);
    // A negative wait means no retry at all rather than a wrap-around to a huge unsigned wait.
    settings.startupWaitMs = waitSeconds > 0 ? static_cast<std::uint64_t>(waitSeconds) * 1000 : 0;
    settings.actionTimeout =
        XModule::GetGlobalConfigValue("REST_ACTION_TIMEOUT", DEFAULT_ACTION_TIMEOUT_SECONDS);
    return settings;
}

const RedfishSettings& GetRedfishSettings()
{
    // A function-local static is initialised once, and concurrent first callers wait for it.
    static const RedfishSettings settings = ReadRedfishSettings();
    return settings;
}

int EffectiveTimeout(int requested, int actionTimeout)
{
    return actionTimeout != 0 ? actionTimeout : requested;
}

}  // namespace Rest
