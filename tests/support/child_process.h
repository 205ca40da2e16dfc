// A program started by a test: its arguments, environment and account are the test's choice, its
// output is at hand at any moment, and it never outlives the test.
//
// Standard output and standard error go to files in memory, so that the child never blocks on a
// reader; with a terminal both go to a pseudo-terminal, which is read whenever the text is asked
// for. The destructor kills the child (by its own id) and reaps it; should the test program itself
// die, the kernel kills the child.

#pragma once

#include "support/wait_until.h"

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace support {

struct ChildOptions {
    // The program (looked up in PATH when without a slash) and its arguments.
    std::vector<std::string> command = {};
    // Whole environment as NAME=value; without it the child inherits the test's own.
    std::optional<std::vector<std::string>> environment = {};
    // Account to change to before the program starts; supplementary groups become {gid}.
    std::optional<uid_t> uid = {};
    std::optional<gid_t> gid = {};
    std::string working_directory = {};
    // Standard streams on a pseudo-terminal that is the controlling terminal of a new session.
    bool terminal = false;
};

// How a child ended: exactly one of the two is set.
struct ChildEnd {
    std::optional<int> exit_status;
    std::optional<int> signal;
};

class ChildProcess {
public:
    // Starts the program. Throws std::runtime_error when it cannot even be forked; a program that
    // cannot be executed ends with exit status 127 and says why on standard error.
    explicit ChildProcess(const ChildOptions& options);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t process_id() const { return process_id_; }

    // Everything written so far.
    [[nodiscard]] std::string output();
    [[nodiscard]] std::string error_output() const;

    // Types bytes on the child's terminal.
    void type_on_terminal(const std::string& bytes) const;

    void send_signal(int signal) const;

    // True while the child has not ended.
    [[nodiscard]] bool running();

    // How it ended; nothing when it still runs after patience.
    [[nodiscard]] std::optional<ChildEnd>
    wait_for_end(std::chrono::milliseconds patience = default_patience);

    // Waits until the output holds text; false after patience.
    [[nodiscard]] bool wait_for_output(const std::string& text,
                                       std::chrono::milliseconds patience = default_patience);

private:
    void read_terminal();
    void reap(int wait_options);

    pid_t process_id_ = -1;
    int output_file_ = -1;
    int error_file_ = -1;
    int terminal_ = -1;
    std::string terminal_text_;
    std::optional<ChildEnd> end_;
};

// Runs a command to its end and gives its standard output; throws when it fails or takes longer.
[[nodiscard]] std::string output_of(const std::vector<std::string>& command,
                                    std::chrono::milliseconds patience = default_patience);

} // namespace support
