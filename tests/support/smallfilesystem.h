#ifndef KESTRO_TESTS_SMALLFILESYSTEM_H
#define KESTRO_TESTS_SMALLFILESYSTEM_H

#include "support/tempdir.h"

#include <string>

// A tmpfs of a few pages mounted on a fresh folder while it lives: a real file system that fills
// up. Mounting needs root; Mounted() is false when it could not be done, and tests skip then.
class SmallFileSystem {
public:
    explicit SmallFileSystem(const std::string& size = "64k");
    ~SmallFileSystem();

    bool Mounted() const { return mounted; }
    const std::string& Path() const { return dir.Path(); }
    // Fills the free space with one file, so the next write of any size fails.
    void Fill() const;

private:
    SmallFileSystem(const SmallFileSystem&) = delete;
    SmallFileSystem& operator=(const SmallFileSystem&) = delete;

    TempDir dir;
    bool mounted;
};

#endif
