#include "xmodule/linux/kernelmodules.h"

#include "kestro/xmodule/unreadable.h"
#include "support/fixturehost.h"

#include <gtest/gtest.h>

using namespace XModule::Linux;
using XModule::protocol::KernelModuleInfo;

namespace {

const char kProcModules[] =
    "nf_tables 327680 0 - Live 0xffffffffc0a5e000\n"
    "e1000e 352256 0 - Live 0xffffffffc0940000\n"
    "libcrc32c 12288 2 nf_tables,btrfs, Live 0x0000000000000000\n"
    "nvidia 56832000 1 nvidia_modeset, Live 0xffffffffc1000000 (POE)\n"
    "cut 4096 0\n"
    "bad notanumber 0 - Live 0x0\n"
    "\n"
    "dm_mod 184320 0 - Loading 0xffffffffc0300000";

std::string Row(const KernelModuleInfo& m)
{
    return m.Name + "|" + m.Version + "|" + m.Size + "|" + m.UsedBy + "|" + m.State + "|" + m.Parameters;
}

}  // namespace

TEST(KernelModulesTest, ParsesProcModulesLines)
{
    std::vector<std::string> rows;
    for (const KernelModuleInfo& module : ParseProcModules(kProcModules)) rows.push_back(Row(module));
    EXPECT_EQ((std::vector<std::string>{"nf_tables|N/A|327680|-|Live|N/A", "e1000e|N/A|352256|-|Live|N/A",
                                        "libcrc32c|N/A|12288|nf_tables,btrfs|Live|N/A",
                                        "nvidia|N/A|56832000|nvidia_modeset|Live|N/A", "dm_mod|N/A|184320|-|Loading|N/A"}),
              rows);
    EXPECT_TRUE(ParseProcModules("").empty());
}

TEST(KernelModulesTest, AddsVersionsAndParametersFromSysfs)
{
    FixtureHost host("");
    host.Dir().Write("proc/modules", kProcModules);
    host.Dir().Write("sys/module/e1000e/version", "3.2.6-k\n");
    const char* const parameters[] = {"Copybreak", "CrcStripping", "EEE", "InterruptThrottleRate", "IntMode",
                                      "KumeranLockLoss", "SmartPowerDownEnable", "TxIntDelay", "WriteProtectNVM"};
    for (const char* parameter : parameters)
        host.Dir().Write(std::string("sys/module/e1000e/parameters/") + parameter, "1\n");
    host.Dir().Write("sys/module/nf_tables/parameters/policy", std::string(70, 'x') + "\n");
    host.Dir().Write("sys/module/kernel/parameters/panic", "0\n");

    std::vector<KernelModuleInfo> modules;
    CollectKernelModules(modules);
    std::vector<std::string> rows;
    for (const KernelModuleInfo& module : modules) rows.push_back(Row(module));
    EXPECT_EQ((std::vector<std::string>{
                  "dm_mod|N/A|184320|-|Loading|N/A",
                  "e1000e|3.2.6-k|352256|-|Live|Copybreak=1 CrcStripping=1 EEE=1 IntMode=1 InterruptThrottleRate=1 "
                  "KumeranLockLoss=1 SmartPowerDownEnable=1 TxIntDelay=1 ...",
                  "libcrc32c|N/A|12288|nf_tables,btrfs|Live|N/A",
                  "nf_tables|N/A|327680|-|Live|policy=" + std::string(64, 'x') + "...",
                  "nvidia|N/A|56832000|nvidia_modeset|Live|N/A"}),
              rows);

    XModule::ClearUnreadableNotes();
    FixtureHost empty("");
    modules.clear();
    CollectKernelModules(modules);
    EXPECT_TRUE(modules.empty());
    EXPECT_EQ(std::vector<std::string>{"/proc/modules: No such file or directory"}, XModule::GetUnreadableNotes());
}
