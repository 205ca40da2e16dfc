// What the child gets to see, what is left behind, and where the password never turns up.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

namespace files = std::filesystem;

using support::RunnerOutcome;

const std::string password = "unmistakable-7c1f";

std::string text_of(const files::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class Secrets : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (!IsSkipped()) {
            support::set_root_password(password);
            account_ = support::add_account("user", password, "ALL=(ALL:ALL) ALL");
        }
    }

    RunnerOutcome call(const support::RunnerCall& call) {
        return support::call_runner(account_, call);
    }

    support::Account account_;
};

// The child's own account of its surroundings, written by a tool that needs no password.
TEST_F(Secrets, TheChildHasItsTerminalAndNothingElseOfOurs) {
    support::install_script("/opt/witness",
                            "#!/bin/sh\n"
                            "ls -l /proc/$$/fd > /tmp/descriptors\n"
                            "env > /tmp/environment\n"
                            "grep -E 'Sig(Blk|Ign)' /proc/self/status > /tmp/signals\n"
                            "ps -o pid=,sid=,tty= -p $$ > /tmp/session\n"
                            "stty -a > /tmp/terminal\n");
    // A descriptor that is not closed on exec: the program's standard error, a second time.
    const RunnerOutcome outcome =
        call({"sudo_forget",
              "",
              password,
              {"sudo=/opt/witness", "ignore=13"},
              {"LC_ALL=de_DE.UTF-8", "LANGUAGE=de", "LANG=de_DE.UTF-8", "STRANGE=as it was"}});
    ASSERT_EQ(outcome.result, 1) << outcome.text;
    std::istringstream lines(text_of("/tmp/descriptors"));
    for (std::string line; std::getline(lines, line);) {
        if (line.find(" -> ") != std::string::npos) {
            const bool expected = line.find("/dev/pts/") != std::string::npos ||
                                  line.find("/opt/witness") != std::string::npos ||
                                  line.ends_with(" 1 -> /tmp/descriptors");
            EXPECT_TRUE(expected) << line;
        }
    }
    const std::string environment = "\n" + text_of("/tmp/environment");
    EXPECT_NE(environment.find("\nLC_ALL=C\n"), std::string::npos) << environment << outcome.text;
    EXPECT_EQ(environment.find("\nLANGUAGE="), std::string::npos);
    EXPECT_EQ(environment.find("\nSTRANGE="), std::string::npos);
    EXPECT_NE(environment.find("\nHOME=" + account_.home + "\n"), std::string::npos);
    EXPECT_EQ(environment.find("LC_ALL=de"), std::string::npos);
    const std::string signals = text_of("/tmp/signals");
    EXPECT_EQ(signals.find_first_of("123456789abcdef", signals.find("SigBlk:") + 7),
              std::string::npos)
        << signals;
    std::istringstream session(text_of("/tmp/session"));
    std::string process;
    std::string leader;
    std::string terminal;
    session >> process >> leader >> terminal;
    EXPECT_EQ(process, leader) << "a session of its own";
    EXPECT_TRUE(terminal.starts_with("pts/")) << terminal;
}

TEST_F(Secrets, DescriptorsOfOursAreNotInherited) {
    support::install_script("/opt/witness", "#!/bin/bash\nls /proc/$$/fd > /tmp/numbers\n");
    const RunnerOutcome outcome =
        call({"sudo_forget", "", password, {"sudo=/opt/witness", "leak=1"}, {}});
    ASSERT_EQ(outcome.result, 1);
    std::istringstream numbers(text_of("/tmp/numbers"));
    for (int number = 0; numbers >> number;) {
        EXPECT_TRUE(number <= 2 || number == 255) << number; // 255 is bash's own script
    }
}

TEST_F(Secrets, ThePasswordIsInNoArgumentListEnvironmentOrLog) {
    // A tool that thinks for a while, so that everybody's files can be looked at meanwhile.
    const std::string path = support::install_stand_in(
        "thinker", {"prompt=password", "hide=never", "judge=2500", "password=" + password});
    support::RunningCall running(account_,
                                 {"sudo_check_password", "", password, {"sudo=" + path}, {}});
    bool seen_tool = false;
    while (running.running()) {
        for (const auto& entry : files::directory_iterator("/proc")) {
            const std::string words = text_of(entry.path() / "cmdline");
            if (words.find("runner_tool") == std::string::npos &&
                words.find("thinker") == std::string::npos) {
                continue;
            }
            seen_tool = seen_tool || words.find("-S") != std::string::npos;
            EXPECT_EQ(words.find(password), std::string::npos);
            EXPECT_EQ(text_of(entry.path() / "environ").find(password), std::string::npos);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5)); // others work as well
    }
    EXPECT_TRUE(seen_tool);
    const RunnerOutcome outcome = running.outcome(std::chrono::seconds(1));
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.text.find(password), std::string::npos);
    EXPECT_EQ(outcome.copies, 0) << "the terminal echoed the password, and it was kept";
}

TEST_F(Secrets, NoCopyOfThePasswordStaysInMemory) {
    for (const char* entry : {"sudo_check_password", "su_check_password"}) {
        const RunnerOutcome outcome = call({entry, "", password, {}, {}});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_EQ(outcome.copies, 0) << entry;
    }
    // Long enough that a copy which is not wiped survives in part.
    std::string long_password;
    for (int i = 1; long_password.size() < 200; ++i) {
        long_password += std::to_string(104729 * i * i);
    }
    const std::string echoing = support::install_stand_in(
        "echoing", {"prompt=Password: ", "hide=never", "password=" + long_password});
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome echoed =
            call({method + "_check_password", "", long_password, {method + "=" + echoing}, {}});
        EXPECT_EQ(echoed.result, 1);
        EXPECT_EQ(echoed.copies, 0) << "what is read and discarded holds the echo: " << method;
    }
    const RunnerOutcome kept = call({"sudo_forget", "", password, {"keep_password=1"}, {}});
    EXPECT_GE(kept.copies, 1) << "the search finds what is there";
}

TEST_F(Secrets, WhatIsLeftOpenIsOneTerminalPerUseOfSu) {
    const RunnerOutcome outcome = call({"su_check_password", "", password, {"times=3"}, {}});
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.descriptors, "/dev/ptmx,/dev/ptmx,/dev/ptmx");
    const RunnerOutcome by_sudo = call({"sudo_check_password", "", password, {"times=3"}, {}});
    EXPECT_EQ(by_sudo.descriptors, "none");
    EXPECT_EQ(by_sudo.children, "none");
}

// The password is typed with a zero behind it, and then a line feed, at one prompt only.
TEST_F(Secrets, ExactlyOnePasswordIsTyped) {
    support::install_script("/opt/scribe",
                            "#!/bin/bash\n[ \"$1\" = -k ] && exit 0\n"
                            "stty -echo -icanon min 1\nprintf password\n"
                            "timeout --foreground 3 cat > /tmp/typed\nstty sane\necho\nexit 0\n");
    for (const std::string method : {"sudo", "su"}) {
        const RunnerOutcome outcome =
            call({method + "_check_password", "", password, {method + "=/opt/scribe"}, {}});
        EXPECT_EQ(outcome.result, 1) << outcome.text;
        EXPECT_EQ(text_of("/tmp/typed"), password + std::string("\0\n", 2)) << method;
        files::remove("/tmp/typed");
    }
}

} // namespace
