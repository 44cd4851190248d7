#ifndef KESTRO_REST_REDFISHSETTINGS_H
#define KESTRO_REST_REDFISHSETTINGS_H

#include <cstdint>

namespace Rest {

// The two global.config settings of the Redfish client.
struct RedfishSettings {
    std::uint64_t startupWaitMs = 180000;  // REDFISH_STARTUP_WAIT_TIME, given in seconds
    int actionTimeout = 0;                 // REST_ACTION_TIMEOUT in seconds; 0: callers choose
};

// Reads global.config now.
RedfishSettings ReadRedfishSettings();
// Read once per process, at first use, safe against concurrent first calls.
const RedfishSettings& GetRedfishSettings();
// The time-out a client really gets when a caller asks for `requested`.
int EffectiveTimeout(int requested, int actionTimeout);

}  // namespace Rest

#endif
