#ifndef KESTRO_XMODULE_AGENTLESS_QMMMESSAGELOGDATA_H
#define KESTRO_XMODULE_AGENTLESS_QMMMESSAGELOGDATA_H

#include <string>

namespace XModule {

// One entry of a BMC or host event log, whichever reader filled it. A field the source does not
// give stays empty; the module shows it as "Unknown".
struct QMMMESSAGELOGDATA {
    std::string nodeId;
    std::string source;
    std::string creationTimeStamp;
    std::string eventId;
    std::string messageId;
    std::string message;
    std::string messageArguments;
    // As the source spells it: "Critical" and "critical" are different severities to the report.
    std::string perceivedSeverity;
    std::string auxiliaryData;
    std::string eventSequenceNumber;
    std::string logName;
    std::string eventGroupId;   // maintenance log only
    std::string logInstanceId;  // logs read for the CIM rows
    std::string elementName;    // logs read for the CIM rows
};

}  // namespace XModule

#endif
