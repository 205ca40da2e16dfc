// pty_child.h: one child process on a pseudo-terminal of its own. The only file that forks.
//
// The child gets the slave side as its controlling terminal and standard streams, and nothing else
// of ours: no other descriptor, no ignored or blocked signal, no working directory but "/". Of our
// environment it gets HOME, USER, LOGNAME, SHELL, TERM and TZ; PATH names the system's own folders
// alone, and LC_ALL=C makes its messages recognisable on any desktop. When the program cannot be
// executed the child ends at once with status 255; no second copy of this process goes on running.
// The parent keeps the master side, closed on exec and never blocking.
//
// Plain system calls: interrupted ones are resumed, times are milliseconds. One thread per child.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

struct PtyChild {
    pid_t process;        // 0 once it has been waited for
    int master;           // owned; -1 once closed
    int wait_status;      // as waitpid gives it; known once process is 0
    bool terminal_closed; // the child has let go of its terminal: nothing more can be read
    bool restore_child_signal;
    struct sigaction child_signal; // what SIGCHLD did before, if that had to be changed
};

// Starts arguments[0] (an absolute path) with the null-terminated vector arguments, which is
// copied and only borrowed. false when there is no pseudo-terminal, process or memory for it; then
// there is nothing to undo.
[[nodiscard]] bool pty_child_start(PtyChild* child, const char* const* arguments);

// Waits up to patience_ms for output and reads at most size bytes of it. Gives the number of bytes;
// 0 when none came, or when none can come any more (then it does not wait beyond patience_ms
// either, and terminal_closed tells).
[[nodiscard]] std::size_t pty_child_read(PtyChild* child, char* buffer, std::size_t size,
                                         std::int32_t patience_ms);

// Types count bytes. false when the terminal has not taken all of them within patience_ms or the
// child has closed it; nobody needs to care, since such a child ends or asks again.
[[nodiscard]] bool pty_child_type(PtyChild* child, const char* bytes, std::size_t count,
                                  std::int32_t patience_ms);

// What the child's terminal does with what is typed.
enum class PtyTyping {
    echoed,  // shown, as usual
    hidden,  // kept off the screen: a password is being read
    relayed, // handed on unseen: sudo has switched the terminal to raw, and a command is running
};
[[nodiscard]] PtyTyping pty_child_typing(const PtyChild* child);

// True once the child has ended and has been waited for, so that no zombie is left. Does not wait.
[[nodiscard]] bool pty_child_ended(PtyChild* child);

// Hangs up: closes the master, upon which the system sends the child SIGHUP. The child has still
// to be waited for.
void pty_child_hang_up(PtyChild* child);

// Puts SIGCHLD back as it was; the last call for a child. Leaves an open master open.
void pty_child_finish(PtyChild* child);

// The exit status of an ended child, in bits 8 to 15 of its wait status; so 0 also for a child that
// a signal has ended.
[[nodiscard]] std::int32_t pty_child_exit_status(const PtyChild* child);

// The same as a shell tells it: 128 and the signal's number for a child that a signal has ended.
[[nodiscard]] std::int32_t pty_child_shell_status(const PtyChild* child);

// Whether a child has been started and not finished yet. Any thread.
[[nodiscard]] bool pty_child_at_work();

// Sleeps that long, interrupted or not.
void pause_ms(std::int32_t milliseconds);

// Milliseconds of a clock that nobody sets.
[[nodiscard]] std::int64_t monotonic_ms();
