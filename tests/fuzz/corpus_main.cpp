// Runs a harness once over each file of the folders that are named, for compilers without a fuzzing
// library: what was once found stays found with any of them.

#include "fuzz/fuzz_input.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

namespace {

void run_file(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    // Exactly as long as the file, so that a sanitizer sees a read past the end.
    const auto data = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), data.get());
    LLVMFuzzerTestOneInput(data.get(), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            run_file(entry.path());
            ++files;
        }
    }
    std::fprintf(stderr, "%d files\n", files);
    return files > 0 ? 0 : 1;
}
