#ifndef KESTRO_XMODULE_KESTRODIRECTORY_H
#define KESTRO_XMODULE_KESTRODIRECTORY_H

#include <string>

// The program's home, where data/ and global.config lie: $KESTRO_HOME when set; else the
// executable's folder when it holds data/; else the data folder of an installed tool.
class KestroDirectory {
public:
    // The home folder with a trailing '/', followed by `relative`.
    static std::string GetExePath(const std::string& relative);
    // The folder of the shared object that holds this code, with a trailing '/'.
    static std::string GetLibraryPath();
};

#endif
