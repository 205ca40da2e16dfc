// Right and wrong passwords against programs that play, from recordings, a sudo or su that cannot
// be installed here, and login modules of every slowness.

#include "privilege/matrix.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

namespace {

using support::MatrixRow;

class StandInMatrix : public WorldTest {};

using Settings = std::vector<std::string>;

struct Played {
    std::string title;
    bool is_su;
    Settings settings;
    int accepted_ms;
    int refused_ms;
};

Settings with(Settings base, const Settings& more) {
    base.insert(base.end(), more.begin(), more.end());
    return base;
}

const Settings sudo_rs_0_2_8 = {"prompt=[sudo: password] Password: ", "hide=after", "judge=1500",
                                "complaint=sudo: Authentication failed, try again.\\r\\n",
                                "farewell=sudo: 3 incorrect authentication attempts\\r\\n"};

// The older sudo that lectures everybody, at more length than is read at once.
const std::string lecture =
    "\\nWe trust you have received the usual lecture from the local System\\n"
    "Administrator. It usually boils down to these three things:\\n\\n"
    "    #1) Respect the privacy of others.\\n    #2) Think before you type.\\n"
    "    #3) With great power comes great responsibility.\\n\\n"
    "This machine belongs to the department. Whatever you do on it is recorded.\\n"
    "For security reasons, the password you type will not be visible.\\n\\n";

const Settings sudo_1_8 = {"prompt=password", "hide=before", "judge=1200",
                           "complaint=Sorry, try again.\\r\\n",
                           "farewell=sudo: 3 incorrect password attempts\\r\\n"};

const Settings su_of_sudo_rs = {"prompt=[su: authenticate] Password: ", "hide=after", "judge=1500",
                                "complaint=su: Authentication failed, try again.\\r\\n"};

std::vector<MatrixRow> rows_of(const std::vector<Played>& programs) {
    const support::Account account = support::add_account("user", "unused");
    std::vector<MatrixRow> rows;
    for (const Played& program : programs) {
        const std::string path =
            support::install_stand_in("played" + std::to_string(rows.size()),
                                      with({"password=open sesame"}, program.settings));
        for (const bool is_right : {true, false}) {
            support::RunnerCall call;
            call.entry = program.is_su ? "su_check_password" : "sudo_check_password";
            call.settings = {(program.is_su ? "su=" : "sudo=") + path};
            call.password = is_right ? "open sesame" : "shut barley";
            rows.push_back({program.title, is_right ? "right" : "wrong", "C", account, call,
                            is_right ? 1 : 0, is_right ? program.accepted_ms : program.refused_ms});
        }
    }
    return rows;
}

TEST_F(StandInMatrix, OtherSudos) {
    support::run_matrix(
        "Played sudos",
        rows_of({
            {"sudo-rs 0.2.8", false, sudo_rs_0_2_8, 6000, 8000},
            {"sudo-rs 0.2.13, asterisks", false, with(sudo_rs_0_2_8, {"stars=1"}), 6000, 8000},
            {"sudo-rs 0.2.13, translated", false,
             with(sudo_rs_0_2_8, {"stars=1", "complaint=sudo: Anmeldung gescheitert.\\r\\n"}), 6000,
             8000},
            {"sudo-rs, slow to ask again", false, with(sudo_rs_0_2_8, {"wait_again=20000"}), 6000,
             8000},
            {"sudo 1.8, lecture over 255 bytes", false, with(sudo_1_8, {"lecture=" + lecture}),
             6000, 8000},
            {"sudo 1.8, lecture, prompt 3 s later", false,
             with(sudo_1_8, {"lecture=" + lecture, "wait=3000"}), 9000, 11000},
            {"sudo 1.8, lecture 1 s late", false,
             with(sudo_1_8, {"lecture=" + lecture, "lecture_ms=1000"}), 8000, 9000},
            {"sudo, translated complaint", false,
             with(sudo_1_8, {"complaint=Das hat nicht funktioniert.\\r\\n"}), 6000, 8000},
            {"sudo, complaint in the prompt's line", false,
             with(sudo_1_8, {"newline=0", "second_prompt=", "hide=before"}), 6000, 8000},
            {"sudo, second prompt in the same line", false,
             with(sudo_1_8, {"newline=0", "complaint="}), 6000, 9000},
            {"sudo, echo is never off", false, with(sudo_1_8, {"hide=never"}), 9000, 12000},
            {"sudo, echo never off, no complaint", false,
             with(sudo_1_8, {"hide=never", "complaint="}), 9000, 13000},
        }));
}

TEST_F(StandInMatrix, OtherSus) {
    support::run_matrix(
        "Played sus",
        rows_of({
            {"su of sudo-rs 0.2.8", true, su_of_sudo_rs, 6000, 8000},
            {"su of sudo-rs, asterisks", true, with(su_of_sudo_rs, {"stars=1"}), 6000, 8000},
            {"su of sudo-rs, slow to ask again", true, with(su_of_sudo_rs, {"wait_again=20000"}),
             6000, 8000},
            {"su, translated prompt",
             true,
             {"prompt=Passwort: ", "hide=after", "tries=1", "farewell=su: Fehler\\r\\n"},
             6000,
             8000},
            {"su, no prompt at all", true, {"prompt=", "tries=1"}, 6000, 8000},
            {"su, welcomes with a complaint",
             true,
             {"prompt=Password: ", "hide=after", "tries=1", "after=Sorry, try again.\\r\\n"},
             6000,
             8000},
            {"su, strange prompt three times",
             true,
             {"prompt=Geheimnis: ", "hide=after"},
             6000,
             20000},
        }));
}

TEST_F(StandInMatrix, SlowModules) {
    support::run_matrix(
        "Played login modules",
        rows_of({
            {"prompt after 2 s (sudo)", false, with(sudo_1_8, {"wait=2000"}), 8000, 10000},
            {"prompt after 2 s (su)", true, with(su_of_sudo_rs, {"wait=2000"}), 8000, 10000},
            {"prompt after 2 s, then echo off", true,
             with(su_of_sudo_rs, {"wait=2000", "hide=after"}), 8000, 10000},
            // Switching echo off throws away what was typed too early.
            {"echo off a second after the prompt (sudo)", false,
             with(sudo_1_8, {"hide=after", "hide_ms=1000"}), 7000, 9000},
            {"echo off a second after the prompt (su)", true,
             with(su_of_sudo_rs, {"hide=after", "hide_ms=1000"}), 7000, 9000},
            {"fingerprint for 12 s, then password", false,
             with(sudo_1_8,
                  {"lecture=Place your right index finger on the reader\\r\\n", "wait=12000"}),
             19000, 21000},
            {"fingerprint for 12 s (su)", true,
             with(su_of_sudo_rs,
                  {"lecture=Place your right index finger on the reader\\r\\n", "wait=12000"}),
             19000, 21000},
            {"fingerprint after a lecture", false,
             with(sudo_1_8, {"lecture=" + lecture + "Swipe your finger\\r\\n", "wait=6000"}), 13000,
             15000},
            {"answer read after 12 s", false, with(sudo_1_8, {"read=12000"}), 18000, 20000},
            {"answer read after 12 s (su)", true, with(su_of_sudo_rs, {"read=12000", "tries=1"}),
             18000, 20000},
            {"echo off, prompt and reading 3 s apart (su)",
             true,
             {"prompt=Password: ", "prompt_ms=3000", "read=3000", "tries=1"},
             12000,
             14000},
            {"judged for 8 s", false, with(sudo_1_8, {"judge=8000"}), 14000, 16000},
            {"judged for 8 s (su)", true, with(su_of_sudo_rs, {"judge=8000"}), 14000, 16000},
        }));
}

} // namespace
