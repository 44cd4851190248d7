#include "support/sysfsfixture.h"

#include <boost/filesystem.hpp>

#include <sstream>

void WriteSysfsAttributes(const TempDir& dir, const std::string& folder, const std::string& attributes)
{
    std::istringstream files(attributes);
    for (std::string file; std::getline(files, file, ';');) {
        const std::size_t equals = file.find('=');
        dir.Write(folder + "/" + file.substr(0, equals), file.substr(equals + 1) + "\n");
    }
}

void WriteSysfsLink(const TempDir& dir, const std::string& link, const std::string& target)
{
    const boost::filesystem::path at = boost::filesystem::path(dir.Path()) / link;
    boost::filesystem::create_directories(at.parent_path());
    boost::filesystem::create_symlink(target, at);
}

void WriteHwmonChip(const TempDir& dir, const std::string& id, const std::string& device, const std::string& attributes)
{
    const std::string folder = "sys/devices/" + device + "/hwmon/" + id;
    WriteSysfsAttributes(dir, folder, attributes);
    WriteSysfsLink(dir, "sys/class/hwmon/" + id, "../../devices/" + device + "/hwmon/" + id);
    WriteSysfsLink(dir, folder + "/device", "../../../" + boost::filesystem::path(device).filename().string());
}
