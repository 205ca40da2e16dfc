// A main thread that does not come on any more has the password wiped by whoever ends the run in
// its place. The program is stopped just before it is gone.

#include "attacks/unread_console.h"
#include "end_to_end/expectations.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>

namespace {

using namespace end_to_end;

constexpr const char* stopper = "/run/stop_at_exit.so";

class PasswordAtHang : public testing::Test {
protected:
    PasswordAtHang() : console_(scenario_, std::string("env LD_PRELOAD=") + stopper) {
        support::write_file(stopper, faults::text_of(ZEPH_STOP_AT_EXIT), 0755);
        scenario_.reach_password_screen();
    }

    std::vector<std::string> copies() {
        return faults::copies_in_memory(scenario_.installer().process_id(), user_password);
    }

    void expect_wiped_at_the_end() {
        scenario_.wait_for(
            "the end", [&] { return faults::state_of(scenario_.installer().process_id()) == 'T'; });
        EXPECT_EQ(copies(), std::vector<std::string>{});
        EXPECT_FALSE(std::filesystem::exists(lock_path));
        scenario_.installer().send_signal(SIGCONT);
        EXPECT_TRUE(ended_clean(scenario_.finish()));
    }

    Scenario scenario_;
    UnreadConsole console_;
};

// The line that says so is waited for, with both copies of it there.
TEST_F(PasswordAtHang, ThatWasAcceptedIsWiped) {
    console_.fill();
    scenario_.give_password(user_password);
    const auto checking = [&] {
        return !faults::children_of(scenario_.installer().process_id()).empty();
    };
    scenario_.wait_for("the check", checking);
    scenario_.wait_for("the end of the check", [&] {
        return support::holds_for([&] { return !checking(); }, std::chrono::milliseconds{500});
    });
    EXPECT_GT(copies().size(), 1U);
    scenario_.installer().send_signal(SIGTERM);
    expect_wiped_at_the_end();
}

TEST_F(PasswordAtHang, ThatIsTypedIsWiped) {
    scenario_.focus_main_window();
    scenario_.person().type(user_password);
    scenario_.wait_for("the typed text", [&] { return !copies().empty(); });
    console_.fill();
    scenario_.lose_screen();
    expect_wiped_at_the_end();
}

} // namespace
