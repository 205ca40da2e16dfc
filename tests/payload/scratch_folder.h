// scratch_folder.h: a folder of a test's own, and the plug-in unpacked into it by the real tar.
#pragma once

#include <string>

inline constexpr const char* payload_archive = "resources/payload/payload.tar.gz";

// Made under the test's temporary folder, removed with all that is in it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// Unpacks the plug-in archive there; the plug-in's path.
[[nodiscard]] std::string unpack_plugin(const ScratchFolder& folder);
