// disk_room.cpp: asking the file system.
#include "installer/disk_room.h"

#include "installer/folder_levels.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <climits>
#include <cstdio>

namespace {

// The folder itself, or the one in which it is to be made. false when the path is too long.
bool folder_that_is_there(char (&found)[PATH_MAX], const char* folder) {
    const std::int32_t length = length_without_levels(folder, missing_levels(folder));
    const int written = std::snprintf(found, sizeof found, "%.*s", length, folder);
    return written >= 0 && static_cast<std::size_t>(written) < sizeof found;
}

// Whether both are on one disk, as far as can be told.
bool share_disk(const char* one, const char* other) {
    struct stat first {};
    struct stat second {};
    return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_dev == second.st_dev;
}

} // namespace

bool has_room(const char* folder, std::int64_t bytes, Writer writer) {
    struct statvfs disk {};
    if (statvfs(folder, &disk) != 0 || disk.f_blocks == 0 || bytes <= 0) {
        return true; // some file systems do not know their size
    }
    const auto blocks =
        static_cast<std::uint64_t>(writer == Writer::root ? disk.f_bfree : disk.f_bavail);
    return blocks >= (static_cast<std::uint64_t>(bytes) - 1) / disk.f_frsize + 1;
}

bool has_room_for_all(const RoomWanted* wanted, std::size_t count, Writer writer) {
    for (std::size_t i = 0; i < count; ++i) {
        char folder[PATH_MAX];
        if (!folder_that_is_there(folder, wanted[i].folder)) {
            continue;
        }
        std::int64_t bytes = 0;
        for (std::size_t k = 0; k < count; ++k) {
            char other[PATH_MAX];
            if (k == i ||
                (folder_that_is_there(other, wanted[k].folder) && share_disk(folder, other))) {
                bytes += wanted[k].bytes;
            }
        }
        if (!has_room(folder, bytes, writer)) {
            return false;
        }
    }
    return true;
}

bool has_room_for_a_file(const char* folder) {
    struct statvfs disk {};
    return statvfs(folder, &disk) != 0 || disk.f_files == 0 || disk.f_favail > 0;
}
