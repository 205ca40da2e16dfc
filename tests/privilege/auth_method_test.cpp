// Which method is found on machines with and without sudo, su and permission.

#include "privilege/runner_call.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

using support::RunnerOutcome;

class AuthMethodSearch : public WorldTest {
protected:
    RunnerOutcome find(const std::string& entry, const std::string& rule = "ALL=(ALL:ALL) ALL") {
        const support::Account account =
            support::add_account("user" + std::to_string(++number_), "correct horse", rule);
        return support::call_runner(account, {entry, "", "", {}, {}});
    }

    static void hide_all(const std::string& tool) {
        for (const char* folder : {"/usr/bin/", "/usr/local/bin/", "/usr/sbin/", "/bin/"}) {
            support::hide_program(folder + tool);
        }
    }

private:
    int number_ = 0;
};

const std::string sudo_line = "** INFO ** Test Installer: Using 'sudo' for authentication\n";
const std::string su_line = "** INFO ** Test Installer: Using 'su' for authentication\n";

bool says(const RunnerOutcome& outcome, const std::string& line) {
    return outcome.text.find(line) != std::string::npos;
}

TEST_F(AuthMethodSearch, SudoIsUsableForWhoeverMayRunCommands) {
    for (const char* rule :
         {"ALL=(ALL:ALL) ALL", "ALL=(ALL:ALL) NOPASSWD: ALL", "ALL=(ALL:ALL) /usr/bin/echo"}) {
        const RunnerOutcome outcome = find("find_sudo", rule);
        EXPECT_EQ(outcome.result, 1) << rule << outcome.text;
        EXPECT_TRUE(says(outcome, sudo_line));
        EXPECT_EQ(outcome.sudo_path, "/usr/bin/sudo");
        EXPECT_EQ(outcome.descriptors, "none");
        EXPECT_EQ(outcome.children, "none");
    }
}

TEST_F(AuthMethodSearch, SudoIsNotUsableForWhoeverIsNotInItsRules) {
    const RunnerOutcome outcome = find("find_sudo", "");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_FALSE(says(outcome, sudo_line));
    EXPECT_LT(outcome.time_ms, 3000) << "nothing is asked";
}

TEST_F(AuthMethodSearch, SudoIsLookedForInFourPlaces) {
    hide_all("sudo");
    const RunnerOutcome none = find("find_sudo");
    EXPECT_EQ(none.result, 0);
    EXPECT_EQ(none.sudo_path, "/bin/sudo") << "the path tried last stays";
    for (const std::string path : {"/usr/sbin/sudo", "/usr/local/bin/sudo", "/usr/bin/sudo"}) {
        support::install_script(path, "#!/bin/sh\ntest \"$1 $3\" = '-u echo'\n");
        const RunnerOutcome outcome = find("find_sudo");
        EXPECT_EQ(outcome.result, 1) << path << outcome.text;
        EXPECT_EQ(outcome.sudo_path, path);
    }
}

TEST_F(AuthMethodSearch, TheProbeAsksAboutTheCallingUser) {
    hide_all("sudo");
    support::install_script("/usr/bin/sudo", "#!/bin/sh\necho \"$@\" > /tmp/asked; exit 0\n");
    const RunnerOutcome outcome = find("find_sudo");
    EXPECT_EQ(outcome.result, 1);
    std::ifstream asked("/tmp/asked");
    std::string words;
    std::getline(asked, words);
    EXPECT_EQ(words, "-u user1 echo");
}

// What a played sudo asks that is told to run a command as the person themselves.
class ProbeThatIsAsked : public AuthMethodSearch {
protected:
    RunnerOutcome find_played(std::vector<std::string> settings) {
        settings.insert(settings.end(), {"probe=ask", "password=correct horse"});
        hide_all("sudo");
        const std::string played = support::install_stand_in("sudo", settings);
        std::filesystem::rename(played, "/usr/bin/sudo");
        std::filesystem::rename(played + ".play", "/usr/bin/sudo.play");
        return find("find_sudo");
    }
};

TEST_F(ProbeThatIsAsked, BySudoRsHasFoundSudoAtOnce) {
    for (const char* prompt :
         {"[sudo: authenticate] Password: ", "[sudo: authenticate] Mot de passe : "}) {
        const RunnerOutcome outcome =
            find_played({std::string("prompt=") + prompt, "hide=after", "hide_ms=300"});
        EXPECT_EQ(outcome.result, 1) << prompt << outcome.text;
        EXPECT_TRUE(says(outcome, sudo_line));
        EXPECT_LT(outcome.time_ms, 5000) << prompt;
        EXPECT_EQ(outcome.descriptors, "none");
        EXPECT_EQ(outcome.children, "none");
    }
}

TEST_F(ProbeThatIsAsked, ByAnotherSudoHasNotFoundOne) {
    const std::string shaped = "[sudo: authenticate] Password: ";
    for (const std::vector<std::string>& settings : std::vector<std::vector<std::string>>{
             {"prompt=[sudo] password for anna: "},
             {"lecture=" + shaped, "prompt=[sudo] password for anna: "},
             {"lecture=" + shaped + "\\n", "prompt=password"}}) {
        const RunnerOutcome outcome = find_played(settings);
        EXPECT_EQ(outcome.result, 0) << settings[0] << outcome.text;
        EXPECT_FALSE(says(outcome, sudo_line));
        EXPECT_EQ(outcome.children, "none");
    }
}

// A lecture, or a login module that tells something: nobody is asked, and it goes on.
TEST_F(ProbeThatIsAsked, ByALineThatHidesNothingWaitsForTheEnd) {
    const RunnerOutcome outcome =
        find_played({"lecture=[sudo: authenticate] Password: ", "wait=3000", "prompt=", "tries=0"});
    EXPECT_EQ(outcome.result, 0) << outcome.text;
    EXPECT_GE(outcome.time_ms, 3000);
}

TEST_F(AuthMethodSearch, ExistenceDecidesWhetherSudoIsTried) {
    hide_all("sudo");
    support::write_file("/usr/bin/sudo", "not executable", 0644);
    support::install_script("/usr/sbin/sudo", "#!/bin/sh\nexit 0\n");
    const RunnerOutcome outcome = find("find_sudo");
    EXPECT_EQ(outcome.result, 0) << "the first one is taken, and fails";
    EXPECT_EQ(outcome.sudo_path, "/usr/bin/sudo");
}

TEST_F(AuthMethodSearch, SuIsFoundWithoutBeingRun) {
    for (const char* path : {"/usr/bin/su", "/bin/su"}) {
        support::install_script(path, "#!/bin/sh\ntouch /tmp/su-was-run\n");
    }
    const RunnerOutcome outcome = find("find_su");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_TRUE(says(outcome, su_line));
    EXPECT_EQ(outcome.su_path, "/bin/su");
    EXPECT_FALSE(std::filesystem::exists("/tmp/su-was-run"));
}

TEST_F(AuthMethodSearch, SuIsLookedForInFourPlaces) {
    hide_all("su");
    const RunnerOutcome none = find("find_su");
    EXPECT_EQ(none.result, 0);
    EXPECT_FALSE(says(none, su_line));
    for (const std::string path : {"/usr/sbin/su", "/usr/local/bin/su"}) {
        support::write_file(path, "neither executable nor a program", 0644);
        const RunnerOutcome outcome = find("find_su");
        EXPECT_EQ(outcome.result, 1) << path;
        EXPECT_EQ(outcome.su_path, path);
    }
}

TEST_F(AuthMethodSearch, AnAccountWithoutANameHasNoSudo) {
    support::Account nobody = support::add_account("soon-gone", "x", "ALL=(ALL:ALL) ALL");
    nobody.uid += 500;
    nobody.gid += 500;
    support::give_to(nobody, nobody.home);
    const RunnerOutcome outcome = support::call_runner(nobody, {"find_sudo", "", "", {}, {}});
    EXPECT_EQ(outcome.result, 0) << outcome.text;
}

} // namespace
