// A private world leaves nothing on the machine, can be entered again, and is nobody else's.

#include "support/worlds/accounts.h"
#include "support/worlds/private_world.h"

#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <sstream>
#include <unistd.h>

namespace {

namespace files = std::filesystem;

std::string text_of(const char* path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(PrivateWorld, LeavesTheMachineAsItWas) {
    if (const auto obstacle = support::world_obstacle()) {
        GTEST_SKIP() << "This test " << *obstacle << ".";
    }
    const std::string users = text_of("/etc/passwd");
    const std::string secrets = text_of("/etc/shadow");
    const std::string rules = text_of("/etc/sudoers");
    const files::path folder = files::current_path();
    for (int round = 0; round < 4; ++round) { // more often than overlays can be stacked
        support::PrivateWorld world;
        const support::Account account =
            support::add_account("passer-by", "secret", "ALL=(ALL:ALL) ALL");
        support::set_root_password("secret");
        support::hide_program("/usr/bin/sudo");
        support::write_file("/usr/lib/passer-by", "x");
        support::write_file("/var/log/passer-by", "x");
        support::write_file("/tmp/passer-by", "x");
        support::write_file("/opt/passer-by", "x");
        EXPECT_NE(getpwnam("passer-by"), nullptr);
        EXPECT_FALSE(files::exists("/usr/bin/sudo"));
        EXPECT_EQ(files::current_path(), folder);
    }
    EXPECT_EQ(text_of("/etc/passwd"), users);
    EXPECT_EQ(text_of("/etc/shadow"), secrets);
    EXPECT_EQ(text_of("/etc/sudoers"), rules);
    EXPECT_TRUE(files::exists("/usr/bin/sudo"));
    for (const char* path : {"/usr/lib/passer-by", "/var/log/passer-by", "/tmp/passer-by",
                             "/opt/passer-by", "/home/passer-by"}) {
        EXPECT_FALSE(files::exists(path)) << path;
    }
    EXPECT_EQ(files::current_path(), folder);
}

TEST(PrivateWorld, KeepsWhatTheTestRunsFromInView) {
    if (const auto obstacle = support::world_obstacle()) {
        GTEST_SKIP() << "This test " << *obstacle << ".";
    }
    char folder[] = "/tmp/kept-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    std::ofstream(std::string(folder) + "/file") << "x";
    {
        support::PrivateWorld world({.keep_visible = {folder}});
        EXPECT_TRUE(files::exists(std::string(folder) + "/file"));
        EXPECT_TRUE(files::exists("/proc/self/exe"));
    }
    files::remove_all(folder);
}

class Accounts : public WorldTest {};

TEST_F(Accounts, ProgramsRunUnderThemInTheirHome) {
    const support::Account account = support::add_account("anna", "secret");
    support::ChildProcess child(
        support::run_as(account, {"/bin/sh", "-c", "id -un; pwd; echo $HOME $MORE"}, {"MORE=x"}));
    ASSERT_TRUE(child.wait_for_end());
    EXPECT_EQ(child.output(), "anna\n/home/anna\n/home/anna x\n") << child.error_output();
}

} // namespace
