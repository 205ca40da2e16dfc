// The clipboard, which holds whatever the person copied last, and sometimes the password.

#include "display/core/clipboard_owner.h"
#include "end_to_end/expectations.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

#include <csignal>
#include <random>

namespace {

using namespace end_to_end;

constexpr int field_x = 300;
constexpr int field_y = 368;

void expect_nothing_fetched(Scenario& scenario) {
    const ClipboardOwner owner(scenario.display_name(), OwnerManners::text, "private");
    scenario.click(scenario.main_window(), field_x, field_y, support::middle_button);
    EXPECT_TRUE(
        support::holds_for([&] { return owner.requests() == 0; }, std::chrono::milliseconds{700}));
    EXPECT_FALSE(scenario.view().property(scenario.main_window(), "PRIMARY"));
}

TEST(Clipboard, IsNotFetchedWhereAnotherInstanceRuns) {
    Scenario scenario;
    support::write_file(lock_path, "somebody's");
    scenario.reach_main_window();
    scenario.reach_last_screen();
    expect_nothing_fetched(scenario);
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
}

TEST(Clipboard, IsNotFetchedWhereNobodyCanBecomeRoot) {
    Scenario scenario({.rights = Rights::none});
    scenario.reach_main_window();
    expect_nothing_fetched(scenario);
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// No eight of the letters stand anywhere else, this program's file included.
std::string made_up(std::size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string text;
    while (text.size() < length) {
        text += static_cast<char>('!' + random() % 94);
    }
    return text;
}

class PastedText : public testing::TestWithParam<std::size_t> {};

// Of the lengths of a password, of what fills the field, and of what the field cannot take.
INSTANTIATE_TEST_SUITE_P(Lengths, PastedText, testing::Values(12, 40, 600, 1'000, 5'000, 200'000));

TEST_P(PastedText, IsNowhereButInTheField) {
    Scenario scenario;
    const std::string secret = made_up(GetParam(), static_cast<unsigned>(GetParam()));
    const pid_t process = [&] {
        scenario.reach_password_screen();
        return scenario.installer().process_id();
    }();
    const ClipboardOwner owner(scenario.display_name(), OwnerManners::text, secret);
    for (int paste = 0; paste < 8; ++paste) {
        scenario.click(scenario.main_window(), field_x, field_y, support::middle_button);
        scenario.wait_for("the paste", [&] { return owner.requests() == paste + 1; });
        scenario.wait_for("the end of the paste", [&] {
            return !faults::copies_in_memory(process, secret.substr(0, 12)).empty() &&
                   !scenario.view().property(scenario.main_window(), "PRIMARY");
        });
        // What is beyond the first thousand bytes has not even the field to be in.
        EXPECT_TRUE(support::wait_until([&] {
            return faults::copies_in_memory(process, secret.substr(0, 1'000)).size() == 1;
        })) << faults::copies_in_memory(process, secret).size()
            << " copies, the first " << faults::copies_in_memory(process, secret).front();
        if (secret.size() > 1'100) {
            EXPECT_EQ(faults::copies_in_memory(process, secret.substr(1'100, 100)),
                      std::vector<std::string>{});
            EXPECT_EQ(faults::copies_in_memory(process, secret.substr(secret.size() - 100)),
                      std::vector<std::string>{});
        }
    }
    scenario.focus_main_window();
    scenario.person().press_return();
    scenario.reach_wrong_password_screen();
    EXPECT_EQ(faults::copies_in_memory(process, secret.substr(0, 1'000)),
              std::vector<std::string>{});
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// A zero ends the text, but not what the owner has sent.
TEST(PastedTextWithAZero, IsForgottenBehindItToo) {
    Scenario scenario;
    const std::string secret = made_up(40, 7);
    scenario.reach_password_screen();
    const pid_t process = scenario.installer().process_id();
    const ClipboardOwner owner(scenario.display_name(), OwnerManners::text,
                               std::string("ab\0", 3) + secret);
    scenario.click(scenario.main_window(), field_x, field_y, support::middle_button);
    scenario.wait_for("the paste", [&] { return owner.requests() == 1; });
    EXPECT_TRUE(support::wait_until(
        [&] { return !scenario.view().property(scenario.main_window(), "PRIMARY"); }));
    EXPECT_TRUE(
        support::wait_until([&] { return faults::copies_in_memory(process, secret).empty(); }));
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

} // namespace
