// Right and wrong passwords against the sudo and the su of this machine, under every setting that
// people's machines have.

#include "privilege/matrix.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

namespace {

using support::Account;
using support::MatrixRow;
using support::RunnerCall;

class RealMatrix : public WorldTest {};

constexpr int quick_ms = 6000;    // nothing has to be thought about
constexpr int refused_ms = 12000; // the system's own pause after a wrong password, and some load

const std::vector<std::string> german = {"LANG=de_DE.UTF-8", "LANGUAGE=de"};

struct SudoCase {
    std::string title;
    std::string defaults; // of sudo's rules, for this account
    std::string rule;
    std::string right; // password
    std::string typed;
    int expected;
    bool in_german = false;
};

std::string shown(const std::string& typed, const std::string& right) {
    const std::string verdict = typed == right ? "right" : "wrong";
    return typed.empty()       ? "empty, " + verdict
           : typed.size() > 30 ? std::to_string(typed.size()) + " bytes, " + verdict
                               : typed + ", " + verdict;
}

std::vector<MatrixRow> sudo_rows(const std::vector<SudoCase>& cases) {
    std::vector<MatrixRow> rows;
    for (const SudoCase& c : cases) {
        const std::string name = "user" + std::to_string(rows.size());
        const Account account = support::add_account(name, c.right, c.rule);
        if (!c.defaults.empty()) {
            support::add_sudo_rules(name + "_defaults", "Defaults:" + name + " " + c.defaults);
        }
        RunnerCall call{"sudo_check_password", "", c.typed, {}, {}};
        if (c.in_german) {
            call.environment = german;
        }
        rows.push_back({c.title, shown(c.typed, c.right), c.in_german ? "de" : "C", account, call,
                        c.expected, c.expected == 1 ? quick_ms : refused_ms});
    }
    return rows;
}

constexpr const char* all = "ALL=(ALL:ALL) ALL";
const std::string right = "correct horse";
const std::string wrong = "battery staple";

TEST_F(RealMatrix, SudoWithEverySetting) {
    support::set_root_password("root's secret");
    support::make_locale("de_DE");
    std::vector<SudoCase> cases;
    for (const char* setting :
         {"", "lecture=always", "insults", "passwd_tries=1", "use_pty", "!use_pty", "requiretty",
          "timestamp_timeout=-1", "pwfeedback", "timestamp_timeout=-1,timestamp_type=global"}) {
        const std::string title = "sudo " + std::string(setting);
        cases.push_back({title, setting, all, right, right, 1});
        cases.push_back({title, setting, all, right, wrong, 0});
    }
    cases.push_back({"sudo targetpw", "targetpw", all, right, "root's secret", 1});
    cases.push_back({"sudo targetpw", "targetpw", all, right, right, 0});
    support::run_matrix("The sudo of this machine", sudo_rows(cases));
}

TEST_F(RealMatrix, SudoWithEveryKindOfPasswordUserAndLocale) {
    support::make_locale("de_DE");
    const std::string accented = "Grüße an ßörg €";
    const std::string blanks = "  two  blanks ";
    const std::vector<SudoCase> cases = {
        {"sudo", "", all, accented, accented, 1},
        {"sudo", "", all, accented, "Gruesse", 0},
        {"sudo", "", all, blanks, blanks, 1},
        {"sudo", "", all, blanks, "two  blanks", 0},
        {"sudo", "", all, "password", "password", 1},
        {"sudo", "", all, "Sorry, try again", "Sorry, try again", 1},
        {"sudo", "", all, right, "", 0},
        {"sudo", "", all, std::string(400, 'x'), std::string(400, 'x'), 1},
        {"sudo", "", all, right, std::string(1000, 'x'), 0},
        {"sudo", "", all, right, std::string(10'000, 'x'), 0},
        {"sudo, user not allowed", "", "", right, right, 0},
        {"sudo, user not allowed", "", "", right, wrong, 0},
        {"sudo, no password needed", "", "ALL=(ALL:ALL) NOPASSWD: ALL", right, wrong, 1},
        {"sudo", "", all, right, right, 1, true},
        {"sudo", "", all, right, wrong, 0, true},
        {"sudo lecture=always", "lecture=always", all, right, right, 1, true},
        {"sudo insults", "insults", all, right, wrong, 0, true},
    };
    support::run_matrix("The sudo of this machine", sudo_rows(cases));
}

MatrixRow su_row(const Account& account, const std::string& root, const std::string& typed,
                 bool in_german = false) {
    RunnerCall call{"su_check_password", "", typed, {}, {}};
    if (in_german) {
        call.environment = german;
    }
    const int expected = root == typed && !root.empty() ? 1 : 0;
    return {"su",
            shown(typed, root),
            in_german ? "de" : "C",
            account,
            call,
            expected,
            expected == 1 ? quick_ms : refused_ms};
}

TEST_F(RealMatrix, SuWithEveryKindOfPasswordAndLocale) {
    const Account account = support::add_account("user", "not root's");
    support::make_locale("de_DE");
    std::vector<MatrixRow> rows;
    for (const std::string& root : {right, std::string("Grüße an ßörg €"),
                                    std::string("  two  blanks "), std::string("password")}) {
        support::set_root_password(root);
        support::run_matrix("The su of this machine, root's password is \"" + root + "\"",
                            {su_row(account, root, root), su_row(account, root, root, true),
                             su_row(account, root, wrong), su_row(account, root, wrong, true),
                             su_row(account, root, ""), su_row(account, root, root + "x"),
                             su_row(account, root, std::string(1000, 'x')),
                             su_row(account, root, std::string(10'000, 'x'))});
    }
}

TEST_F(RealMatrix, SuWithRootLocked) {
    const Account account = support::add_account("user", right);
    support::lock_root();
    std::vector<MatrixRow> rows;
    for (const std::string& typed : {right, wrong, std::string("!"), std::string()}) {
        rows.push_back(su_row(account, "", typed));
        rows.back().tool = "su, root locked";
    }
    support::run_matrix("The su of this machine", rows);
}

// The complaint that the C locale spares us is really there: this is what the runner would have to
// read if its child spoke the user's language.
TEST_F(RealMatrix, SudoComplainsInGermanWhereTheChildMaySpeakIt) {
    support::make_locale("de_DE");
    const Account account = support::add_account("user", right, all);
    support::ChildOptions options =
        support::run_as(account, {"sudo", "-S", "-p", "password", "true"}, german);
    options.terminal = true;
    support::ChildProcess sudo(options);
    ASSERT_TRUE(sudo.wait_for_output("password"));
    sudo.type_on_terminal("wrong\n");
    EXPECT_TRUE(sudo.wait_for_output("nochmal")) << sudo.output();
    EXPECT_EQ(sudo.output().find("try again"), std::string::npos);
}

} // namespace
