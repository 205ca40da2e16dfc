// Entering and leaving private namespaces, and changing what is in it.

#include "support/worlds/private_world.h"

#include "support/child_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace support {

namespace files = std::filesystem;

namespace {

constexpr const char* plain_sudo_rules = "Defaults env_reset\n"
                                         "Defaults secure_path=\"/usr/local/sbin:/usr/local/bin:"
                                         "/usr/sbin:/usr/bin:/sbin:/bin\"\n"
                                         "root ALL=(ALL:ALL) ALL\n"
                                         "%sudo ALL=(ALL:ALL) ALL\n"
                                         "@includedir /etc/sudoers.d\n";

// What is made writable where there is no overlay file system; the rest of /usr is read-only then.
constexpr const char* small_trees[] = {"/etc",
                                       "/usr/bin",
                                       "/usr/sbin",
                                       "/usr/local",
                                       "/usr/lib/locale",
                                       "/usr/lib/lv2",
                                       "/usr/share/icons",
                                       "/usr/share/applications",
                                       "/var/log",
                                       "/var/lib/sudo"};

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

void mount_or_fail(const char* source, const std::string& target, const char* type,
                   unsigned long flags, const std::string& data = {}) {
    if (mount(source, target.c_str(), type, flags, data.empty() ? nullptr : data.c_str()) != 0) {
        fail("cannot mount on " + target);
    }
}

std::string scratch_folder(const std::string& tree, const char* kind) {
    std::string name = tree;
    for (char& c : name) {
        c = c == '/' ? '_' : c;
    }
    const std::string folder = "/mnt/" + name + kind;
    files::create_directory(folder);
    return folder;
}

bool overlay(const std::string& tree) {
    const std::string upper = scratch_folder(tree, ".upper");
    struct stat status {};
    if (stat(tree.c_str(), &status) != 0 || chmod(upper.c_str(), status.st_mode & 07777) != 0) {
        return false;
    }
    const std::string data =
        "lowerdir=" + tree + ",upperdir=" + upper + ",workdir=" + scratch_folder(tree, ".work");
    return mount("overlay", tree.c_str(), "overlay", 0, data.c_str()) == 0;
}

void bind_copy(const std::string& tree) {
    if (!files::is_directory(tree) || files::is_symlink(tree)) {
        return;
    }
    const std::string copy = scratch_folder(tree, ".copy");
    static_cast<void>(output_of({"cp", "-a", tree + "/.", copy}, std::chrono::minutes(2)));
    mount_or_fail(copy.c_str(), tree, nullptr, MS_BIND);
}

void make_system_writable() {
    mount_or_fail("tmpfs", "/mnt", "tmpfs", 0, "mode=700");
    if (!overlay("/etc") || !overlay("/usr") || !overlay("/var")) {
        mount_or_fail("/usr", "/usr", nullptr, MS_BIND | MS_REC);
        mount_or_fail(nullptr, "/usr", nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY);
        for (const char* tree : small_trees) {
            bind_copy(tree);
        }
    }
    // The overlays keep hold of what they need.
    umount2("/mnt", MNT_DETACH);
}

bool lies_in(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder + "/");
}

// Empties folder, but for those of kept that lie in it.
void empty_folder(const std::string& folder, const char* mode,
                  const std::vector<std::string>& kept) {
    std::vector<std::pair<std::string, int>> inside;
    for (const std::string& path : kept) {
        if (lies_in(path, folder)) {
            inside.emplace_back(path, open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        }
    }
    mount_or_fail("tmpfs", folder, "tmpfs", MS_NODEV, std::string("mode=") + mode);
    for (const auto& [path, original] : inside) {
        files::create_directories(path);
        mount_or_fail(("/proc/self/fd/" + std::to_string(original)).c_str(), path, nullptr,
                      MS_BIND | MS_REC);
        close(original);
    }
}

void check_file_written(const std::ofstream& file, const std::string& path) {
    if (!file) {
        fail("cannot write " + path);
    }
}

} // namespace

std::optional<std::string> world_obstacle() {
    if (geteuid() != 0) {
        return "needs root, to make accounts and sudo rules in a private mount namespace; "
               "run the tests as root (nothing is changed on the machine)";
    }
    return std::nullopt;
}

PrivateWorld::PrivateWorld(const WorldOptions& options) {
    if (const auto obstacle = world_obstacle()) {
        throw std::runtime_error("a private world " + *obstacle);
    }
    std::vector<std::string> kept = options.keep_visible;
    kept.push_back(files::current_path());
    kept.push_back(files::read_symlink("/proc/self/exe").parent_path());
    machine_mounts_ = open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
    machine_network_ = open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
    working_folder_ = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    const std::string working_folder = files::current_path();
    // X servers also listen in the network's abstract names, which a private /tmp does not part.
    if (machine_mounts_ < 0 || machine_network_ < 0 || unshare(CLONE_NEWNS | CLONE_NEWNET) != 0) {
        fail("no private namespaces");
    }
    mount_or_fail("none", "/", nullptr, MS_REC | MS_PRIVATE);
    make_system_writable();
    empty_folder("/tmp", "1777", kept);
    empty_folder("/run", "755", kept);
    empty_folder("/home", "755", kept);
    empty_folder("/opt", "755", kept);
    files::current_path(working_folder);

    files::remove_all("/etc/sudoers.d");
    files::create_directory("/etc/sudoers.d");
    write_file("/etc/sudoers", plain_sudo_rules, 0440);
    hide_program("/usr/sbin/sendmail");
}

PrivateWorld::~PrivateWorld() {
    // A namespace is not left while a thread shares this one's folders, and a tool that watches
    // threads may have started one of its own.
    const bool left = unshare(CLONE_FS) == 0 && setns(machine_mounts_, CLONE_NEWNS) == 0 &&
                      setns(machine_network_, CLONE_NEWNET) == 0 && fchdir(working_folder_) == 0;
    close(machine_mounts_);
    close(machine_network_);
    close(working_folder_);
    if (!left) {
        // Going on would let the next test write where this one did.
        std::perror("cannot leave the private world");
        std::abort();
    }
}

void hide_program(const std::string& path) {
    if (unlink(path.c_str()) != 0 && errno != ENOENT) {
        fail("cannot hide " + path);
    }
}

void install_program(const std::string& path, const std::string& executable, unsigned mode) {
    hide_program(path);
    files::create_directories(files::path(path).parent_path());
    files::copy_file(executable, path);
    if (chown(path.c_str(), 0, 0) != 0 || chmod(path.c_str(), mode) != 0) {
        fail("cannot install " + path);
    }
}

void install_script(const std::string& path, const std::string& text, unsigned mode) {
    hide_program(path);
    write_file(path, text, mode);
}

void write_file(const std::string& path, const std::string& text, unsigned mode) {
    files::create_directories(files::path(path).parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    check_file_written(file, path);
    if (chmod(path.c_str(), mode) != 0) {
        fail("cannot set the mode of " + path);
    }
}

void add_sudo_rules(const std::string& name, const std::string& rules) {
    const std::string path = "/etc/sudoers.d/" + name;
    write_file(path, rules + "\n", 0440);
    static_cast<void>(output_of({"visudo", "-c", "-f", path}));
}

void make_locale(const std::string& language) {
    static_cast<void>(output_of({"localedef", "-i", language, "-f", "UTF-8", "--no-archive",
                                 "/usr/lib/locale/" + language + ".utf8"},
                                std::chrono::minutes(1)));
}

} // namespace support
