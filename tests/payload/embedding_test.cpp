// embedding_test.cpp: the build stops when the compiled length and the embedded bytes disagree.
#include "scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

struct BuildStep {
    int status;
    std::string complaint;
};

BuildStep run_step(const std::vector<std::string>& command) {
    support::ChildProcess compiler({.command = command});
    const auto end = compiler.wait_for_end();
    return {end && end->exit_status ? *end->exit_status : -1, compiler.error_output()};
}

BuildStep assemble(const ScratchFolder& folder, const std::string& archive, int bytes) {
    return run_step({TEST_C_COMPILER, "-fPIC", "-DZEPH_ARCHIVE_BYTES=" + std::to_string(bytes),
                     "-DZEPH_PAYLOAD_ARCHIVE=\"" + archive + "\"",
                     "-DZEPH_PAYLOAD_ICON=\"resources/payload/embedded_payload.S\"", "-c",
                     "resources/payload/embedded_payload.S", "-o", folder.file("payload.o")});
}

BuildStep compile_check(const ScratchFolder& folder, int bytes) {
    return run_step({TEST_CXX_COMPILER, "-std=c++20", "-Isource",
                     "-DZEPH_ARCHIVE_BYTES=" + std::to_string(bytes), "-c",
                     "resources/payload/archive_size_check.cpp", "-o", folder.file("check.o")});
}

} // namespace

TEST(Embedding, AssemblesTheArchiveOfTheRightLength) {
    const ScratchFolder folder;
    const BuildStep step = assemble(folder, payload_archive, 1058756);
    EXPECT_EQ(step.status, 0) << step.complaint;
}

TEST(Embedding, RefusesAnArchiveThatIsOneByteShort) {
    const ScratchFolder folder;
    const std::string archive = folder.file("short archive.tar.gz");
    std::filesystem::copy_file(payload_archive, archive);
    std::filesystem::resize_file(archive, 1058755);
    const BuildStep step = assemble(folder, archive, 1058756);
    EXPECT_NE(step.status, 0);
    EXPECT_NE(step.complaint.find("embedded archive does not have the length"), std::string::npos)
        << step.complaint;
    EXPECT_FALSE(std::filesystem::exists(folder.file("payload.o")));
}

TEST(Embedding, CompilesWhenTheSettingsNameTheMeasuredLength) {
    const ScratchFolder folder;
    const BuildStep step = compile_check(folder, 1058756);
    EXPECT_EQ(step.status, 0) << step.complaint;
}

TEST(Embedding, RefusesSettingsThatNameAnotherLength) {
    const ScratchFolder folder;
    const BuildStep step = compile_check(folder, 1058757);
    EXPECT_NE(step.status, 0);
    EXPECT_NE(step.complaint.find("archive_size in product_settings.h"), std::string::npos)
        << step.complaint;
}

TEST(Embedding, LaysTableArchiveAndIconOneBehindTheOther) {
    const ScratchFolder folder;
    ASSERT_EQ(assemble(folder, payload_archive, 1058756).status, 0);
    const std::string symbols =
        support::output_of({"nm", "--numeric-sort", "--defined-only", folder.file("payload.o")});
    const auto address = [&symbols](const std::string& name) {
        const std::size_t line = symbols.find(" D " + name + "\n");
        return line == std::string::npos ? -1
                                         : std::stol(symbols.substr(line - 16, 16), nullptr, 16);
    };
    const long images = address("zeph_payload_images");
    const long archive = address("zeph_payload_archive");
    const long icon = address("zeph_payload_icon");
    const long icon_bytes =
        static_cast<long>(std::filesystem::file_size("resources/payload/embedded_payload.S"));
    ASSERT_GE(images, 0) << symbols;
    EXPECT_EQ(archive - images, 3 * static_cast<long>(sizeof(void*)));
    EXPECT_EQ(icon - archive, 1058756);
    EXPECT_EQ(address("zeph_payload_end") - icon, icon_bytes);
}
