// Reading /proc.

#include "start_up/process_figures.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace start_up {

namespace {

std::string folder_of(pid_t process) {
    return "/proc/" + std::to_string(process);
}

} // namespace

long status_kilobytes(pid_t process, const std::string& name) {
    std::ifstream file(folder_of(process) + "/status");
    std::string line;
    while (std::getline(file, line)) {
        if (line.starts_with(name + ":")) {
            return std::stol(line.substr(name.size() + 1));
        }
    }
    return -1;
}

double processor_seconds(pid_t process) {
    std::ifstream file(folder_of(process) + "/stat");
    std::string line;
    std::getline(file, line);
    // The program's name, in parentheses, may hold blanks; user time is the 12th field behind it.
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string skipped;
    for (int field = 0; field < 11; ++field) {
        fields >> skipped;
    }
    long user = 0;
    long system = 0;
    fields >> user >> system;
    return static_cast<double>(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double scheduled_seconds(pid_t process) {
    double nanoseconds = 0;
    for (const auto& thread : std::filesystem::directory_iterator(folder_of(process) + "/task")) {
        std::ifstream file(thread.path() / "schedstat");
        double running = 0;
        file >> running;
        nanoseconds += running;
    }
    return nanoseconds / 1e9;
}

} // namespace start_up
