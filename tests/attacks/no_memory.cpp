// Preloading no_memory.c.

#include "attacks/no_memory.h"

#include "faults/surroundings.h"

#include <cstdlib>
#include <filesystem>

namespace no_memory {

namespace {

constexpr const char* library = "/run/no-memory.so";
constexpr const char* log_path = "/run/no-memory.log";

} // namespace

void prepare(const end_to_end::Scenario& scenario, const std::string& variable) {
    std::filesystem::copy_file(ZEPH_NO_MEMORY, library);
    support::write_file(log_path, "", 0666);
    faults::start_through_shell(scenario,
                                "export " + variable + " NO_MEMORY_LOG=" + std::string(log_path),
                                std::string("env LD_PRELOAD=") + library);
}

std::string log() {
    return faults::text_of(log_path);
}

std::vector<std::string> requests(const std::vector<std::string>& few) {
    const char* range = std::getenv("ZEPH_NO_MEMORY_AT");
    if (range == nullptr) {
        return few;
    }
    char* rest = nullptr;
    const long first = std::strtol(range, &rest, 10);
    const long last = *rest == '-' ? std::strtol(rest + 1, nullptr, 10) : first;
    std::vector<std::string> all;
    for (long request = first; request <= last; ++request) {
        all.push_back("AT=" + std::to_string(request));
    }
    return all;
}

std::string name_of(const std::string& request) {
    std::string name = request;
    name.erase(name.find('='), 1);
    return name;
}

} // namespace no_memory
