#include "support/tempdir.h"

#include <boost/filesystem.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>

TempDir::TempDir()
{
    const boost::filesystem::path unique =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path("kestro-test-%%%%-%%%%-%%%%");
    boost::filesystem::create_directories(unique);
    path = unique.string();
}

TempDir::~TempDir()
{
    boost::system::error_code ignored;
    boost::filesystem::permissions(path, boost::filesystem::owner_all, ignored);
    boost::filesystem::remove_all(path, ignored);
}

std::string TempDir::Write(const std::string& relative, const std::string& content) const
{
    const boost::filesystem::path target = boost::filesystem::path(path) / relative;
    boost::filesystem::create_directories(target.parent_path());
    std::ofstream out(target.string().c_str(), std::ios::binary);
    out << content;
    return target.string();
}

std::string TempDir::Read(const std::string& relative) const
{
    return ReadFile((boost::filesystem::path(path) / relative).string());
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

ScopedEnv::ScopedEnv(const std::string& name, const std::string& value) : name(name)
{
    const char* old = std::getenv(name.c_str());
    hadValue = old != nullptr;
    if (hadValue) oldValue = old;
    setenv(name.c_str(), value.c_str(), 1);
}

ScopedEnv::~ScopedEnv()
{
    if (hadValue)
        setenv(name.c_str(), oldValue.c_str(), 1);
    else
        unsetenv(name.c_str());
}
