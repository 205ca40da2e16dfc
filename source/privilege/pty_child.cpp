// pty_child.cpp: forkpty, execv, and the system calls around them.
#include "privilege/pty_child.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>

namespace {

constexpr int unknown_wait_status = 255 << 8;
constexpr std::int32_t signalled_status = 128; // and the signal's number, as shells say it

std::atomic<int> children_at_work{0};

void free_strings(char** strings) {
    for (char** string = strings; string != nullptr && *string != nullptr; ++string) {
        std::free(*string);
    }
    std::free(strings);
}

bool starts_with(const char* text, const char* start) {
    return std::strncmp(text, start, std::strlen(start)) == 0;
}

// A heap vector of heap copies of strings, without those that keep refuses; room for some more.
char** copy_strings(const char* const* strings, bool (*keep)(const char*), std::size_t more) {
    std::size_t count = 0;
    while (strings[count] != nullptr) {
        ++count;
    }
    auto** copies = static_cast<char**>(std::calloc(count + more + 1, sizeof(char*)));
    std::size_t next = 0;
    for (std::size_t i = 0; copies != nullptr && i < count; ++i) {
        if (!keep(strings[i])) {
            continue;
        }
        copies[next] = strdup(strings[i]);
        if (copies[next] == nullptr) {
            free_strings(copies);
            return nullptr;
        }
        ++next;
    }
    return copies;
}

// What says who the person is and where. Everything else stays behind: su, and many a sudo, hand on
// to root whatever they are given, and tar, a shell and the search for programs obey variables that
// any program of the person's may have set.
constexpr const char* kept_variables[] = {"HOME=", "USER=", "LOGNAME=", "SHELL=", "TERM=", "TZ="};

constexpr const char* fixed_variables[] = {
    "LC_ALL=C", // the child's complaints have to be recognised
    "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
};

bool is_kept(const char* variable) {
    return std::any_of(std::begin(kept_variables), std::end(kept_variables),
                       [variable](const char* start) { return starts_with(variable, start); });
}

char** child_environment() {
    char** variables = copy_strings(environ, is_kept, std::size(fixed_variables));
    char** end = variables;
    while (end != nullptr && *end != nullptr) {
        ++end;
    }
    for (const char* variable : fixed_variables) {
        if (variables == nullptr || (*end = strdup(variable)) == nullptr) {
            free_strings(variables);
            return nullptr;
        }
        ++end;
    }
    return variables;
}

void close_all_but_terminal() {
#ifdef SYS_close_range
    if (syscall(SYS_close_range, 3U, ~0U, 0U) == 0) {
        return;
    }
#endif
    rlimit limit{};
    int count = 65536;
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < 65536) {
        count = static_cast<int>(limit.rlim_cur);
    }
    for (int descriptor = 3; descriptor < count; ++descriptor) {
        close(descriptor);
    }
}

// An ignored SIGHUP (a program started with nohup) would outlive the exec, and the child with it
// every hang-up.
void reset_signals() {
    struct sigaction normal {};
    normal.sa_handler = SIG_DFL;
    sigemptyset(&normal.sa_mask);
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &normal, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Between fork and exec nothing may be called that takes a lock: another thread of the parent may
// have held it.
[[noreturn]] void become(char** arguments, char** variables) {
    setsid();                       // no effect where forkpty has already made the session
    static_cast<void>(!chdir("/")); // what is browsed is not where root is to begin
    close_all_but_terminal();
    reset_signals();
    environ = variables;
    const int result = execv(arguments[0], arguments);
    _exit(result);
}

// With SIGCHLD ignored, as some launchers leave it, a child's exit status would be lost.
void keep_children_waitable(PtyChild* child) {
    struct sigaction* before = &child->child_signal;
    const bool lost = sigaction(SIGCHLD, nullptr, before) == 0 &&
                      (before->sa_handler == SIG_IGN || (before->sa_flags & SA_NOCLDWAIT) != 0);
    if (lost) {
        struct sigaction normal {};
        normal.sa_handler = SIG_DFL;
        sigemptyset(&normal.sa_mask);
        child->restore_child_signal = sigaction(SIGCHLD, &normal, nullptr) == 0;
    }
}

// poll for one descriptor; false when nothing is ready in time.
bool wait_for(int descriptor, short events, std::int32_t patience_ms) {
    const std::int64_t deadline = monotonic_ms() + patience_ms;
    for (;;) {
        pollfd ready{descriptor, events, 0};
        const std::int64_t left = deadline - monotonic_ms();
        const int count = poll(&ready, 1, left > 0 ? static_cast<int>(left) : 0);
        if (count >= 0 || errno != EINTR) {
            return count > 0;
        }
    }
}

} // namespace

bool pty_child_start(PtyChild* child, const char* const* arguments) {
    *child = PtyChild{};
    child->master = -1;
    char** argument_copies = copy_strings(
        arguments, [](const char*) { return true; }, 0);
    char** variables = child_environment();
    if (argument_copies == nullptr || argument_copies[0] == nullptr || variables == nullptr) {
        free_strings(argument_copies);
        free_strings(variables);
        return false;
    }
    children_at_work += 1; // before it is there, so that nobody misses it
    keep_children_waitable(child);
    // No handler of ours may run in the child: it would speak for this process.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t process = forkpty(&child->master, nullptr, nullptr, nullptr);
    if (process == 0) {
        become(argument_copies, variables);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    free_strings(argument_copies);
    free_strings(variables);
    if (process < 0) {
        child->master = -1;
        pty_child_finish(child);
        return false;
    }
    child->process = process;
    fcntl(child->master, F_SETFD, FD_CLOEXEC);
    fcntl(child->master, F_SETFL, O_RDWR | O_NONBLOCK);
    return true;
}

std::size_t pty_child_read(PtyChild* child, char* buffer, std::size_t size,
                           std::int32_t patience_ms) {
    if (child->terminal_closed || child->master < 0) {
        pause_ms(patience_ms);
        return 0;
    }
    if (!wait_for(child->master, POLLIN, patience_ms)) {
        return 0;
    }
    ssize_t count = -1;
    do {
        count = read(child->master, buffer, size);
    } while (count < 0 && errno == EINTR);
    if (count > 0) {
        return static_cast<std::size_t>(count);
    }
    if (count == 0 || errno != EAGAIN) {
        child->terminal_closed = true;
    }
    return 0;
}

bool pty_child_type(PtyChild* child, const char* bytes, std::size_t count,
                    std::int32_t patience_ms) {
    const std::int64_t deadline = monotonic_ms() + patience_ms;
    while (count > 0) {
        const ssize_t written = write(child->master, bytes, count);
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        } else if (errno == EAGAIN) {
            const std::int64_t left = deadline - monotonic_ms();
            if (left <= 0) {
                return false;
            }
            // A terminal that takes nothing may still be reported as ready.
            pause_ms(1);
            static_cast<void>(wait_for(child->master, POLLOUT, static_cast<std::int32_t>(left)));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

PtyTyping pty_child_typing(const PtyChild* child) {
    termios terminal{};
    if (child->master < 0 || tcgetattr(child->master, &terminal) != 0 ||
        (terminal.c_lflag & ECHO) != 0) {
        return PtyTyping::echoed;
    }
    // Whoever reads a password leaves the cooking of output alone.
    return (terminal.c_oflag & OPOST) != 0 ? PtyTyping::hidden : PtyTyping::relayed;
}

bool pty_child_ended(PtyChild* child) {
    if (child->process == 0) {
        return true;
    }
    int status = 0;
    pid_t ended = -1;
    do {
        ended = waitpid(child->process, &status, WNOHANG);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0) {
        return false;
    }
    // Somebody else has waited for it: how it ended nobody can tell, so it counts as failed.
    child->wait_status = ended > 0 ? status : unknown_wait_status;
    child->process = 0;
    return true;
}

void pty_child_hang_up(PtyChild* child) {
    if (child->master >= 0) {
        close(child->master);
        child->master = -1;
    }
    child->terminal_closed = true;
}

void pty_child_finish(PtyChild* child) {
    if (child->restore_child_signal) {
        sigaction(SIGCHLD, &child->child_signal, nullptr);
        child->restore_child_signal = false;
    }
    children_at_work -= 1;
}

bool pty_child_at_work() {
    return children_at_work != 0;
}

std::int32_t pty_child_exit_status(const PtyChild* child) {
    return (child->wait_status >> 8) & 0xff;
}

std::int32_t pty_child_shell_status(const PtyChild* child) {
    return WIFSIGNALED(child->wait_status) ? signalled_status + WTERMSIG(child->wait_status)
                                           : pty_child_exit_status(child);
}

void pause_ms(std::int32_t milliseconds) {
    timespec left{milliseconds / 1000, milliseconds % 1000 * 1'000'000L};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

std::int64_t monotonic_ms() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * std::int64_t{1000} + now.tv_nsec / 1'000'000;
}
