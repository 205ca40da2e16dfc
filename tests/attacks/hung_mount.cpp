// The server's side of the mount is opened and never read from.

#include "attacks/hung_mount.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

HungMount::HungMount(std::string folder)
    : folder_(std::move(folder)), server_(open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
    std::filesystem::create_directories(folder_);
    const std::string options =
        "fd=" + std::to_string(server_) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
    if (server_ < 0 ||
        mount("hung", folder_.c_str(), "fuse", MS_NODEV | MS_NOSUID, options.c_str()) != 0) {
        throw std::runtime_error("cannot mount at " + folder_ + ": " + std::strerror(errno));
    }
}

HungMount::~HungMount() {
    close(server_);
    umount2(folder_.c_str(), MNT_DETACH);
}
