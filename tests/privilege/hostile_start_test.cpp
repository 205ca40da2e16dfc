// Tools that cannot be run, die, do not let go, or ask what nobody can answer; and launchers that
// leave signals ignored.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using support::RunnerOutcome;

const std::string password = "open sesame";

class HostileStart : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (!IsSkipped()) {
            account_ = support::add_account("user", password, "ALL=(ALL:ALL) ALL");
        }
    }

    RunnerOutcome call(const std::string& entry, const std::string& argument,
                       const std::vector<std::string>& settings,
                       const std::string& typed = password) {
        return support::call_runner(account_, {entry, argument, typed, settings, {}});
    }

    support::Account account_;
};

constexpr const char* sudo_entries[] = {"sudo_forget", "sudo_probe", "sudo_run",
                                        "sudo_check_password", "sudo_run_fresh"};

TEST_F(HostileStart, AToolThatCannotBeExecutedCountsAsFailed) {
    support::write_file("/opt/no-program", "neither a program nor executable\n", 0644);
    for (const std::string path : {"/opt/no-program", "/opt/not-there"}) {
        for (const char* entry : sudo_entries) {
            const RunnerOutcome outcome = call(entry, "true", {"sudo=" + path});
            EXPECT_EQ(outcome.result, 0) << entry;
            EXPECT_LT(outcome.time_ms, 8000) << entry; // sooner than by giving up after 10 s
            EXPECT_EQ(outcome.children, "none") << entry;
            EXPECT_EQ(outcome.text.find("result=", outcome.text.find("result=") + 1),
                      std::string::npos)
                << "a second copy of the caller went on running";
        }
        EXPECT_EQ(call("su_check_password", "", {"su=" + path}).result, 0);
        EXPECT_EQ(call("su_run", "true", {"su=" + path}).result, 0);
    }
}

TEST_F(HostileStart, AToolThatDiesByASignalHasExitStatusZero) {
    const std::string path =
        support::install_stand_in("dying", {"prompt=password", "password=" + password, "die=9"});
    EXPECT_EQ(call("sudo_check_password", "", {"sudo=" + path}).result, 1);
    EXPECT_EQ(call("sudo_run", "true", {"sudo=" + path}).result, 1);
    EXPECT_EQ(call("su_check_password", "", {"su=" + path}).result, 1);
}

TEST_F(HostileStart, WithoutAPseudoTerminalEveryEntrySaysSo) {
    const std::string sudo_line = "** ERROR ** Test Installer: failed to fork pty for sudo\n";
    const std::string su_line = "** ERROR ** Test Installer: failed to fork pty for su\n";
    for (const char* entry : sudo_entries) {
        const RunnerOutcome outcome = call(entry, "true", {"no_terminal=1"});
        EXPECT_EQ(outcome.result, 0) << entry;
        EXPECT_NE(outcome.text.find(sudo_line), std::string::npos) << entry << outcome.text;
    }
    const std::pair<const char*, int> su_entries[] = {
        {"su_check_password", 0}, {"su_run", 1}, {"su_extract", 1}};
    for (const auto& [entry, expected] : su_entries) {
        const RunnerOutcome outcome = call(entry, "/opt", {"no_terminal=1"});
        EXPECT_EQ(outcome.result, expected) << entry;
        EXPECT_LT(outcome.time_ms, 1000) << entry;
        EXPECT_NE(outcome.text.find(su_line), std::string::npos) << entry << outcome.text;
    }
    const RunnerOutcome extraction = call("sudo_extract", "/opt", {"no_terminal=1"});
    EXPECT_EQ(extraction.result, 0) << "the extraction's own outcome is not examined";
    EXPECT_GE(extraction.time_ms, 5000);
}

TEST_F(HostileStart, AnIgnoredChildSignalLosesNoExitStatus) {
    const std::string ignored = "ignore=" + std::to_string(SIGCHLD);
    EXPECT_EQ(call("sudo_check_password", "", {ignored}).result, 1);
    EXPECT_EQ(call("sudo_check_password", "", {ignored}, "wrong one").result, 0);
    EXPECT_EQ(call("sudo_run", "false", {ignored}).result, 0);
}

TEST_F(HostileStart, AnIgnoredHangUpSignalIsNotInherited) {
    const RunnerOutcome outcome =
        call("sudo_check_password", "", {"ignore=" + std::to_string(SIGHUP)}, "battery staple");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_LT(outcome.time_ms, 8000);
    EXPECT_EQ(outcome.children, "none");
}

TEST_F(HostileStart, AChildThatIsDeafToTheHangUpIsNotWaitedForForEver) {
    const std::string path =
        support::install_stand_in("deaf", {"prompt=password", "password=" + password, "deaf=1"});
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome outcome =
            call(method + "_check_password", "", {method + "=" + path}, "shut barley");
        EXPECT_EQ(outcome.result, 0);
        EXPECT_LT(outcome.time_ms, 20'000);
        EXPECT_EQ(outcome.children, "none");
    }
}

TEST_F(HostileStart, AFirstQuestionThatNobodyCanAnswerIsARefusal) {
    const std::string first =
        support::install_stand_in("token", {"prompt=Verification code: ", "password=" + password});
    const RunnerOutcome unknown = call("sudo_check_password", "", {"sudo=" + first});
    EXPECT_EQ(unknown.result, 0) << unknown.text;
    EXPECT_LT(unknown.time_ms, 15000);
    EXPECT_EQ(unknown.children, "none");
}

TEST_F(HostileStart, ASecondQuestionThatNobodyCanAnswerIsARefusal) {
    const std::string second =
        support::install_stand_in("second-factor", {"prompt=password", "password=never",
                                                    "second_prompt=Verification code: "});
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome outcome = call(method + "_check_password", "", {method + "=" + second});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_LT(outcome.time_ms, 15000);
        EXPECT_EQ(outcome.children, "none");
    }
}

TEST_F(HostileStart, AnAnswerThatNobodyReadsIsARefusal) {
    const std::string path = support::install_stand_in(
        "asleep", {"prompt=password", "password=" + password, "read=600000"});
    const RunnerOutcome outcome = call("sudo_check_password", "", {"sudo=" + path});
    EXPECT_TRUE(outcome.ended);
    EXPECT_EQ(outcome.result, 0) << outcome.text;
    EXPECT_EQ(outcome.children, "none");
}

TEST_F(HostileStart, AProbeThatIsAskedForAPasswordCountsAsFailed) {
    const std::string path = support::install_stand_in("asker", {"prompt=password", "probe=ask"});
    const RunnerOutcome outcome = call("sudo_probe", "user", {"sudo=" + path});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_LT(outcome.time_ms, 15000);
    EXPECT_EQ(outcome.children, "none");
}

} // namespace
