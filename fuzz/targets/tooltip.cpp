// The tool-tip reader over data/tooltip.xml in the program's home, and the look-ups of the report.
#include "fuzzsupport.h"

#include "kestro/repository/rtooltip.h"

#include <cstdlib>

using kestro::repository::RToolTip;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The reader finds its file under the program's home.
    setenv("KESTRO_HOME", KestroFuzz::ProcessFolder().c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = KestroFuzz::ToText(data, size);
    KestroFuzz::WriteInputFile("data/tooltip.xml", text);
    // A copy of the empty instance: the shared one would grow with every input.
    RToolTip tips(*RToolTip::Instance());
    if (!tips.LoadTooltips()) return 0;
    tips.GetTypeTip("OS", "Processes");
    tips.GetTypeTip("", "");
    // Ask for names that stand in the file itself, so the matching branches are reached.
    const std::string::size_type name = text.find("<name>");
    if (name != std::string::npos) {
        const std::string::size_type end = text.find('<', name + 6);
        const std::string word = text.substr(name + 6, end == std::string::npos ? std::string::npos : end - name - 6);
        tips.GetTypeTip(word, word);
    }
    return 0;
}
