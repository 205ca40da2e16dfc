// A private X server for one test: no other test, and no person, ever sees its windows.
//
// Xvfb chooses a free display number itself, so that any number of servers run side by side. The
// server ends with the object, or with the test program.

#pragma once

#include "support/child_process.h"

#include <memory>
#include <string>
#include <vector>

namespace support {

struct XServerOptions {
    int width = 1280; // device pixels
    int height = 800;
    int depth = 24;                                // 8 (PseudoColor), 15, 16, 24 or 30
    int screens = 1;                               // all of the same size and depth
    std::vector<std::string> extra_arguments = {}; // for instance {"-dpi", "192"}
};

class XServer {
public:
    // Returns when the server accepts clients; throws std::runtime_error when it does not come up.
    explicit XServer(const XServerOptions& options = {});

    // The value for DISPLAY, as ":7".
    [[nodiscard]] const std::string& display_name() const { return display_name_; }
    [[nodiscard]] pid_t process_id() const { return process_->process_id(); }

    // Ends the server at once, as a crash would: for tests of a lost connection.
    void stop();

private:
    std::unique_ptr<ChildProcess> process_;
    std::string display_name_;
};

} // namespace support
