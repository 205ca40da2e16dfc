// What keys and buttons do in the main window, and what they leave alone.

#include "display/installer/main_input.h"

#include "display/core/clipboard_owner.h"

#include <X11/keysym.h>

namespace {

TEST_F(MainInput, ReturnGivesThePasswordWhileThereIsNoButton) {
    const auto person = this->person();
    person->type("ab");
    person->press_return();
    EXPECT_TRUE(support::wait_until([] { return installer.password_submitted != 0; }));
    EXPECT_EQ(field_text(), "ab");
    EXPECT_EQ(installer.finish_requested, 0);
}

TEST_F(MainInput, TheKeyboardIsTheWindowsWhereverThePointerIs) {
    support::Person person(desk.server.display_name());
    person.move_pointer(1, 1);
    person.type("ab");
    EXPECT_TRUE(support::wait_until([] { return field_text() == "ab"; }));
}

TEST_F(MainInput, OnlyReturnLeavesALastScreen) {
    main_window_offer_ok();
    const auto person = this->person();
    person->type("o ");
    for (const int key : {XK_Escape, XK_Tab, XK_BackSpace, XK_KP_Enter}) {
        person->press_key(static_cast<unsigned long>(key));
    }
    ASSERT_TRUE(settle());
    EXPECT_EQ(installer.finish_requested, 0);
    EXPECT_EQ(field_text(), "");

    person->press_return();
    EXPECT_TRUE(support::wait_until([] { return installer.finish_requested != 0; }));
    EXPECT_EQ(installer.password_submitted, 0);
}

TEST_F(MainInput, OnlyTheMiddleButtonInTheFieldAsksForAPaste) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::text, "pasted");
    click(beside_x, field_y, support::middle_button);
    click(field_x, field_y - 20, support::middle_button);
    click(field_x, field_y, support::left_button);
    click(field_x, field_y, support::right_button);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(
        support::holds_for([&] { return owner.requests() == 0; }, std::chrono::milliseconds{300}));
    EXPECT_EQ(field_text(), "");

    click(field_x, field_y, support::middle_button);
    EXPECT_TRUE(support::wait_until([] { return field_text() == "pasted"; }));
    EXPECT_EQ(owner.requests(), 1);
}

TEST_F(MainInput, APastedTextIsTakenOffTheWindow) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::text, "pasted");
    click(field_x, field_y, support::middle_button);
    EXPECT_TRUE(support::wait_until([] { return field_text() == "pasted"; }));
    EXPECT_TRUE(support::wait_until([&] { return !desk.view.property(window(), "PRIMARY"); }));
}

TEST_F(MainInput, NoTextIsPastedWhereNoneIsAskedFor) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::text, "pasted");
    main_window_hold_password();
    click(field_x, field_y, support::middle_button);
    ASSERT_TRUE(support::wait_until([&] { return owner.requests() == 1; }));
    EXPECT_TRUE(
        support::holds_for([] { return field_text().empty(); }, std::chrono::milliseconds{300}));

    main_window_refuse_password();
    main_window_start_installing();
    click(field_x, field_y, support::middle_button);
    ASSERT_TRUE(support::wait_until([&] { return owner.requests() == 2; }));
    EXPECT_TRUE(
        support::holds_for([] { return field_text().empty(); }, std::chrono::milliseconds{300}));
}

TEST_F(ShownMainWindow, TakesNoTextBeforeItAsksForOne) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::text, "pasted");
    const events::Sender hand{desk.view, window()};
    hand.press(field_x, field_y, support::middle_button);
    hand.release(field_x, field_y, support::middle_button);
    EXPECT_TRUE(
        support::holds_for([&] { return owner.requests() == 0; }, std::chrono::milliseconds{300}));
    EXPECT_EQ(field_text(), "");
    EXPECT_FALSE(desk.view.property(window(), "PRIMARY"));

    main_window_accept_keys();
    hand.press(field_x, field_y, support::middle_button);
    EXPECT_TRUE(support::wait_until([] { return field_text() == "pasted"; }));
}

// Whoever presses Return as soon as the field is ready again has given a new answer. Asked often,
// of one who looks all the time, since one moment may be missed; another one waits, which makes
// whoever gives the lock up take a little longer over it.
TEST_F(ShownMainWindow, ForgetsAnAnswerBeforeItAsksAgain) {
    constexpr int questions = 10'000;
    std::atomic<bool> over{false};
    std::atomic<int> old_answers{0};
    std::thread person([&] {
        while (!over) {
            if (installer.screen_lock.try_lock()) {
                const bool ready = password_field_get_focused(installer.field);
                old_answers += ready && installer.password_submitted != 0 ? 1 : 0;
                installer.screen_lock.unlock();
            }
        }
    });
    std::thread other([&] {
        while (!over) {
            const std::lock_guard<std::mutex> lock(installer.screen_lock);
        }
    });
    for (int question = 0; question < questions && old_answers == 0; ++question) {
        main_window_hold_password();
        installer.password_submitted = 1;
        main_window_refuse_password();
    }
    over = true;
    person.join();
    other.join();
    EXPECT_EQ(old_answers, 0);
    EXPECT_EQ(installer.password_submitted, 0);
}

TEST_F(MainInput, TheLeftButtonOnOkEndsTheRunWhereverItIsLetGo) {
    main_window_offer_ok();
    hand().press(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(button_is_held());
    EXPECT_EQ(installer.finish_requested, 0);

    hand().release(beside_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(button_is_held());
    EXPECT_EQ(installer.finish_requested, 1);
}

TEST_F(MainInput, NoOtherButtonOnOkEndsTheRun) {
    main_window_offer_ok();
    for (const int button : {support::middle_button, support::right_button}) {
        hand().press(ok_x, ok_y, button);
        ASSERT_TRUE(settle());
        EXPECT_FALSE(button_is_held());
        hand().release(ok_x, ok_y, button);
        ASSERT_TRUE(settle());
        EXPECT_EQ(installer.finish_requested, 0);
    }
}

TEST_F(MainInput, TheLeftButtonBesideOkDoesNotEndTheRun) {
    main_window_offer_ok();
    hand().press(beside_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(button_is_held());
    hand().release(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_EQ(installer.finish_requested, 0);
}

TEST_F(MainInput, OkStaysHeldWhenAnotherButtonIsLetGo) {
    main_window_offer_ok();
    hand().press(ok_x, ok_y, support::left_button);
    click(ok_x, ok_y, support::middle_button);
    click(ok_x, ok_y, support::right_button);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(button_is_held());
    EXPECT_EQ(installer.finish_requested, 0);

    hand().release(ok_x, ok_y, support::left_button);
    EXPECT_TRUE(support::wait_until([] { return installer.finish_requested != 0; }));
}

} // namespace
