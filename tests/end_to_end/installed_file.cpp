// Reading installed files and the archive, with the system's own tar and sha256sum.

#include "end_to_end/installed_file.h"

#include "support/child_process.h"

#include <filesystem>

namespace end_to_end {

namespace {

constexpr std::size_t hash_length = 64;

std::string from_shell(const std::string& command) {
    return support::output_of({"sh", "-c", command}, std::chrono::milliseconds{60'000});
}

} // namespace

std::optional<PluginFile> plugin_in(const std::string& folder) {
    const std::string path = folder + "/" + plugin_name;
    if (!std::filesystem::is_regular_file(path)) {
        return std::nullopt;
    }
    return PluginFile{std::filesystem::file_size(path),
                      from_shell("sha256sum < '" + path + "'").substr(0, hash_length)};
}

PluginFile plugin_of_archive() {
    const std::string extract = std::string("tar -xOzf '") + ZEPH_SOURCE +
                                "/resources/payload/payload.tar.gz' " + plugin_name;
    return {std::stoull(from_shell(extract + " | wc -c")),
            from_shell(extract + " | sha256sum").substr(0, hash_length)};
}

std::vector<std::string> installer_files_in_tmp() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("zeph-installer")) {
            names.push_back(name);
        }
    }
    return names;
}

} // namespace end_to_end
