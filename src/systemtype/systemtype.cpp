#include "kestro/systemtype/systemtype.h"

#include "kestro/xmodule/kestrodirectory.h"
#include "kestro/xmodule/log.h"
#include "xmodule/sharedlibrary.h"

#include <boost/shared_ptr.hpp>

namespace kestro {

namespace {

const char kPluginFile[] = "repository_vxsystem.so";
const char kEntryName[] = "CheckVexaServer";

typedef int (*CheckVexaServerEntry)();

const int kKeepValue = -1;

struct PluginAnswer {
    int answer;
    int value;          // kKeepValue: log only
    const char* text;
};

// In the order they are asked. An AMD host is known by its connect mode, not by this answer.
const PluginAnswer kPluginAnswers[] = {
    {0, SYSTEM_VEXASERVER, "Target system is VexaServer"},
    {2, kKeepValue, "Target system is AMD"},
    {3, SYSTEM_TV5X, "Target system is System_TV5X"},
    {4, SYSTEM_VEXASERVER_CHINA, "Target system is china for china VexaServer"},
    {5, SYSTEM_TV50V2, "Target system is System_TV50V2"},
    {6, SYSTEM_TV45V2, "Target system is System_TV45V2"},
};

boost::shared_ptr<SystemType> instance;

}  // namespace

SystemType* SystemType::GetInstance()
{
    if (!instance) instance.reset(new SystemType);
    return instance.get();
}

SystemType::SystemType() : systemType(SYSTEM_NOT_DETECTED) {}

SystemType::~SystemType() {}

int SystemType::GetSystemType()
{
    if (systemType == SYSTEM_NOT_DETECTED) Detect();
    XLOG(XModule::LOG_DEBUG) << "[repo] Check SYSTEM TYPE VALUE: " << systemType;
    return systemType;
}

void SystemType::Detect()
{
    systemType = SYSTEM_NO_FAMILY;
    const std::string path = KestroDirectory::GetLibraryPath() + kPluginFile;
    std::string error;
    void* plugin = XModule::SharedLibrary::Load(path, error);
    if (!plugin) {
        XLOG(XModule::LOG_WARN) << "[repo] Unable to load shared library vxsystem.so !!!";
        XLOG(XModule::LOG_WARN) << "[repo] load vexa server system lib failed";
        XLOG(XModule::LOG_DEBUG) << "[repo] dlopen: " << error;
    } else {
        CheckVexaServerEntry entry =
            reinterpret_cast<CheckVexaServerEntry>(XModule::SharedLibrary::FindSymbol(plugin, kEntryName));
        if (!entry)
            XLOG(XModule::LOG_WARN) << "[repo] Unable to find required interface in !!!";
        else
            AskPlugin(entry);
    }
    XLOG(XModule::LOG_INFO) << "[repo] Get SYSTEM TYPE VALUE: " << systemType;
    XModule::SharedLibrary::Unload(plugin);
}

// The entry is asked afresh for every row, so it must give the same answer each time.
void SystemType::AskPlugin(int (*checkVexaServer)())
{
    XLOG(XModule::LOG_DEBUG) << "[repo] start to add vexa server modules func !!!";
    try {
        for (const PluginAnswer& row : kPluginAnswers) {
            if (checkVexaServer() != row.answer) continue;
            XLOG(XModule::LOG_INFO) << "[repo] " << row.text;
            if (row.value != kKeepValue) systemType = row.value;
            return;
        }
        XLOG(XModule::LOG_INFO) << "[repo] Target system is not VexaServer";
    } catch (...) {
        XLOG(XModule::LOG_WARN) << "[repo] Run api(CheckVexaServer) failed in the lib -- repository_vxsystem";
    }
}

}  // namespace kestro
