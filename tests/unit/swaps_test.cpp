#include "xmodule/linux/swaps.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace XModule::Linux;

namespace {

std::string Rows(const std::vector<XModule::protocol::PageFileInfo>& areas)
{
    std::ostringstream out;
    for (const XModule::protocol::PageFileInfo& a : areas)
        out << a.Name << '|' << a.Type << '|' << a.Size << '|' << a.Used << '|' << a.Priority << ';';
    return out.str();
}

}  // namespace

TEST(SwapsTest, ParsesAreasBelowTheHeader)
{
    const char header[] = "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n";
    struct Case {
        std::string text;
        const char* rows;
    };
    const Case cases[] = {
        {header, ""},
        {"", ""},
        {std::string(header) + "/dev/sda3                               partition\t999420\t\t0\t\t-2\n",
         "/dev/sda3|partition|976.0 MiB|0 B|-2;"},
        {std::string(header) + "/srv/swap\\040file\\134x\t\t\tfile\t\t2097148\t\t1024\t\t-3\n",
         "/srv/swap file\\x|file|2.0 GiB|1 MiB|-3;"},
        {std::string(header) + "/swapfile\tfile\tlots\t-4\t-2\n/dev/zram0\tpartition\n",
         "/swapfile|file|N/A|N/A|-2;"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.rows, Rows(ParseSwaps(c.text))) << c.text;
}
