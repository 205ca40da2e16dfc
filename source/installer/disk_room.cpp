// disk_room.cpp: asking the file system.
#include "installer/disk_room.h"

#include <sys/statvfs.h>

bool has_room(const char* folder, std::int64_t bytes, Writer writer) {
    struct statvfs disk {};
    if (statvfs(folder, &disk) != 0 || disk.f_blocks == 0 || bytes <= 0) {
        return true; // some file systems do not know their size
    }
    const auto blocks =
        static_cast<std::uint64_t>(writer == Writer::root ? disk.f_bfree : disk.f_bavail);
    return blocks >= (static_cast<std::uint64_t>(bytes) - 1) / disk.f_frsize + 1;
}
