// Starting, watching and ending a test's child programs.

#include "support/child_process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <pty.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

std::vector<char*> pointers_to(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

int file_in_memory(const char* name) {
    const int file = memfd_create(name, MFD_CLOEXEC);
    if (file < 0) {
        throw std::runtime_error(std::string("no file in memory: ") + std::strerror(errno));
    }
    return file;
}

std::string text_of_file(int file) {
    std::string text;
    char block[4096];
    for (;;) {
        const ssize_t count = pread(file, block, sizeof block, static_cast<off_t>(text.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return text;
        }
        text.append(block, static_cast<std::size_t>(count));
    }
}

[[noreturn]] void fail_in_child(const char* what) {
    dprintf(STDERR_FILENO, "%s: %s\n", what, std::strerror(errno));
    _exit(127);
}

// Between fork and exec only what is safe in a child of a threaded program.
[[noreturn]] void become_program(const ChildOptions& options, pid_t parent, char* const* arguments,
                                 char* const* environment, int output_file, int error_file) {
    if (!options.terminal) {
        const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
        dup2(nothing, STDIN_FILENO);
        dup2(output_file, STDOUT_FILENO);
        dup2(error_file, STDERR_FILENO);
    }
    // What the test runner left open is none of the program's.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (options.gid && (setgroups(1, &*options.gid) != 0 || setgid(*options.gid) != 0)) {
        fail_in_child("cannot change group");
    }
    if (options.uid && setuid(*options.uid) != 0) {
        fail_in_child("cannot change user");
    }
    if (!options.working_directory.empty() && chdir(options.working_directory.c_str()) != 0) {
        fail_in_child("cannot change folder");
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(127);
    }
    execvpe(arguments[0], arguments, environment);
    fail_in_child(arguments[0]);
}

} // namespace

ChildProcess::ChildProcess(const ChildOptions& options) {
    const std::vector<char*> arguments = pointers_to(options.command);
    std::vector<char*> own_environment;
    char* const* environment = environ;
    if (options.environment) {
        own_environment = pointers_to(*options.environment);
        environment = own_environment.data();
    }
    output_file_ = file_in_memory("output");
    error_file_ = file_in_memory("errors");
    const pid_t parent = getpid();
    process_id_ = options.terminal ? forkpty(&terminal_, nullptr, nullptr, nullptr) : fork();
    if (process_id_ < 0) {
        throw std::runtime_error(std::string("cannot fork: ") + std::strerror(errno));
    }
    if (process_id_ == 0) {
        become_program(options, parent, arguments.data(), environment, output_file_, error_file_);
    }
    if (options.terminal) {
        fcntl(terminal_, F_SETFD, FD_CLOEXEC);
        fcntl(terminal_, F_SETFL, O_NONBLOCK);
    }
}

ChildProcess::~ChildProcess() {
    if (!end_) {
        send_signal(SIGKILL);
        reap(0);
    }
    for (const int file : {output_file_, error_file_, terminal_}) {
        if (file >= 0) {
            close(file);
        }
    }
}

void ChildProcess::read_terminal() {
    char block[4096];
    for (;;) {
        const ssize_t count = read(terminal_, block, sizeof block);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return;
        }
        terminal_text_.append(block, static_cast<std::size_t>(count));
    }
}

std::string ChildProcess::output() {
    if (terminal_ < 0) {
        return text_of_file(output_file_);
    }
    read_terminal();
    return terminal_text_;
}

std::string ChildProcess::error_output() const {
    return text_of_file(error_file_);
}

void ChildProcess::type_on_terminal(const std::string& bytes) const {
    if (write(terminal_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("cannot type on the child's terminal");
    }
}

void ChildProcess::send_signal(int signal) const {
    if (!end_) {
        kill(process_id_, signal);
    }
}

void ChildProcess::reap(int wait_options) {
    int status = 0;
    pid_t reaped = 0;
    do {
        reaped = waitpid(process_id_, &status, wait_options);
    } while (reaped < 0 && errno == EINTR);
    if (reaped != process_id_) {
        return;
    }
    end_ = ChildEnd{};
    if (WIFEXITED(status)) {
        end_->exit_status = WEXITSTATUS(status);
    } else {
        end_->signal = WTERMSIG(status);
    }
}

bool ChildProcess::running() {
    if (!end_) {
        reap(WNOHANG);
    }
    return !end_;
}

std::optional<ChildEnd> ChildProcess::wait_for_end(std::chrono::milliseconds patience) {
    const auto ended = [this] {
        // A child that fills its terminal would otherwise wait for a reader for ever.
        if (terminal_ >= 0) {
            read_terminal();
        }
        return !running();
    };
    if (!wait_until(ended, patience, [this] { return output() + error_output(); })) {
        return std::nullopt;
    }
    return end_;
}

bool ChildProcess::wait_for_output(const std::string& text, std::chrono::milliseconds patience) {
    return wait_until([&] { return output().find(text) != std::string::npos; }, patience,
                      [this] { return output() + error_output(); });
}

std::string output_of(const std::vector<std::string>& command, std::chrono::milliseconds patience) {
    ChildProcess child({.command = command});
    const std::optional<ChildEnd> end = child.wait_for_end(patience);
    if (!end || end->exit_status != 0) {
        throw std::runtime_error(command.front() + " failed: " + child.error_output());
    }
    return child.output();
}

} // namespace support
