// Calls one entry of the privileged runner, as an ordinary user would have the installer call it,
// and tells what it left behind: the result, the time, open descriptors, children, and copies of
// the password in this process's memory.
//
// runner_tool [NAME=VALUE...] ENTRY [ARGUMENT]
//   sudo=PATH su=PATH          the tools; else where they usually are
//   password=FILE              the password is this file's content
//   cancel_after=MS            cancelling is asked for after that time; 0 = before the call
//   exact=1                    the folder of an extraction is one word
//   ignore=SIGNAL-NUMBER       that signal is ignored, as a launcher may leave it
//   no_terminal=1              no descriptor is left for a pseudo-terminal
//   leak=1                     some descriptors are open that a child would inherit
//   times=N                    the entry is called that often
//   keep_password=1            the caller's own copy stays, for the search to find

#include "privilege/auth_method.h"
#include "privilege/privileged_plan.h"
#include "privilege/su_command.h"
#include "privilege/sudo_command.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using Settings = std::map<std::string, std::string>;
using Clock = std::chrono::steady_clock;

constexpr std::size_t room = std::size_t{1} << 20; // bytes read from memory at once

std::atomic<std::int32_t> cancel_requested{0};
bool exact_folder_names = false;

void log_line(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::fflush(stdout);
}

// Memory of its own, so that it can be wiped and left out of the search.
char* own_memory(std::size_t size) {
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
}

char mask(char c) {
    return static_cast<char>(c ^ 0x5a);
}

constexpr std::size_t piece_length = 17; // bytes: more than a register that a function saved
constexpr std::size_t piece_distance = 8;
constexpr std::size_t most_pieces = 64;

// How often a piece of the password, which is only kept masked, stands in the block. Pieces are
// looked for because much of a forgotten copy is soon written over.
std::size_t count_in(const char* block, std::size_t size, const std::vector<char>& masked) {
    const std::size_t length = std::min(piece_length, masked.size());
    std::size_t found = 0;
    const std::size_t last = std::min(masked.size() - length, most_pieces * piece_distance);
    for (std::size_t first = 0; first <= last; first += piece_distance) {
        const char* end = block + size;
        const char* at = block;
        while ((at = static_cast<const char*>(memchr(
                    at, mask(masked[first]), static_cast<std::size_t>(end - at)))) != nullptr) {
            std::size_t same = 0;
            while (same < length && at + same < end && at[same] == mask(masked[first + same])) {
                ++same;
            }
            found += same == length ? 1 : 0;
            ++at;
        }
    }
    return found;
}

// Copies of the password in this process's writable memory. Nothing to look for counts as none.
std::size_t copies_in_memory(const std::vector<char>& masked) {
    char* block = own_memory(room);
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    std::FILE* maps = std::fopen("/proc/self/maps", "re");
    std::size_t copies = 0;
    char line[512];
    while (!masked.empty() && block != nullptr && maps != nullptr &&
           std::fgets(line, sizeof line, maps) != nullptr) {
        std::uintptr_t start = 0;
        std::uintptr_t end = 0;
        char rights[5];
        if (std::sscanf(line, "%zx-%zx %4s", &start, &end, rights) != 3 || rights[1] != 'w' ||
            end - start > (std::uintptr_t{1} << 28)) { // a sanitizer's shadow is not memory
            continue;
        }
        const auto own = reinterpret_cast<std::uintptr_t>(block);
        for (std::uintptr_t at = start; at < end;) {
            if (at >= own && at < own + room) {
                at = own + room;
                continue;
            }
            const std::uintptr_t stop = at < own && own < end ? own : end;
            const std::size_t wanted = std::min<std::size_t>(room, stop - at);
            const ssize_t count = pread(memory, block, wanted, static_cast<off_t>(at));
            if (count <= 0) {
                break;
            }
            copies += count_in(block, static_cast<std::size_t>(count), masked);
            const auto read = static_cast<std::size_t>(count);
            at += read > masked.size() && at + read < stop ? read - masked.size() + 1 : read;
        }
    }
    explicit_bzero(block, room);
    munmap(block, room);
    close(memory);
    if (maps != nullptr) {
        std::fclose(maps);
    }
    return copies;
}

std::string open_descriptors() {
    std::string text;
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0) {
            char path[64];
            char target[64] = "";
            std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
            static_cast<void>(!readlink(path, target, sizeof target - 1));
            text += (text.empty() ? "" : ",") + std::string(target);
        }
    }
    return text.empty() ? "none" : text;
}

const char* children() {
    const pid_t child = waitpid(-1, nullptr, WNOHANG);
    return child < 0 ? "none" : child == 0 ? "running" : "zombie";
}

PrivilegedCommand plain(const char* const* words) {
    return {words, false};
}

std::int32_t carry_out(PrivilegedRunner* runner, std::int32_t auth_method, const PlanStep& step,
                       const char* password) {
    PrivilegedPlan plan{};
    plan_add_step(&plan, step);
    return run_plan(runner, auth_method, plan, password).status;
}

std::int32_t extract(PrivilegedRunner* runner, std::int32_t auth_method, const char* folder,
                     const char* password) {
    return carry_out(runner, auth_method,
                     {.words = {"tar", "-xf", "/tmp/zeph-installer-data.tar.gz", "-C", folder},
                      .exact = exact_folder_names,
                      .cancel_wait = true},
                     password);
}

std::int32_t sudo_step(PrivilegedRunner* runner, const char* line, const char* password) {
    return carry_out(runner, auth_method_sudo, {.words = {line}}, password);
}

std::int32_t sudo_run(PrivilegedRunner* runner, const char* line, const char* password) {
    const char* const words[] = {line, nullptr};
    return sudo_run_fresh(runner, plain(words), password).outcome == CommandOutcome::succeeded ? 1
                                                                                               : 0;
}

std::int32_t su_run_line(PrivilegedRunner* runner, const char* line, const char* password) {
    const char* const words[] = {line, nullptr};
    return su_run(runner, plain(words), password).outcome == CommandOutcome::no_terminal ? 1 : 0;
}

std::int32_t call(PrivilegedRunner* runner, const std::string& entry, const char* argument,
                  const char* password) {
    const std::map<std::string, std::int32_t (*)(PrivilegedRunner*, const char*, const char*)>
        entries = {
            {"find_sudo", [](auto* r, auto*, auto*) { return find_sudo(r); }},
            {"find_su", [](auto* r, auto*, auto*) { return find_su(r); }},
            {"sudo_forget", [](auto* r, auto*, auto*) { return sudo_forget(r); }},
            {"sudo_probe", [](auto* r, auto* user, auto*) { return sudo_probe(r, user); }},
            {"sudo_run", [](auto* r, auto* a, auto* p) { return sudo_run(r, a, p); }},
            {"sudo_run_fresh", [](auto* r, auto* a, auto* p) { return sudo_step(r, a, p); }},
            {"sudo_extract",
             [](auto* r, auto* a, auto* p) { return extract(r, auth_method_sudo, a, p); }},
            {"sudo_check_password",
             [](auto* r, auto*, auto* p) { return sudo_check_password(r, p) ? 1 : 0; }},
            {"su_run", [](auto* r, auto* a, auto* p) { return su_run_line(r, a, p); }},
            {"su_extract",
             [](auto* r, auto* a, auto* p) { return extract(r, auth_method_su, a, p); }},
            {"su_check_password",
             [](auto* r, auto*, auto* p) { return su_check_password(r, p) ? 1 : 0; }},
        };
    return entries.at(entry)(runner, argument, password);
}

void apply_settings(const Settings& settings, PrivilegedRunner* runner) {
    const auto value = [&settings](const char* name, const char* otherwise) {
        const auto found = settings.find(name);
        return found == settings.end() ? std::string(otherwise) : found->second;
    };
    std::snprintf(runner->sudo_path, sizeof runner->sudo_path, "%s",
                  value("sudo", "/usr/bin/sudo").c_str());
    std::snprintf(runner->su_path, sizeof runner->su_path, "%s", value("su", "/bin/su").c_str());
    exact_folder_names = value("exact", "0") == "1";
    if (settings.contains("ignore")) {
        static_cast<void>(std::signal(std::stoi(settings.at("ignore")), SIG_IGN));
    }
    if (settings.contains("no_terminal")) {
        const rlimit limit{3, 3};
        static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
    }
    if (settings.contains("leak")) {
        for (int i = 0; i < 3; ++i) {
            static_cast<void>(!dup(STDOUT_FILENO));
        }
    }
    if (value("cancel_after", "") == "0") {
        cancel_requested = 1;
    } else if (settings.contains("cancel_after")) {
        std::thread([delay = std::stoi(settings.at("cancel_after"))] {
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            cancel_requested = 1;
        }).detach();
    }
}

} // namespace

int main(int count, char** words) {
    closefrom(3); // what the test runner left open is not ours to report
    Settings settings;
    int next = 1;
    for (; next < count && std::strchr(words[next], '=') != nullptr; ++next) {
        const char* sign = std::strchr(words[next], '=');
        settings[std::string(words[next], static_cast<std::size_t>(sign - words[next]))] = sign + 1;
    }
    char* password = own_memory(room);
    std::size_t length = 0;
    if (settings.contains("password")) {
        const int file = open(settings["password"].c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t bytes = read(file, password, room - 1);
        length = bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
        close(file);
    }
    std::vector<char> masked;
    for (std::size_t i = 0; i < length; ++i) {
        masked.push_back(mask(password[i]));
    }
    PrivilegedRunner runner{"Test Installer", &cancel_requested, log_line, {}, {}};
    apply_settings(settings, &runner);

    const Clock::time_point start = Clock::now();
    const char* argument = next + 1 < count ? words[next + 1] : "";
    const int times = settings.contains("times") ? std::stoi(settings["times"]) : 1;
    std::int32_t result = -1;
    std::atomic<bool> done{false};
    // On a stack of its own, which stays as the entry left it while it is searched.
    std::thread([&] {
        for (int i = 0; i < times; ++i) {
            result = call(&runner, words[next], argument, password);
        }
        done = true;
        done.notify_all();
        for (;;) {
            pause();
        }
    }).detach();
    done.wait(false);
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);

    if (!settings.contains("keep_password")) {
        explicit_bzero(password, room);
    }
    const rlimit limit{256, 256};
    static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
    const std::string descriptors = open_descriptors();
    const char* left = children();
    std::printf("result=%d\ntime=%lld\ndescriptors=%s\nchildren=%s\ncopies=%zu\nsudo_path=%s\n"
                "su_path=%s\n",
                result, static_cast<long long>(time.count()), descriptors.c_str(), left,
                masked.size() < 6 ? 0 : copies_in_memory(masked), runner.sudo_path, runner.su_path);
    std::fflush(stdout);
    _exit(0);
}
