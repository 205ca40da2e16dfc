// Keys and buttons of a product that takes them as today's programs do. What the others do is in
// main_input_test.cpp.

#include "display/installer/main_input.h"

#include "display/core/clipboard_owner.h"

#include <X11/keysym.h>

#include <clocale>

namespace {

struct ModernInput : MainInput {
    void SetUp() override {
        installer.modern_input = true;
        engine_set_converted_paste(desk.engine, true);
        ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
        installer.text->utf8 = 1; // before anything is painted
        ASSERT_NO_FATAL_FAILURE(MainInput::SetUp());
    }
    ~ModernInput() override {
        std::setlocale(LC_ALL, "C");
        installer.modern_input = false;
    }
};

TEST_F(ModernInput, AClickWhereTheHiddenButtonIsDoesNothing) {
    click(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(button_is_held());
    EXPECT_EQ(installer.finish_requested, 0);

    desk.engine->last_press_time = {};
    hand().press(ok_x, ok_y, support::left_button); // and lets go of it once it shows
    ASSERT_TRUE(settle());
    main_window_offer_ok();
    hand().release(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_EQ(installer.finish_requested, 0);

    desk.engine->last_press_time = {}; // long ago, or this would be a double click
    click(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_EQ(installer.finish_requested, 1);
}

TEST_F(ModernInput, OkThatIsLetGoOfElsewhereDoesNotAct) {
    main_window_offer_ok();
    hand().press(ok_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(button_is_held());
    hand().release(beside_x, ok_y, support::left_button);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(button_is_held());
    EXPECT_EQ(installer.finish_requested, 0);
}

TEST_F(ModernInput, KeypadEnterIsReturn) {
    const auto person = this->person();
    person->type("ab");
    person->press_key(XK_KP_Enter);
    EXPECT_TRUE(support::wait_until([] { return installer.password_submitted != 0; }));
    EXPECT_EQ(field_text(), "ab");
    main_window_offer_ok();
    person->press_key(XK_KP_Enter);
    EXPECT_TRUE(support::wait_until([] { return installer.finish_requested != 0; }));
}

TEST_F(ModernInput, EscapeDoesNothing) {
    const auto person = this->person();
    person->type("a");
    person->press_key(XK_Escape);
    person->type("b");
    EXPECT_TRUE(support::wait_until([] { return field_text() == "ab"; }));
    EXPECT_EQ(installer.password_submitted, 0);
    EXPECT_EQ(installer.cancel_requested, 0);
}

TEST_F(ModernInput, TheUsualKeysPaste) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::utf8_only, "gr\u00fcn\n");
    const auto person = this->person();
    for (const auto& [held, key] :
         {std::pair{XK_Control_L, XK_v}, std::pair{XK_Shift_L, XK_Insert}}) {
        person->type("x");
        ASSERT_TRUE(support::wait_until([] { return field_text() == "x"; }));
        person->press_with(static_cast<unsigned long>(held), static_cast<unsigned long>(key));
        EXPECT_TRUE(support::wait_until([] { return field_text() == "gr\u00fcn"; }))
            << field_text();
        EXPECT_TRUE(support::wait_until([&] { return !desk.view.property(window(), "PRIMARY"); }));
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        password_field_clear(installer.field);
    }
}

TEST_F(ModernInput, TheMiddleButtonPastesInTheFieldOnly) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::utf8_only, "\u20ac\u00e2");
    click(beside_x, field_y, support::middle_button);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(
        support::holds_for([&] { return owner.requests() == 0; }, std::chrono::milliseconds{300}));
    click(field_x, field_y, support::middle_button);
    EXPECT_TRUE(support::wait_until([] { return field_text() == "\u20ac\u00e2"; }));
}

TEST_F(ModernInput, NothingIsPastedOntoAScreenWithoutAField) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::utf8_only, "pasted");
    main_window_start_installing();
    const auto person = this->person();
    person->press_with(XK_Control_L, XK_v);
    ASSERT_TRUE(settle());
    EXPECT_TRUE(
        support::holds_for([&] { return owner.requests() == 0; }, std::chrono::milliseconds{300}));
}

TEST_F(MainInput, PlainerWaysKnowNoPastingKeys) {
    const ClipboardOwner owner(desk.server.display_name(), OwnerManners::text, "pasted");
    const auto person = this->person();
    person->press_with(XK_Control_L, XK_v);
    person->press_with(XK_Shift_L, XK_Insert);
    person->press_key(XK_KP_Enter);
    person->type("a");
    EXPECT_TRUE(support::wait_until([] { return field_text() == "a"; })) << field_text();
    EXPECT_EQ(owner.requests(), 0);
    EXPECT_EQ(installer.password_submitted, 0);
}

} // namespace
