// Starting Xvfb.

#include "support/x_server.h"

#include <stdexcept>

namespace support {

XServer::XServer(const XServerOptions& options) {
    // The display number comes on standard output when the server is ready. Access control is off
    // because the program under test runs under another account.
    std::vector<std::string> command{"Xvfb",      "-displayfd", "1",  "-noreset",
                                     "-nolisten", "tcp",        "-ac"};
    const std::string size = std::to_string(options.width) + "x" + std::to_string(options.height) +
                             "x" + std::to_string(options.depth);
    for (int screen = 0; screen < options.screens; ++screen) {
        command.insert(command.end(), {"-screen", std::to_string(screen), size});
    }
    command.insert(command.end(), options.extra_arguments.begin(), options.extra_arguments.end());
    process_ = std::make_unique<ChildProcess>(ChildOptions{.command = command});
    const bool answered =
        wait_until([this] { return !process_->running() || !process_->output().empty(); });
    if (!answered || !process_->wait_for_output("\n", std::chrono::milliseconds{1000})) {
        throw std::runtime_error("no X server: " + process_->error_output());
    }
    std::string number = process_->output();
    number.erase(number.find('\n'));
    display_name_ = ":" + number;
}

void XServer::stop() {
    process_.reset();
}

} // namespace support
