// The SMBIOS table reader and every structure decoder over what it finds, as the DMI readers
// call them; each decoder is given every structure, since a table may hold any bytes. The host
// interface reader walks the type 42 records.
#include "fuzzsupport.h"
#include "xmodule/linux/redfishhostinterface.h"
#include "xmodule/linux/smbios.h"
#include "xmodule/linux/smbiosdecode.h"

#include <cstdio>
#include <cstdlib>

using namespace XModule::Linux;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<SmbiosStructure> table = ParseSmbiosTable(KestroFuzz::ToText(data, size));
    const SmbiosVersion guessed = GuessSmbiosVersion(table);
    SmbiosVersion old;
    old.major = 2;
    old.minor = 4;
    for (const SmbiosStructure& s : table) {
        if (s.formatted.size() != s.length) {
            std::fprintf(stderr, "structure of length %u holds %zu bytes\n", s.length, s.formatted.size());
            std::abort();
        }
        DecodeBios(s);
        DecodeSystem(s, guessed);
        DecodeSystem(s, old);
        DecodeBaseboard(s);
        DecodeChassis(s);
        DecodeProcessor(s);
        DecodeCache(s);
        DecodeSlot(s);
        DecodeMemoryArray(s);
        DecodeMemoryDevice(s);
        DecodeCoolingDevice(s);
        DecodePowerSupply(s);
        DecodeOnboardDevice(s);
        for (std::size_t number = 0; number <= s.strings.size() + 1; ++number) GetSmbiosString(s, number);
        std::uint64_t value = 0;
        GetSmbiosQword(s, s.formatted.size() > 8 ? s.formatted.size() - 8 : 0, value);
        FindSmbiosStructure(table, s.type);
    }
    FindRedfishHostInterfaces(table);
    return 0;
}
