// Running commands and extracting as root with the real sudo and su: words, quotes, results, and
// the wait after an extraction.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace {

namespace files = std::filesystem;

using support::Account;
using support::RunnerOutcome;

const std::string password = "correct horse";
constexpr int extraction_wait_ms = 5000;

std::string text_of(const files::path& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class Entries : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        support::set_root_password(password);
        account_ = support::add_account("user", password, "ALL=(ALL:ALL) ALL");
        files::create_directory("/tmp/packed");
        support::write_file("/tmp/packed/plugin.so", "the plug-in\n", 0666);
        static_cast<void>(support::output_of(
            {"tar", "-C", "/tmp/packed", "-czf", "/tmp/zeph-installer-data.tar.gz", "plugin.so"}));
        files::remove_all("/tmp/packed");
    }

    RunnerOutcome call(const std::string& entry, const std::string& argument,
                       const std::vector<std::string>& settings = {},
                       const std::string& typed = password) {
        return support::call_runner(account_, {entry, argument, typed, settings, {}});
    }

    // Folders that only root may write to.
    void make_root_folder(const files::path& folder) {
        files::create_directories(folder);
        files::permissions(folder, files::perms::owner_all);
    }

    Account account_;
};

TEST_F(Entries, SudoRunsTheWordsOfACommandAsRoot) {
    const RunnerOutcome outcome = call("sudo_run", "cp /etc/shadow /etc/copy");
    EXPECT_EQ(outcome.result, 1) << outcome.text;
    EXPECT_EQ(text_of("/etc/copy"), text_of("/etc/shadow"));
    EXPECT_EQ(outcome.descriptors, "none");
    EXPECT_EQ(outcome.children, "none");
    files::remove("/etc/copy");
}

TEST_F(Entries, SudoRunTellsAFailedCommandAndARefusedPassword) {
    EXPECT_EQ(call("sudo_run", "false").result, 0);
    EXPECT_EQ(call("sudo_run", "true").result, 1);
    EXPECT_EQ(call("sudo_run", "true", {}, "battery staple").result, 0);
    EXPECT_EQ(call("sudo_run", "/no/such/command").result, 0);
}

TEST_F(Entries, SudoRunFreshAlwaysGivesZero) {
    EXPECT_EQ(call("sudo_run_fresh", "touch /etc/fresh").result, 0);
    EXPECT_TRUE(files::exists("/etc/fresh"));
    EXPECT_EQ(call("sudo_run_fresh", "false").result, 0);
}

TEST_F(Entries, SudoForgetSucceedsForEverybody) {
    const RunnerOutcome outcome = call("sudo_forget", "");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_GE(outcome.time_ms, 250);
    EXPECT_EQ(outcome.descriptors, "none");
}

TEST_F(Entries, SudoSplitsAPlainCommandAtBlanksWithoutAShell) {
    EXPECT_EQ(call("sudo_run", "touch /etc/$HOME;x /etc/'q'").result, 1);
    EXPECT_TRUE(files::exists("/etc/$HOME;x"));
    EXPECT_TRUE(files::exists("/etc/'q'"));
    EXPECT_EQ(call("sudo_run", "touch /etc/one 'two'  /etc/three").result, 0)
        << "an empty word names no file";
    EXPECT_TRUE(files::exists("/etc/one"));
    EXPECT_EQ(call("sudo_run", "touch /etc/1 /etc/2 /etc/3 /etc/4 /etc/5 /etc/6").result, 1);
    EXPECT_TRUE(files::exists("/etc/5"));
    EXPECT_FALSE(files::exists("/etc/6")) << "six words, the tool's name among them";
}

TEST_F(Entries, SuRunsALineOfRootsShell) {
    const RunnerOutcome outcome = call("su_run", "id -u > /etc/who && echo \"$0\" >> /etc/who");
    EXPECT_EQ(outcome.result, 0) << outcome.text;
    EXPECT_EQ(text_of("/etc/who").substr(0, 2), "0\n");
    EXPECT_EQ(outcome.descriptors, "/dev/ptmx") << "left open on purpose";
    EXPECT_EQ(outcome.children, "none");
}

TEST_F(Entries, SuRunGivesZeroWhateverBecomesOfTheCommand) {
    EXPECT_EQ(call("su_run", "exit 3").result, 0);
    EXPECT_EQ(call("su_run", "touch /etc/never", {}, "battery staple").result, 0);
    EXPECT_FALSE(files::exists("/etc/never"));
}

TEST_F(Entries, AFolderWithABlankIsSplitUnlessNamesAreExact) {
    make_root_folder("/opt/a b");
    make_root_folder("/opt/a");
    for (const char* entry : {"sudo_extract", "su_extract"}) {
        EXPECT_EQ(call(entry, "/opt/a b").result, 0) << "the failed tar is not reported";
        EXPECT_TRUE(files::is_empty("/opt/a b")) << entry;
        EXPECT_TRUE(files::is_empty("/opt/a")) << "tar looks for a member named b: " << entry;
    }
}

TEST_F(Entries, SudoExtractsIntoExactlyTheNamedFolder) {
    const std::string deep = "/opt/" + std::string(250, 'd') + "/" + std::string(250, 'e');
    for (const std::string& folder : {std::string("/opt/it's a \"$HOME\"; b"), deep}) {
        make_root_folder(folder);
        const RunnerOutcome outcome = call("sudo_extract", folder, {"exact=1"});
        EXPECT_EQ(outcome.result, 0) << outcome.text;
        EXPECT_GE(outcome.time_ms, extraction_wait_ms);
        EXPECT_EQ(text_of(folder + "/plugin.so"), "the plug-in\n");
        EXPECT_EQ(outcome.descriptors, "none");
        EXPECT_EQ(outcome.copies, 0);
    }
}

TEST_F(Entries, SuExtractsIntoExactlyTheNamedFolder) {
    const std::string deep = "/opt/" + std::string(250, 'd') + "/" + std::string(250, 'e');
    for (const std::string& folder : {std::string("/opt/it's a \"$HOME\"; b"), deep}) {
        make_root_folder(folder);
        const RunnerOutcome outcome = call("su_extract", folder, {"exact=1"});
        EXPECT_EQ(outcome.result, 0) << outcome.text;
        EXPECT_GE(outcome.time_ms, extraction_wait_ms);
        EXPECT_EQ(text_of(folder + "/plugin.so"), "the plug-in\n");
        EXPECT_EQ(outcome.descriptors, "/dev/ptmx");
        EXPECT_EQ(outcome.copies, 0);
    }
}

TEST_F(Entries, ThePlainExtractionWorksForAPlainFolder) {
    for (const char* entry : {"sudo_extract", "su_extract"}) {
        const std::string folder = std::string("/opt/") + entry;
        make_root_folder(folder);
        EXPECT_EQ(call(entry, folder).result, 0);
        EXPECT_EQ(text_of(folder + "/plugin.so"), "the plug-in\n");
        struct stat status {};
        ASSERT_EQ(stat((folder + "/plugin.so").c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 0U);
    }
}

TEST_F(Entries, ACutCommandIsNotRun) {
    const std::string folder = "/opt/" + std::string(200, 'x');
    std::string too_long = folder;
    while (too_long.size() < 1000) {
        too_long += "/" + std::string(200, 'y');
    }
    files::create_directories(too_long);
    for (const char* entry : {"sudo_extract", "su_extract"}) {
        const RunnerOutcome outcome = call(entry, too_long);
        EXPECT_EQ(outcome.result, 1);
        EXPECT_LT(outcome.time_ms, 200) << "nothing was started";
    }
}

// More than a terminal holds; nobody would ever read it if the runner only waited for the end.
TEST_F(Entries, ACommandThatPrintsALotComesToItsEnd) {
    support::write_file("/usr/local/bin/flood", "#!/bin/sh\nseq 1 100000\n", 0755);
    const RunnerOutcome by_sudo = call("sudo_run", "/usr/local/bin/flood");
    EXPECT_EQ(by_sudo.result, 1) << by_sudo.text;
    const RunnerOutcome by_su = call("su_run", "flood; touch /etc/flooded");
    EXPECT_EQ(by_su.result, 0);
    EXPECT_TRUE(files::exists("/etc/flooded"));
}

// A line of output that names a password, in a terminal that sudo has switched to raw, is no
// question.
TEST_F(Entries, OutputThatNamesAPasswordIsNotAnswered) {
    support::write_file("/usr/local/bin/talk",
                        "#!/bin/sh\necho the password file\nprintf 'password: '\nsleep 4\n"
                        "timeout --foreground 1 cat > /etc/heard\ntrue\n",
                        0755);
    for (const char* setting : {"use_pty", "!use_pty"}) {
        support::add_sudo_rules("pty", std::string("Defaults ") + setting);
        const RunnerOutcome outcome = call("sudo_run", "/usr/local/bin/talk");
        EXPECT_TRUE(files::exists("/etc/heard")) << outcome.text;
        EXPECT_EQ(text_of("/etc/heard"), "") << setting;
        EXPECT_EQ(outcome.result, 1);
        files::remove("/etc/heard");
    }
}

} // namespace
