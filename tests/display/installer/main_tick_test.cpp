// What the main window paints on its tick, and what it leaves for later.

#include "display/installer/shown_main_window.h"

namespace {

constexpr support::Place lines_place{0, 0, 600, 350};
constexpr support::Place bar_place{25, 360, 550, 16};

struct MainTick : ShownMainWindow {
    // Ends with the bouncing bar going, whose steps count the ticks.
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(ShownMainWindow::SetUp());
        {
            const std::lock_guard<std::mutex> lock(installer.screen_lock);
            progress_bar_set_mode(installer.bar, progress_mode_bouncing);
            progress_bar_set_hidden(installer.bar, false);
        }
        ASSERT_TRUE(ticks_pass());
    }

    // Several, so that what the first of them paints is on the screen after the last.
    [[nodiscard]] static bool ticks_pass() {
        int moves = 0;
        std::int32_t last = block_position();
        return support::wait_until([&] {
            const std::int32_t now = block_position();
            moves += now != last ? 1 : 0;
            last = now;
            return moves >= 5;
        });
    }

    [[nodiscard]] static std::int32_t block_position() {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        return installer.bar->block_position;
    }

    [[nodiscard]] static bool panel_is_dirty() {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        return message_panel_get_dirty(installer.panel);
    }

    static void change_a_line() {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        message_panel_set_line(installer.panel, 2, "Nobody has asked for this yet");
        message_panel_set_dirty(installer.panel, true);
    }
};

TEST_F(MainTick, AChangedWidgetIsPaintedOnlyOnceTheWindowIsAskedTo) {
    const support::Picture before = picture(lines_place);
    change_a_line();
    ASSERT_TRUE(ticks_pass());
    EXPECT_EQ(support::count_differences(picture(lines_place), before), 0);
    EXPECT_TRUE(panel_is_dirty());

    installer.ui_dirty = 1;
    EXPECT_TRUE(support::wait_until(
        [&] { return support::count_differences(picture(lines_place), before) > 0; }));
    EXPECT_FALSE(panel_is_dirty());
    EXPECT_EQ(installer.ui_dirty, 0);
}

TEST_F(MainTick, AnUnchangedWidgetIsNotPaintedWhenTheWindowIsAskedTo) {
    const support::Picture before = picture(lines_place);
    change_a_line();
    {
        const std::lock_guard<std::mutex> lock(installer.screen_lock);
        message_panel_set_dirty(installer.panel, false);
    }
    installer.ui_dirty = 1;
    ASSERT_TRUE(ticks_pass());
    EXPECT_EQ(installer.ui_dirty, 0);
    EXPECT_EQ(support::count_differences(picture(lines_place), before), 0);
}

TEST_F(MainTick, ABouncingBarMovesWithoutBeingAskedTo) {
    const support::Picture before = picture(bar_place);
    EXPECT_TRUE(support::wait_until(
        [&] { return support::count_differences(picture(bar_place), before) > 0; }));
    EXPECT_EQ(installer.ui_dirty, 0);
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    EXPECT_FALSE(progress_bar_get_dirty(installer.bar));
}

// Where a widget's border shows all along: its four lines without their four corners, which stay as
// they are.
[[nodiscard]] bool border_is_whole(const support::Picture& picture, const support::Place& place) {
    constexpr support::Colour grey{56, 56, 56};
    const auto is_grey = [&](int x, int y) { return near_colour(picture.at(x, y), grey, 2); };
    bool whole = true;
    for (int x = place.x + 1; x < place.x + place.width; ++x) {
        whole = whole && is_grey(x, place.y) && is_grey(x, place.y + place.height);
    }
    for (int y = place.y + 1; y < place.y + place.height; ++y) {
        whole = whole && is_grey(place.x, y) && is_grey(place.x + place.width, y);
    }
    return whole;
}

// The panel is on the screen before them, and nothing covers the window.
TEST_F(ShownMainWindow, TheFieldsBorderIsWholeFromTheBeginning) {
    main_window_ask_for_password();
    EXPECT_TRUE(support::wait_until([&] {
        return border_is_whole(picture({0, 0, 600, 400}), {225, 360, 150, 16});
    }));
}

TEST_F(ShownMainWindow, TheButtonsBorderIsWholeFromTheBeginning) {
    main_window_offer_ok();
    EXPECT_TRUE(support::wait_until([&] {
        return border_is_whole(picture({0, 0, 600, 400}), {268, 356, 64, 20});
    }));
}

} // namespace
