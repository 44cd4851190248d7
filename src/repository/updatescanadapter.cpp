#include "updatescanadapter.h"

#include "kestro/systemtype/iscfcsystem.h"
#include "xmodule/rlog.h"

#include <sstream>

namespace kestro {
namespace repository {

UpdateScanAdapter::UpdateScanAdapter(const XModule::UserContext& context) : commandText("update scan")
{
    const std::string iobay = context.GetOption("iobay", "0");
    std::istringstream(iobay) >> option.iobay;
    Note("iobay", iobay);
    option.checkDevice = context.HasOption("checkdevice");
    if (option.checkDevice) Note("checkdevice", context.GetOption("checkdevice", ""));
    option.cfcSystem = IsCFCSystem().Check(context);
    option.neverCheckTrust = !context.HasOption("never-check-trust");
    if (context.HasOption("never-check-trust")) Note("never-check-trust", context.GetOption("never-check-trust", ""));
    option.skipFirmware = context.HasOption("skipfw");
    if (option.skipFirmware) Note("skipfw", context.GetOption("skipfw", ""));
    option.dir = context.GetOption("dir", "./");
    Note("dir", option.dir);
    option.type = context.GetOption("type", "");
    if (context.HasOption("type")) Note("type", option.type);
    RLOG(3) << "Parameter --type: " << option.type;
}

void UpdateScanAdapter::Note(const std::string& name, const std::string& value)
{
    commandText += " --" + name + " " + value;
}

}  // namespace repository
}  // namespace kestro
