// The small line readers of the local inventory. The first byte picks the reader, the rest is
// the file: 0 meminfo (and loadavg), 1 swaps, 2 passwd, 3 utmp, 4 a logind session, 5 an
// environment file, 6 a syslog line.
#include "fuzzsupport.h"
#include "xmodule/linux/environmentvariables.h"
#include "xmodule/linux/meminfo.h"
#include "xmodule/linux/passwd.h"
#include "xmodule/linux/swaps.h"
#include "xmodule/linux/systemlog.h"
#include "xmodule/linux/usersessions.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string text = KestroFuzz::ToText(data + 1, size - 1);
    switch (data[0] % 7) {
    case 0: {
        XModule::protocol::MemoryUtilizationInfo memory;
        FillMemoryUtilization(ParseMemInfo(text), memory);
        std::uint64_t threads = 0;
        ParseThreadCount(text, threads);
        break;
    }
    case 1:
        ParseSwaps(text);
        break;
    case 2: {
        UserNames names;
        for (const PasswdEntry& entry : ParsePasswd(text)) names[static_cast<unsigned long>(entry.uid)] = entry.name;
        NameOfUser(names, "0");
        NameOfUser(names, text.substr(0, 24));
        break;
    }
    case 3:
        ParseUtmp(text);
        break;
    case 4: {
        LoginSession session;
        ParseLogindSession(text, session);
        break;
    }
    case 5:
        for (const auto& variable : ParseEnvironmentFile(text)) IsSecretVariable(variable.Name, variable.Value);
        break;
    case 6: {
        SyslogLine line;
        ParseSyslogLine(text, line);
        break;
    }
    }
    return 0;
}
