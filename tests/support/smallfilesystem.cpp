#include "support/smallfilesystem.h"

#include <sys/mount.h>

#include <fstream>

SmallFileSystem::SmallFileSystem(const std::string& size)
    : mounted(::mount("tmpfs", dir.Path().c_str(), "tmpfs", MS_NOSUID | MS_NODEV, ("size=" + size).c_str()) == 0)
{
}

SmallFileSystem::~SmallFileSystem()
{
    if (mounted) ::umount2(dir.Path().c_str(), MNT_DETACH);
}

void SmallFileSystem::Fill() const
{
    std::ofstream filler((dir.Path() + "/filler").c_str(), std::ios::binary);
    const std::string block(4096, 'f');
    while (filler.write(block.data(), block.size()) && filler.flush()) {
    }
}
