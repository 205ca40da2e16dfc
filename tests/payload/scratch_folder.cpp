// scratch_folder.cpp: mkdtemp, and tar.
#include "scratch_folder.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

ScratchFolder::ScratchFolder() : path_(testing::TempDir() + "payload-test-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("no scratch folder");
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string unpack_plugin(const ScratchFolder& folder) {
    const std::string text =
        support::output_of({"tar", "-xf", payload_archive, "-C", folder.path()});
    if (!text.empty()) {
        throw std::runtime_error("tar says: " + text);
    }
    return folder.file("QB20.so");
}
