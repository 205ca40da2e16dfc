// Giving up at any moment: what is only a question is broken off at once, what changes the system
// is let finish, and nothing waits for ever.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace files = std::filesystem;

using support::RunnerOutcome;

class Cancel : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (!IsSkipped()) {
            account_ = support::add_account("user", "correct horse", "ALL=(ALL:ALL) ALL");
        }
    }

    RunnerOutcome call(const std::string& entry, const std::string& argument,
                       const std::vector<std::string>& settings) {
        return support::call_runner(account_, {entry, argument, "correct horse", settings, {}});
    }

    void make_archive() {
        support::write_file("/tmp/plugin.so", "the plug-in\n", 0666);
        static_cast<void>(support::output_of(
            {"tar", "-C", "/tmp", "-czf", "/tmp/zeph-installer-data.tar.gz", "plugin.so"}));
    }

    support::Account account_;
};

TEST_F(Cancel, APasswordCheckThatGetsNoPromptIsBrokenOff) {
    const std::string path = support::install_stand_in("slow", {"wait=600000"});
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome outcome =
            call(method + "_check_password", "", {method + "=" + path, "cancel_after=1000"});
        EXPECT_EQ(outcome.result, 0) << outcome.text;
        EXPECT_LT(outcome.time_ms, 8000);
        EXPECT_EQ(outcome.children, "none");
        EXPECT_EQ(outcome.descriptors, "none");
    }
}

TEST_F(Cancel, APasswordCheckThatIsThoughtAboutIsBrokenOff) {
    const std::string path = support::install_stand_in(
        "thinker", {"prompt=password", "password=correct horse", "judge=600000"});
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome outcome =
            call(method + "_check_password", "", {method + "=" + path, "cancel_after=2500"});
        EXPECT_EQ(outcome.result, 0) << outcome.text;
        EXPECT_LT(outcome.time_ms, 10000);
        EXPECT_EQ(outcome.children, "none");
    }
}

TEST_F(Cancel, APasswordCheckWhoseForgettingHangsIsBrokenOff) {
    const std::string path = support::install_stand_in(
        "forgetful", {"prompt=password", "password=correct horse", "forget=600000"});
    const RunnerOutcome outcome =
        call("sudo_check_password", "", {"sudo=" + path, "cancel_after=1000"});
    EXPECT_EQ(outcome.result, 0) << outcome.text;
    EXPECT_LT(outcome.time_ms, 8000);
    EXPECT_EQ(outcome.children, "none");
    EXPECT_EQ(outcome.descriptors, "none");
}

TEST_F(Cancel, TheProbeIsBrokenOff) {
    const std::string path =
        support::install_stand_in("asker", {"probe=ask", "lecture=Who are you? ", "wait=600000"});
    const RunnerOutcome outcome = call("sudo_probe", "user", {"sudo=" + path, "cancel_after=1000"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_LT(outcome.time_ms, 8000);
}

TEST_F(Cancel, AnExtractionIsCarriedOutAlsoWhenAskedForBefore) {
    make_archive();
    support::set_root_password("correct horse");
    for (const char* entry : {"sudo_extract", "su_extract"}) {
        const std::string folder = std::string("/opt/") + entry;
        files::create_directories(folder);
        const RunnerOutcome outcome = call(entry, folder, {"cancel_after=0", "exact=1"});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_TRUE(files::exists(folder + "/plugin.so"));
        EXPECT_LT(outcome.time_ms, 5000) << "the wait after it is cut short";
    }
}

TEST_F(Cancel, TheWaitAfterAnExtractionIsCutShort) {
    make_archive();
    const RunnerOutcome outcome = call("sudo_extract", "/opt", {"cancel_after=3000"});
    EXPECT_EQ(outcome.result, 1);
    EXPECT_GE(outcome.time_ms, 2500);
    EXPECT_LT(outcome.time_ms, 4500);
}

TEST_F(Cancel, ACommandUnderWayIsLetFinish) {
    support::write_file("/usr/local/bin/slow", "#!/bin/sh\nsleep 5\ntouch /etc/finished\n", 0755);
    const RunnerOutcome outcome = call("sudo_run", "/usr/local/bin/slow", {"cancel_after=2000"});
    EXPECT_EQ(outcome.result, 1) << outcome.text;
    EXPECT_TRUE(files::exists("/etc/finished"));
}

TEST_F(Cancel, ACommandThatNeverEndsIsLeftAfterHalfAMinute) {
    const std::string path = support::install_stand_in(
        "endless", {"prompt=password", "password=correct horse", "stay=600000"});
    const RunnerOutcome outcome = call("sudo_run", "true", {"sudo=" + path, "cancel_after=1500"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_GE(outcome.time_ms, 30000);
    EXPECT_LT(outcome.time_ms, 36000);
    EXPECT_EQ(outcome.children, "none");
}

} // namespace
