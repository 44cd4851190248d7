#ifndef KESTRO_TESTS_TEMPDIR_H
#define KESTRO_TESTS_TEMPDIR_H

#include <string>

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    const std::string& Path() const { return path; }
    // Writes `content` to `relative` under the folder, creating parent folders.
    std::string Write(const std::string& relative, const std::string& content) const;
    std::string Read(const std::string& relative) const;

private:
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    std::string path;
};

// The whole file at `path`; empty when it cannot be read.
std::string ReadFile(const std::string& path);

// Sets an environment variable while it lives and restores the old value after.
class ScopedEnv {
public:
    ScopedEnv(const std::string& name, const std::string& value);
    ~ScopedEnv();

private:
    std::string name;
    std::string oldValue;
    bool hadValue;
};

#endif
