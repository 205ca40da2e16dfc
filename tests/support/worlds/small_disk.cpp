// Mounting and limiting.

#include "support/worlds/small_disk.h"

#include "support/child_process.h"
#include "support/wait_until.h"

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace support {

namespace {

constexpr const char* no_limits = "size=1g,nr_inodes=100000";
constexpr const char* workplace = "/run/small-disk";

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

struct statvfs figures_of(const std::string& folder) {
    struct statvfs figures {};
    if (statvfs(folder.c_str(), &figures) != 0) {
        fail("no figures of " + folder);
    }
    return figures;
}

} // namespace

SmallDisk::SmallDisk(std::string folder) : folder_(std::move(folder)) {
    if (folder_ == "/tmp") {
        return;
    }
    std::filesystem::create_directory(workplace);
    if (mount("tmpfs", workplace, "tmpfs", 0, no_limits) != 0) {
        fail("no disk in memory");
    }
    (void)output_of({"cp", "-aT", folder_, workplace});
    std::filesystem::permissions(workplace, std::filesystem::status(folder_).permissions());
    if (mount(workplace, folder_.c_str(), nullptr, MS_MOVE, nullptr) != 0) {
        fail("no disk at " + folder_);
    }
}

SmallDisk::~SmallDisk() {
    if (folder_ == "/tmp") {
        (void)mount(nullptr, folder_.c_str(), nullptr, MS_REMOUNT, no_limits);
    } else {
        (void)umount2(folder_.c_str(), MNT_DETACH);
    }
}

void SmallDisk::leave_no_room() const {
    limit([](const struct statvfs& now) {
        const unsigned long used = std::max(now.f_blocks - now.f_bfree, 1UL); // none: without limit
        return "size=" + std::to_string(used * now.f_frsize);
    });
}

void SmallDisk::leave_room_for_files(unsigned long count) const {
    limit([&](const struct statvfs& now) {
        return "nr_inodes=" + std::to_string(now.f_files - now.f_ffree + count);
    });
}

// Again when something was written in the meantime.
void SmallDisk::limit(const std::function<std::string(const struct statvfs& now)>& options) const {
    const auto limited = [&] {
        const std::string text = options(figures_of(folder_));
        return mount(nullptr, folder_.c_str(), nullptr, MS_REMOUNT, text.c_str()) == 0;
    };
    if (!wait_until(limited)) {
        fail("no limits of " + folder_);
    }
}

} // namespace support
