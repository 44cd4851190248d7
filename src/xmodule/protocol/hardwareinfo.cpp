#include "xmodule/protocol/hardwareinfo.h"

namespace XModule {
namespace protocol {

// The same word the Redfish readers give a missing value, so both sides of a report read alike.
const char* const UNKNOWN_VALUE = "N/A";

}  // namespace protocol
}  // namespace XModule
