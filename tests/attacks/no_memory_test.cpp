// Allocations that fail, from the first one on or now and then: a clear outcome, and nothing left.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "faults/surroundings.h"

#include <filesystem>

namespace {

using namespace end_to_end;

class NoMemory : public testing::TestWithParam<int> {
protected:
    NoMemory() {
        const std::string library = "/run/no-memory.so";
        std::filesystem::copy_file(ZEPH_NO_MEMORY, library);
        faults::start_through_shell(scenario_, "export " + variable_, "env LD_PRELOAD=" + library);
    }

    Scenario scenario_;
    std::string variable_ = "NO_MEMORY_FROM=" + std::to_string(GetParam());
};

INSTANTIATE_TEST_SUITE_P(From, NoMemory, testing::Values(1, 2, 5, 10, 30));

TEST_P(NoMemory, IsSaidAndEndsTheRun) {
    scenario_.start();
    const support::ChildEnd end = scenario_.finish();
    EXPECT_EQ(end.exit_status, 255) << scenario_.report();
    EXPECT_NE(scenario_.console().find(": GUI Engine is not running or was not started\n"),
              std::string::npos);
    EXPECT_TRUE(installer_files_in_tmp().empty());
}

} // namespace
