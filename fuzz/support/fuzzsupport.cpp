#include "fuzzsupport.h"

#include <boost/filesystem/operations.hpp>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

#include <unistd.h>

namespace KestroFuzz {

namespace {

struct Folder {
    std::string path;
    Folder()
    {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/kestro-fuzz-XXXXXX";
        if (!mkdtemp(&pattern[0])) {
            std::perror("kestro fuzz: mkdtemp");
            std::abort();
        }
        path = pattern;
    }
    ~Folder()
    {
        boost::system::error_code ignored;
        boost::filesystem::remove_all(path, ignored);
    }
};

}  // namespace

const std::string& ProcessFolder()
{
    // Destroyed at exit, so the folder goes with the process (also after -runs=N).
    static const Folder folder;
    return folder.path;
}

std::string WriteInputFile(const std::string& relative, const std::string& bytes)
{
    const std::string path = ProcessFolder() + "/" + relative;
    boost::system::error_code error;
    boost::filesystem::create_directories(boost::filesystem::path(path).parent_path(), error);
    std::ofstream out(path.c_str(), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "kestro fuzz: cannot write %s\n", path.c_str());
        std::abort();
    }
    return path;
}

bool SplitAt(const std::string& input, const std::string& separator, std::string& first, std::string& rest)
{
    const std::string::size_type at = input.find(separator);
    if (at == std::string::npos) {
        first = input;
        rest.clear();
        return false;
    }
    first = input.substr(0, at);
    rest = input.substr(at + separator.size());
    return true;
}

std::vector<std::string> SplitAtNul(const std::string& input, std::size_t count)
{
    std::vector<std::string> parts(count);
    std::string remaining = input;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        std::string rest;
        SplitAt(remaining, std::string(1, '\0'), parts[i], rest);
        remaining.swap(rest);
    }
    if (count > 0) parts.back() = remaining;
    return parts;
}

void Require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "kestro fuzz: %s\n", what);
    std::abort();
}

}  // namespace KestroFuzz
