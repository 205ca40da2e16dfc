// Wrapping the start, changing /tmp, and looking at processes.

#include "faults/surroundings.h"

#include "support/wait_until.h"

#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace faults {

namespace files = std::filesystem;

using end_to_end::Scenario;

namespace {

struct ProcessLine {
    pid_t id = 0;
    std::string name;
    char state = ' ';
    pid_t parent = 0;
};

// /proc/ID/stat: the name stands in brackets and may hold anything.
ProcessLine process_line(const std::string& id) {
    ProcessLine line;
    const std::string text = text_of("/proc/" + id + "/stat");
    const auto name_begin = text.find('(');
    const auto name_end = text.rfind(')');
    if (name_begin == std::string::npos || name_end == std::string::npos) {
        return line;
    }
    line.id = std::stoi(id);
    line.name = text.substr(name_begin + 1, name_end - name_begin - 1);
    std::istringstream rest(text.substr(name_end + 1));
    rest >> line.state >> line.parent;
    return line;
}

std::vector<std::string> process_ids() {
    std::vector<std::string> ids;
    for (const auto& entry : files::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos) {
            ids.push_back(name);
        }
    }
    return ids;
}

// The real user of a process: a folder in /proc may be root's although the process is not.
uid_t user_of(const std::string& process_folder) {
    const std::string text = text_of(process_folder + "/status");
    const auto at = text.find("\nUid:");
    return at == std::string::npos ? uid_t{0} : static_cast<uid_t>(std::stoul(text.substr(at + 5)));
}

// The world that a process lives in; empty for a zombie.
std::string world_of(const std::string& process_folder) {
    std::error_code error;
    return files::read_symlink(process_folder + "/ns/mnt", error).string();
}

} // namespace

void start_through_shell(const Scenario& scenario, const std::string& prepare,
                         const std::string& wrap, const std::string& rest) {
    const std::string program = scenario.program_path();
    const std::string real = program + ".real";
    if (!files::exists(real)) {
        files::rename(program, real);
    }
    support::write_file(
        program, "#!/bin/bash\n" + prepare + "\nexec " + wrap + " " + real + " " + rest + "\n",
        0755);
}

void remount_tmp(unsigned long flags, const std::string& data) {
    if (mount("tmpfs", "/tmp", "tmpfs", MS_REMOUNT | MS_NODEV | flags,
              data.empty() ? nullptr : data.c_str()) != 0) {
        throw std::runtime_error(std::string("cannot remount /tmp: ") + std::strerror(errno));
    }
}

void allow_terminals(int count) {
    // A limit of 0 would be no limit at all, so nobody may ask for the first one either.
    const std::string data = std::string("newinstance,mode=620,gid=5,ptmxmode=") +
                             (count > 0 ? "0666" : "0000") + ",max=" + std::to_string(count);
    if (mount("devpts", "/dev/pts", "devpts", 0, data.c_str()) != 0 ||
        mount("/dev/pts/ptmx", "/dev/ptmx", nullptr, MS_BIND, nullptr) != 0) {
        throw std::runtime_error(std::string("cannot limit terminals: ") + std::strerror(errno));
    }
}

std::string text_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<pid_t> children_of(pid_t parent) {
    std::vector<pid_t> children;
    for (const std::string& id : process_ids()) {
        const ProcessLine line = process_line(id);
        if (line.parent == parent) {
            children.push_back(line.id);
        }
    }
    return children;
}

std::vector<std::string> processes_of(const support::Account& account) {
    std::vector<std::string> processes;
    const std::string world = world_of("/proc/thread-self");
    for (const std::string& id : process_ids()) {
        // Accounts of other tests' worlds may have the same number.
        if (user_of("/proc/" + id) == account.uid && world_of("/proc/" + id) == world) {
            processes.push_back(id + " " + process_line(id).name);
        }
    }
    return processes;
}

std::vector<std::string> processes_left(const support::Account& account) {
    (void)support::wait_until([&] { return processes_of(account).empty(); },
                              std::chrono::milliseconds{1500});
    return processes_of(account);
}

char state_of(pid_t process) {
    return process_line(std::to_string(process)).state;
}

void install_from_password_screen(Scenario& scenario, const std::string& password) {
    scenario.give_password(password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
}

} // namespace faults
