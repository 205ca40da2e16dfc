// The installation with su: root's password, where sudo is missing or refuses the account.

#include "end_to_end/expectations.h"

namespace end_to_end {
namespace {

void install_with_su(Scenario& scenario) {
    scenario.reach_password_screen();
    EXPECT_TRUE(line_reads(scenario.picture_of(scenario.main_window()), 3,
                           "please enter the admin / root password"));
    scenario.give_password(root_password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
    expect_installed(scenario);
    EXPECT_EQ(scenario.console(),
              console_text("su", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                                  info("Installing to - " + scenario.account().home),
                                  info("Copying Files"), info("Removing Temporary Files"),
                                  info("Installation Complete")}));
}

TEST(SuPath, InstallsWhereThereIsNoSudo) {
    Scenario scenario({.rights = Rights::only_su});
    install_with_su(scenario);
}

TEST(SuPath, InstallsWhereSudoRefusesTheAccount) {
    Scenario scenario({.rights = Rights::su});
    install_with_su(scenario);
}

TEST(SuPath, AsksAgainAfterAWrongPassword) {
    Scenario scenario({.rights = Rights::only_su});
    scenario.reach_password_screen();
    scenario.give_password("not it");
    scenario.reach_wrong_password_screen();
    scenario.give_password(root_password);
    scenario.reach_unpacking();
    EXPECT_NE(scenario.console().find("Password OK\n"), std::string::npos);
}

} // namespace
} // namespace end_to_end
