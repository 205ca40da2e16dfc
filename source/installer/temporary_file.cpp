// temporary_file.cpp: making a file that did not exist a moment ago.
#include "installer/temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

int open_exclusively(const char* path) {
    int descriptor = -1;
    do {
        descriptor = open(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

bool is_leftover_of_our_own(const char* path) {
    struct stat status {};
    return lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == getuid() &&
           status.st_nlink == 1;
}

} // namespace

std::FILE* temporary_file_create(const char* path) {
    int descriptor = open_exclusively(path);
    if (descriptor < 0 && errno == EEXIST && is_leftover_of_our_own(path) && unlink(path) == 0) {
        descriptor = open_exclusively(path);
    }
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* file = fdopen(descriptor, "w+b");
    if (file == nullptr) {
        close(descriptor);
    }
    return file;
}

bool temporary_file_close(std::FILE* file) {
    const bool written = std::fflush(file) == 0 && std::ferror(file) == 0;
    return std::fclose(file) == 0 && written;
}
