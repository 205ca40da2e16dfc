// Writing account entries, and changing to an account.

#include "support/worlds/accounts.h"

#include "support/worlds/private_world.h"

#include <crypt.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <sstream>
#include <stdexcept>

namespace support {

namespace {

constexpr uid_t first_uid = 23000;

std::string hash_of(const std::string& password) {
    crypt_data data{};
    // The fewest rounds that are permitted: these passwords protect nothing.
    const char* hash = crypt_r(password.c_str(), "$6$rounds=1000$throwaway$", &data);
    if (hash == nullptr || hash[0] == '*') {
        throw std::runtime_error("no password hash");
    }
    return hash;
}

std::string text_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Replaces the line of that file that begins with NAME: or adds it.
void put_line(const std::string& path, const std::string& name, const std::string& line,
              unsigned mode) {
    std::istringstream before(text_of(path));
    std::string after;
    for (std::string old; std::getline(before, old);) {
        if (!old.starts_with(name + ":")) {
            after += old + "\n";
        }
    }
    // root's line has to stay the first: some programs look no further.
    write_file(path, name == "root" ? line + "\n" + after : after + line + "\n", mode);
}

uid_t free_uid() {
    uid_t uid = first_uid;
    while (getpwuid(uid) != nullptr) {
        ++uid;
    }
    return uid;
}

} // namespace

Account add_account(const std::string& name, const std::string& password,
                    const std::string& sudo_rule) {
    Account account{name, password, "/home/" + name, free_uid(), 0};
    account.gid = account.uid;
    const std::string id = std::to_string(account.uid);
    put_line("/etc/passwd", name, name + ":x:" + id + ":" + id + "::" + account.home + ":/bin/sh",
             0644);
    put_line("/etc/group", name, name + ":x:" + id + ":", 0644);
    put_line("/etc/shadow", name, name + ":" + hash_of(password) + ":20000:0:99999:7:::", 0640);
    std::filesystem::create_directories(account.home);
    if (chmod(account.home.c_str(), 0700) != 0) {
        throw std::runtime_error("cannot make " + account.home);
    }
    give_to(account, account.home);
    if (!sudo_rule.empty()) {
        add_sudo_rules(name, name + " " + sudo_rule);
    }
    return account;
}

void set_root_password(const std::string& password) {
    put_line("/etc/shadow", "root", "root:" + hash_of(password) + ":20000:0:99999:7:::", 0640);
}

void lock_root() {
    put_line("/etc/shadow", "root", "root:!:20000:0:99999:7:::", 0640);
}

std::vector<std::string> login_environment(const Account& account,
                                           const std::vector<std::string>& more) {
    std::vector<std::string> environment = {"HOME=" + account.home, "USER=" + account.name,
                                            "LOGNAME=" + account.name, "SHELL=/bin/sh",
                                            "PATH=/usr/local/bin:/usr/bin:/bin"};
    // What watches the program under test is set up alike in every account.
    for (const char* name :
         {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS", "LLVM_PROFILE_FILE"}) {
        if (const char* value = std::getenv(name)) {
            environment.push_back(std::string(name) + "=" + value);
        }
    }
    environment.insert(environment.end(), more.begin(), more.end());
    return environment;
}

ChildOptions run_as(const Account& account, const std::vector<std::string>& command,
                    const std::vector<std::string>& more_environment) {
    ChildOptions options;
    options.command = command;
    options.environment = login_environment(account, more_environment);
    options.uid = account.uid;
    options.gid = account.gid;
    options.working_directory = account.home;
    return options;
}

void give_to(const Account& account, const std::string& path) {
    if (lchown(path.c_str(), account.uid, account.gid) != 0) {
        throw std::runtime_error("cannot give away " + path + ": " + std::strerror(errno));
    }
}

} // namespace support
