// The same installer in other locales: one byte a character, UTF-8, and one that does not exist.

#include "end_to_end/expectations.h"

namespace end_to_end {
namespace {

constexpr const char* accented_password = "Bl\xc3\xa9-\xce\xa9"
                                          "7";

TEST(Locale, Utf8IsAnnouncedAndAccentedPasswordsAreTyped) {
    Scenario scenario(
        {.password = accented_password, .environment = {"LC_ALL=C.UTF-8", "ORXDPI=96"}});
    scenario.person().get_keys_for(accented_password);
    scenario.reach_password_screen();
    scenario.give_password(accented_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    std::string expected =
        console_text("sudo", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                              info("Install cancelled by user.")});
    expected.insert(expected.find("ORX-UI: UI dpi"), "\nZEPH-UI: UI text - Using UTF-8 encoding\n");
    EXPECT_EQ(scenario.console(), expected);
}

TEST(Locale, ThatDoesNotExistIsNoHindrance) {
    Scenario scenario({.environment = {"LC_ALL=xx_YY.UTF-8", "ORXDPI=96"}});
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    EXPECT_NE(scenario.console().find("** ORX-UI Engine: cannot set locale\n"), std::string::npos);
}

TEST(Locale, AMissingInputMethodLeavesTheKeyboard) {
    Scenario scenario({.environment = {"LC_ALL=C", "XMODIFIERS=@im=nowhere", "ORXDPI=96"}});
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_unpacking();
    EXPECT_NE(scenario.console().find("** ORX-UI Engine: Could not open Input Method (XIM)\n"),
              std::string::npos);
}

} // namespace
} // namespace end_to_end
