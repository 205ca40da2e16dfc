// The person's environment is set up by whatever runs under the account; none of it may run as root
// or decide what root does.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"
#include "support/text_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace files = std::filesystem;

using support::RunnerOutcome;

const std::string password = "correct horse";
constexpr const char* evidence = "/tmp/evil/ran";

std::string text_of(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> sorted_lines(const std::string& text) {
    std::vector<std::string> lines = support::lines_of(text);
    std::sort(lines.begin(), lines.end());
    return lines;
}

// Each way by which a variable has made root run a program of somebody else's.
struct Attack {
    const char* name;
    std::vector<std::string> variables;
};

const Attack attacks[] = {
    {"Path", {"PATH=/tmp/evil:/usr/bin:/bin"}},
    {"TarOptions", {"TAR_OPTIONS=--checkpoint=1 --checkpoint-action=exec=/tmp/evil/tar"}},
    {"Gzip", {"GZIP=-9", "PATH=/tmp/evil/gzip-only:/usr/bin:/bin"}},
    {"BashEnv", {"BASH_ENV=/tmp/evil/tar", "ENV=/tmp/evil/tar"}},
    {"ExportedFunction", {"BASH_FUNC_tar%%=() { /tmp/evil/tar; }"}},
};

std::ostream& operator<<(std::ostream& stream, const Attack& attack) {
    return stream << attack.name;
}

class Environment : public WorldTest, public testing::WithParamInterface<Attack> {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        support::set_root_password(password);
        // bash, which takes functions from its environment, and a sudo that hands on what it gets.
        static_cast<void>(support::output_of(
            {"sed", "-i", "s,^root:.*,root:x:0:0:root:/root:/bin/bash,", "/etc/passwd"}));
        support::write_file("/etc/sudoers",
                            "Defaults !env_reset\nroot ALL=(ALL:ALL) ALL\nuser ALL=(ALL:ALL) ALL\n",
                            0440);
        account_ = support::add_account("user", password);
        support::write_file("/tmp/packed/plugin.so", "the plug-in\n", 0666);
        static_cast<void>(support::output_of(
            {"tar", "-C", "/tmp/packed", "-czf", "/tmp/zeph-installer-data.tar.gz", "plugin.so"}));
        const std::string witness = std::string("#!/bin/sh\n/usr/bin/id -u >> ") + evidence + "\n";
        support::write_file("/tmp/evil/tar", witness, 0755);
        support::write_file("/tmp/evil/gzip-only/gzip", witness, 0755);
        files::permissions("/tmp/evil", files::perms::all);
    }

    support::Account account_;
};

INSTANTIATE_TEST_SUITE_P(Of, Environment, testing::ValuesIn(attacks),
                         [](const auto& attack) { return attack.param.name; });

TEST_P(Environment, RunsNothingAsRoot) {
    for (const char* entry : {"sudo_extract", "su_extract"}) {
        const std::string folder = std::string("/opt/") + entry;
        files::create_directories(folder);
        const RunnerOutcome outcome = support::call_runner(
            account_,
            {entry, folder, password, {"exact=1", "cancel_after=0"}, GetParam().variables});
        EXPECT_TRUE(outcome.ended) << outcome.text;
        EXPECT_FALSE(files::exists(evidence)) << entry << ": as " << text_of(evidence);
        EXPECT_EQ(text_of(folder + "/plugin.so"), "the plug-in\n") << entry << outcome.text;
        files::remove(evidence);
    }
}

// Tells what it was started with. It is given a quarter of a second, which a busy machine may need
// for other things: then it is asked again.
class ChildEnvironment : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        account_ = support::add_account("user", password);
        support::write_file("/opt/witness",
                            "#!/bin/dash\n"
                            "tr '\\0' '\\n' < /proc/$$/environ > /tmp/environment\n"
                            "readlink /proc/$$/cwd > /tmp/working-folder\n",
                            0755);
    }
    void ask_witness(const std::vector<std::string>& environment) const {
        RunnerOutcome outcome;
        for (int i = 0; i < 20 && outcome.result != 1; ++i) {
            outcome = support::call_runner(
                account_, {"sudo_forget", "", password, {"sudo=/opt/witness"}, environment});
        }
        ASSERT_EQ(outcome.result, 1) << outcome.text;
    }
    support::Account account_;
};

TEST_F(ChildEnvironment, IsAFewVariablesAndNoMore) {
    ask_witness({"TERM=xterm", "TZ=Europe/Berlin", "LC_ALL=de_DE.UTF-8", "LANGUAGE=de",
                 "LANG=de_DE.UTF-8", "LC_MESSAGES=de_DE.UTF-8", "XAUTHORITY=/tmp/x", "DISPLAY=:77",
                 "SUDO_ASKPASS=/tmp/ask", "TMPDIR=/tmp/evil", "HOMES=1"});
    const std::vector<std::string> wanted = {
        "HOME=" + account_.home, "LC_ALL=C",
        "LOGNAME=user",          "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
        "SHELL=/bin/sh",         "TERM=xterm",
        "TZ=Europe/Berlin",      "USER=user"};
    EXPECT_EQ(sorted_lines(text_of("/tmp/environment")), wanted);
    EXPECT_EQ(text_of("/tmp/working-folder"), "/\n");
}

// What is not set is not made up.
TEST_F(ChildEnvironment, HoldsNothingThatIsNotSet) {
    ask_witness({});
    const std::string environment = text_of("/tmp/environment");
    EXPECT_NE(environment.find("LC_ALL=C\n"), std::string::npos);
    EXPECT_EQ(environment.find("TERM="), std::string::npos);
    EXPECT_EQ(environment.find("TZ="), std::string::npos);
}

} // namespace
