// test_folder.cpp: making and removing entries of every kind.

#include "unit/widgets/test_folder.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

void require(bool done, const std::string& what) {
    if (!done) {
        std::perror(what.c_str());
        std::abort();
    }
}

} // namespace

TestFolder::TestFolder() {
    std::string name = std::filesystem::temp_directory_path() / "widgets-XXXXXX";
    require(mkdtemp(name.data()) != nullptr, name);
    path_ = std::filesystem::canonical(name);
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(path_, ignored)) {
        if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) {
            std::filesystem::permissions(entry, std::filesystem::perms::owner_all, ignored);
        }
    }
    std::filesystem::remove_all(path_, ignored);
}

void TestFolder::add_file(const std::string& name) const {
    const int file = open(path_of(name).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    require(file >= 0, name);
    close(file);
}

void TestFolder::add_files(int count, const std::string& prefix) const {
    for (int i = 0; i < count; ++i) {
        const std::string name = prefix + std::to_string(i);
        if (i == 0) {
            add_file(name);
        } else { // a name of the first one takes a quarter of the time
            require(link(path_of(prefix + "0").c_str(), path_of(name).c_str()) == 0, name);
        }
    }
}

void TestFolder::add_folder(const std::string& name) const {
    require(mkdir(path_of(name).c_str(), 0700) == 0, name);
}

void TestFolder::add_link(const std::string& name, const std::string& target) const {
    require(symlink(target.c_str(), path_of(name).c_str()) == 0, name);
}

void TestFolder::add_pipe(const std::string& name) const {
    require(mkfifo(path_of(name).c_str(), 0600) == 0, name);
}

void TestFolder::add_socket(const std::string& name) const {
    const int end = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = path_of(name);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool bound = bind(end, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(end);
    require(bound, name);
}

WorkingDirectory::WorkingDirectory() : saved_(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    require(saved_ >= 0, "working directory");
}

WorkingDirectory::~WorkingDirectory() {
    [[maybe_unused]] const int result = fchdir(saved_);
    close(saved_);
}

void WorkingDirectory::enter(const std::string& path) const {
    require(chdir(path.c_str()) == 0, path);
}

std::string WorkingDirectory::now() {
    char* path = getcwd(nullptr, 0);
    const std::string text = path == nullptr ? "" : path;
    std::free(path);
    return text;
}
