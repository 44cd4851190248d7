// The DMI readers over an SMBIOS table as the kernel exports it: the records of systems,
// processors, memory, cards, fans and power supplies, with the links between structures
// (caches of a processor, arrays of a memory device). The input is the table file under a
// root folder of this process; nothing else of that root exists.
#include "fuzzsupport.h"
#include "xmodule/linux/dmiinventory.h"

#include "kestro/xmodule/rootprefix.h"

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The readers keep one table per root: two roots in turn make each input read afresh.
    static bool second = false;
    second = !second;
    const std::string root = second ? "root-b" : "root-a";
    KestroFuzz::WriteInputFile(root + "/sys/firmware/dmi/tables/DMI", KestroFuzz::ToText(data, size));
    XModule::SetRootPrefix(KestroFuzz::ProcessFolder() + "/" + root);

    std::vector<XModule::protocol::ComputerSystem> systems;
    CollectComputerSystems(systems);
    std::vector<XModule::protocol::Processor> processors;
    CollectProcessors(processors);
    std::vector<XModule::protocol::Memory> modules;
    CollectMemory(modules);
    std::vector<XModule::protocol::SystemCard> cards;
    CollectSystemCards(cards);
    std::vector<XModule::protocol::FanInband> fans;
    CollectSmbiosFans(fans);
    std::vector<XModule::protocol::PowerInband> supplies;
    CollectSmbiosPowerSupplies(supplies);
    return 0;
}
