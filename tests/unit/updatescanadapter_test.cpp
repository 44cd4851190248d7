#include "repository/updatescanadapter.h"
#include "support/fixturehost.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

using kestro::repository::UpdateScanAdapter;

namespace {

// The option fields in one line, so a table row can say all of them.
std::string Fields(const service::UpdateScanOption& option)
{
    return "iobay=" + std::to_string(option.iobay) + " checkdevice=" + std::to_string(option.checkDevice) +
           " cfc=" + std::to_string(option.cfcSystem) + " trust=" + std::to_string(option.neverCheckTrust) +
           " skipfw=" + std::to_string(option.skipFirmware) + " dir=" + option.dir + " type=" + option.type;
}

}  // namespace

TEST(UpdateScanAdapterTest, UserOptionsBecomeScanOptionsAndACommandLine)
{
    // No machine-type list lies in this home, so the host is not a CFC system.
    FixtureHost host("ID=rhel\n");
    const struct {
        std::map<std::string, std::string> options;
        const char* fields;
        const char* command;
    } cases[] = {
        {{}, "iobay=0 checkdevice=0 cfc=0 trust=1 skipfw=0 dir=./ type=", "update scan --iobay 0 --dir ./"},
        {{{"iobay", "3"}, {"checkdevice", ""}, {"never-check-trust", ""}, {"skipfw", ""}, {"dir", "/srv/fw"},
          {"type", "uefi"}},
         "iobay=3 checkdevice=1 cfc=0 trust=0 skipfw=1 dir=/srv/fw type=uefi",
         "update scan --iobay 3 --checkdevice  --never-check-trust  --skipfw  --dir /srv/fw --type uefi"},
        // A bay that is not a number reads as far as the stream gets, here nothing.
        {{{"iobay", "second"}}, "iobay=0 checkdevice=0 cfc=0 trust=1 skipfw=0 dir=./ type=",
         "update scan --iobay second --dir ./"},
    };
    for (const auto& c : cases) {
        XModule::UserContext context;
        context.options = c.options;
        const UpdateScanAdapter adapter(context);
        EXPECT_EQ(c.fields, Fields(adapter.Option()));
        EXPECT_EQ(c.command, adapter.CommandText());
    }
}
