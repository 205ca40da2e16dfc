// browser_scroll_test.cpp: wheel, pages and drags over long lists, covered and uncovered.

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

class BrowserScroll : public testing::TestWithParam<float> {
protected:
    BrowserScroll() {
        folder.add_files(128, "file"); // with "." and "..", 130 rows
        folder.add_folder("last");     // sorts third; 131
        desk.open();
        rows = rows_of(folder.path());
        expect_folder(desk, folder.path());
    }
    void expect_offset(int offset, int thumb_top = -1, bool dragging = false) {
        expect_look(desk, {.path = folder.path(),
                           .rows = rows,
                           .offset = offset,
                           .thumb_top = thumb_top,
                           .dragging = dragging});
    }
    [[nodiscard]] int view_height() const {
        return static_cast<int>(350 * GetParam() + 0.5F) - static_cast<int>(82 * GetParam());
    }
    [[nodiscard]] int range() const {
        return static_cast<int>((131 * 16 + 2) * GetParam() + 0.5F) - view_height();
    }
    static void pause() {
        (void)support::holds_for([] { return true; }, std::chrono::milliseconds(350));
    }

    TestFolder folder;
    BrowserDesk desk{folder.path(), {.scale = GetParam()}};
    std::vector<ExpectedRow> rows;
};

TEST_P(BrowserScroll, TheWheelMovesBySixteenPixelsAndStopsAtTheTop) {
    desk.point_at(320, 200);
    desk.person.turn_wheel_down(3);
    expect_offset(48);
    desk.person.turn_wheel_up(2);
    expect_offset(16);
    desk.person.turn_wheel_up(5);
    expect_offset(0);
}

TEST_P(BrowserScroll, TheWheelStopsAtTheEnd) {
    desk.point_at(320, 200);
    desk.person.turn_wheel_down(range() / 16 + 10);
    expect_offset(range());
}

TEST_P(BrowserScroll, PagesBesideTheThumb) {
    desk.click(620, 345);
    expect_offset(view_height());
    pause();
    desk.click(620, 345);
    expect_offset(2 * view_height());
    pause();
    desk.click(620, 84);
    expect_offset(view_height());
    pause();
    desk.click(620, 84);
    expect_offset(0);
}

// The thumb as the pointer takes it along: in single precision, unbounded until it is let go.
struct DraggedThumb {
    static constexpr int track_top = 81;
    static constexpr int track_bottom = 351;
    static constexpr int length = 35;
    static constexpr int lowest_top = track_bottom - length;

    float scale;
    int pointer_y; // device pixels
    float top = track_top;

    void move_to(int y) {
        top -= static_cast<float>(pointer_y - y) / scale;
        pointer_y = y;
    }
    [[nodiscard]] int shown() const {
        return std::clamp(static_cast<int>(top), track_top, lowest_top);
    }
    [[nodiscard]] int offset(int range) const {
        const float fraction =
            static_cast<float>(shown() - track_top) / static_cast<float>(lowest_top - track_top);
        return static_cast<int>(static_cast<float>(range) * fraction + 0.5F);
    }
};

TEST_P(BrowserScroll, TheThumbDraggedPastBothEndsComesBack) {
    const float scale = GetParam();
    const auto start = static_cast<int>(90 * scale);
    const auto x = static_cast<int>(620 * scale);
    DraggedThumb thumb{scale, start};
    desk.point_at_device(x, start);
    desk.person.press_button();
    expect_offset(0, DraggedThumb::track_top, true);
    // Past the end, past the beginning, back to where it was taken (the thumb has gone above its
    // track with the pointer, and comes back only with it), and into the middle.
    const auto below = static_cast<int>(425 * scale);
    const auto middle = start + static_cast<int>(100 * scale);
    for (const int y : {below, 5, start, middle}) {
        desk.point_at_device(x, y);
        thumb.move_to(y);
        expect_offset(thumb.offset(range()), thumb.shown(), true);
    }
    desk.person.release_button();
    expect_offset(thumb.offset(range()), thumb.shown(), false);
}

TEST_P(BrowserScroll, AClickInAScrolledListMeetsTheRowUnderThePointer) {
    desk.point_at(320, 200);
    desk.person.turn_wheel_down(2);
    expect_offset(32);
    desk.click_row(2); // "last"
    expect_folder(desk, folder.path_of("last"));
    EXPECT_EQ(WorkingDirectory::now(), folder.path_of("last"));
}

TEST_P(BrowserScroll, CoveredWhileItScrollsItIsWholeWhenUncovered) {
    const support::Place place = desk.view.place_on_root(desk.window());
    xcb_connection_t* connection = desk.view.connection();
    const xcb_window_t cover = xcb_generate_id(connection);
    const std::uint32_t values[] = {0xFFFFFF, 1};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, cover, desk.view.root(),
                      static_cast<std::int16_t>(place.x + 100),
                      static_cast<std::int16_t>(place.y + place.height / 2), 200,
                      static_cast<std::uint16_t>(place.height / 3), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(connection, cover);
    xcb_flush(connection);
    ASSERT_TRUE(support::wait_until([&] { return desk.view.viewable(cover); }));
    desk.point_at(320, 90);
    desk.person.turn_wheel_down(6); // from under the cover into view
    ASSERT_TRUE(support::wait_until([&] { return desk.scroll_offset() == 96; }));
    const support::Picture should = expected_picture(
        desk.text, GetParam(), browser_title, {.path = folder.path(), .rows = rows, .offset = 96});
    const support::Place above{0, 0, place.width, place.height / 2};
    EXPECT_TRUE(support::wait_until([&] {
        return support::count_differences(support::crop(desk.picture(), above),
                                          support::crop(should, above)) == 0;
    })) << "what can be seen beside the cover";
    xcb_destroy_window(connection, cover);
    xcb_flush(connection);
    expect_offset(96);
}

INSTANTIATE_TEST_SUITE_P(Scales, BrowserScroll, testing::Values(1.0F, 1.5F, 1.75F, 2.0F),
                         [](const auto& given) {
                             return "Scale" + std::to_string(static_cast<int>(given.param * 1000));
                         });

TEST(BrowserShortList, ScrollsNowhereAtScalesWhereItIsShorterThanItsView) {
    for (const float scale : {1.25F, 1.75F}) {
        const TestFolder folder;
        folder.add_file("file");
        BrowserDesk desk(folder.path(), {.scale = scale});
        desk.open();
        expect_folder(desk, folder.path());
        desk.point_at(320, 200);
        desk.person.turn_wheel_down(3);
        desk.click(620, 345);
        desk.person.turn_wheel_up(1);
        expect_folder(desk, folder.path());
        EXPECT_EQ(desk.scroll_offset(), 0);
    }
}

TEST(BrowserLongList, IsDrawnAsOnePieceWhereverItIsLookedAt) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const TestFolder folder;
    folder.add_files(700, "f");
    BrowserDesk desk(folder.path(), {.scale = 1.5F});
    desk.open();
    const auto rows = rows_of(folder.path());
    const auto x = static_cast<int>(620 * 1.5F);
    desk.point_at_device(x, 130);
    desk.person.press_button();
    for (int step = 0; step < 12; ++step) {
        desk.point_at_device(x, 130 + static_cast<int>(random() % 390));
    }
    desk.point_at_device(x, 300); // 170 device pixels, or 113 1/3 design pixels, below the start
    const float position = 113.0F / (351.0F - 16.0F - 81.0F);
    const float range = 11232.0F * 1.5F + 3.0F - 402.0F;
    expect_look(desk, {.path = folder.path(),
                       .rows = rows,
                       .offset = static_cast<int>(range * position + 0.5F),
                       .thumb_top = 81 + 113,
                       .dragging = true});
    desk.person.release_button();
}

} // namespace
