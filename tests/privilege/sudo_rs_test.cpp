// The runner against the real sudo-rs and its su, which newer distributions have beside the others,
// or in their place.

#include "privilege/matrix.h"
#include "privilege/world_test.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using support::Account;
using support::MatrixRow;
using support::RunnerCall;
using support::RunnerOutcome;

constexpr int quick_ms = 6000;
constexpr int refused_ms = 12000;

const std::string right = "correct horse";
const std::string wrong = "battery staple";
const std::string of_root = "root's secret";

class RealSudoRs : public WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        // Not every package of it has given su the right to become root.
        support::install_program("/usr/bin/sudo", SUDO_RS, 04755);
        support::install_program("/usr/bin/su", SU_RS, 04755);
    }
};

MatrixRow row(const std::string& title, const Account& account, const std::string& entry,
              const std::string& typed, int expected) {
    return {title,
            typed.empty() ? "none" : typed,
            "C",
            account,
            RunnerCall{entry, "", typed, {}, {}},
            expected,
            expected == 1 ? quick_ms : refused_ms};
}

TEST_F(RealSudoRs, ItsSudoTakesTheRightPasswordAndNoOther) {
    const Account account = support::add_account("user", right, "ALL=(ALL:ALL) ALL");
    const Account stranger = support::add_account("stranger", right);
    const Account trusted = support::add_account("trusted", right, "ALL=(ALL:ALL) NOPASSWD: ALL");
    support::run_matrix("The sudo of sudo-rs",
                        {row("sudo", account, "sudo_check_password", right, 1),
                         row("sudo", account, "sudo_check_password", wrong, 0),
                         row("sudo", account, "sudo_check_password", "", 0),
                         row("sudo, not allowed", stranger, "sudo_check_password", right, 0),
                         row("sudo, none needed", trusted, "sudo_check_password", wrong, 1)});
}

TEST_F(RealSudoRs, ItsSuTakesTheRightPasswordAndNoOther) {
    const Account account = support::add_account("user", right);
    support::set_root_password(of_root);
    support::run_matrix("The su of sudo-rs", {row("su", account, "su_check_password", of_root, 1),
                                              row("su", account, "su_check_password", wrong, 0),
                                              row("su", account, "su_check_password", "", 0)});
}

TEST_F(RealSudoRs, IsFoundByWhoeverMayRunCommands) {
    const Account account = support::add_account("user", right, "ALL=(ALL:ALL) ALL");
    const Account stranger = support::add_account("stranger", right);
    const RunnerOutcome found = support::call_runner(account, {"find_sudo", "", "", {}, {}});
    EXPECT_EQ(found.result, 1) << found.text;
    EXPECT_LE(found.time_ms, quick_ms) << "no window is there until then";
    const RunnerOutcome other = support::call_runner(stranger, {"find_sudo", "", "", {}, {}});
    EXPECT_EQ(other.result, 0) << other.text;
    EXPECT_LE(other.time_ms, quick_ms);
}

} // namespace
