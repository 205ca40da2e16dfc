// A disk of its own for a folder, with what is in it, and with as little room as is wanted.

#pragma once

#include <sys/statvfs.h>

#include <functional>
#include <string>

namespace support {

class SmallDisk {
public:
    // Copies the folder, which must be there, into memory; /tmp is in memory already. Throws
    // std::runtime_error when that is refused.
    explicit SmallDisk(std::string folder);
    // What was in the folder before is there again; but for /tmp, which stays.
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    // No byte more than what it takes now, in pages.
    void leave_no_room() const;
    // So many more files, folders and links.
    void leave_room_for_files(unsigned long count) const;

private:
    void limit(const std::function<std::string(const struct statvfs& now)>& options) const;
    std::string folder_;
};

} // namespace support
