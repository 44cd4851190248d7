#include "xmodule/ihv/emulex.h"
#include "xmodule/ihv/mellanox.h"
#include "xmodule/ihv/qlogic.h"
#include "xmodule/ihv/utilitycommands.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <functional>
#include <string>
#include <vector>

using XModule::XModuleIHV::RawData_;

TEST(VendorRawDataTest, EachMakerRunsTheQueriesOfWhatIsInstalled)
{
    typedef std::function<int(std::vector<RawData_>&, const std::string& folder)> Runner;
    const Runner qlogic = [](std::vector<RawData_>& r, const std::string& f) {
        return XModule::Qlogic::Qlogic().GetRawData(r, f);
    };
    const Runner mellanox = [](std::vector<RawData_>& r, const std::string& f) {
        return XModule::Mellanox::Mellanox().GetRawData(r, f);
    };
    const Runner emulex = [](std::vector<RawData_>& r, const std::string&) {
        return XModule::Emulex::Emulex().GetRawData(r, "01PE123");
    };
    struct Case {
        const char* what;
        const char* folder;                  // under utilities/
        std::vector<std::string> installed;  // in that folder
        Runner run;
        int code;
        std::string records;  // "file:device:answer" of each record
    };
    const Case cases[] = {
        {"nothing installed", "qlogic", {}, qlogic, XModule::XModuleIHV::UTILITY_NOT_INSTALLED, ""},
        {"scli alone", "qlogic", {"scli"}, qlogic, 0, "scli_adapters.txt::-i all;scli_all.txt::-z all;"},
        {"qaucli before scli", "qlogic", {"scli", "qaucli"}, qlogic, 0,
         "qaucli_general.txt::-g;qaucli_adapters.txt::-i;qaucli_fc_all.txt::-pr fc -z;"
         "qaucli_nic_adapters.txt::-pr nic -i;"},
        {"mlxconfig alone", "mellanox", {"mlxconfig"}, mellanox, 0, "mlxconfig_query.txt::query;"},
        {"hbacmd for a part number", "emulex", {"hbacmd"}, emulex, 0,
         "hbacmd_listhbas.txt:01PE123:listhbas;hbacmd_version.txt:01PE123:version;"
         "hbacmd_listvfunctions.txt:01PE123:listvfunctions;"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir home;
        ScopedEnv homeVariable("KESTRO_HOME", home.Path());
        ScopedEnv path("PATH", home.Path() + "/bin");
        const std::string folder = std::string("utilities/") + c.folder + "/";
        for (const std::string& utility : c.installed)
            ::chmod(home.Write(folder + utility, "#!/bin/sh\necho \"$*\"\n").c_str(), 0755);
        std::vector<RawData_> records;
        EXPECT_EQ(c.run(records, home.Path() + "/" + folder), c.code);
        std::string text;
        // Each stand-in answers with its arguments and a line break.
        for (const RawData_& record : records) {
            const std::string answer = record.rawData.substr(0, record.rawData.size() - 1);
            text += record.fileName + ":" + record.deviceId + ":" + answer + ";";
        }
        EXPECT_EQ(text, c.records);
    }
}
