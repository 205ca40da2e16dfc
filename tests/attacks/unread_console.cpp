// A named pipe, held open.

#include "attacks/unread_console.h"

#include "faults/surroundings.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* path = "/run/console";

} // namespace

UnreadConsole::UnreadConsole(const end_to_end::Scenario& scenario, const std::string& wrap) {
    (void)mkfifo(path, 0666);
    (void)chmod(path, 0666);
    pipe_ = open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    faults::start_through_shell(scenario, "", wrap, std::string("> ") + path);
}

UnreadConsole::~UnreadConsole() {
    close(pipe_);
}

void UnreadConsole::fill() const {
    for (std::string text(4096, '-'); !text.empty();) {
        if (write(pipe_, text.data(), text.size()) < 0) {
            text.resize(text.size() / 2);
        }
    }
}
