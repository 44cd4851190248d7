// `kestro report` over an inventory file: the file read, the modules and categories of the
// machine it names, and the whole report site written (tables, BBCode values, tips) into a
// folder of this process. The program's home is a folder whose data/ is the project's own.
#include "fuzzsupport.h"

#include "kestro/repository/rrepository.h"

#include <boost/filesystem/operations.hpp>

#include <cstdio>
#include <cstdlib>

using namespace kestro::repository;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const std::string home = KestroFuzz::ProcessFolder() + "/home";
    boost::filesystem::create_directories(home);
    boost::filesystem::create_directory_symlink(KESTRO_SOURCE_DATA, home + "/data");
    boost::filesystem::create_directories(KestroFuzz::ProcessFolder() + "/site");
    setenv("KESTRO_HOME", home.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = KestroFuzz::WriteInputFile("inventory.xml", KestroFuzz::ToText(data, size));
    RRepository repository(ConnectNone);
    if (!repository.ReadXML(path, "")) return 0;
    repository.InitDepModules();
    if (!repository.LoadCategories()) return 0;
    repository.WriteHTML(KestroFuzz::ProcessFolder() + "/site");
    return 0;
}
