// engine_closed_test.cpp: an engine without a display does nothing and says so.
#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/clipboard.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace {

using EnginePointer = std::unique_ptr<UiEngine, decltype(&engine_destroy)>;

struct ClosedEngine : testing::Test {
    EnginePointer engine{engine_new(), engine_destroy};
};

TEST_F(ClosedEngine, StartsWithDefaults) {
    EXPECT_EQ(engine->tone_table[0], 0U);
    EXPECT_EQ(engine->tone_table[1], 3U);
    EXPECT_EQ(engine->tone_table[128], 146U);
    EXPECT_EQ(engine->tone_table[255], 255U);
    EXPECT_EQ(engine->live_order[0], no_window);
    EXPECT_EQ(engine->live_order[window_capacity - 1], no_window);
    EXPECT_EQ(engine_display(engine.get()), nullptr);
    EXPECT_EQ(engine_tick_interval(engine.get()), 0);
    EXPECT_EQ(engine_window_tick_interval(engine.get()), 0);
    EXPECT_TRUE(window_table_empty(engine.get()));
    EXPECT_LT(elapsed_seconds(engine->last_press_time, monotonic_now()), 10.0F);
}

TEST_F(ClosedEngine, CannotOpenADisplayThatIsNotThere) {
    ASSERT_EQ(setenv("DISPLAY", ":not-a-display", 1), 0);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(engine_open_display(engine.get()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(engine_display(engine.get()), nullptr);
    EXPECT_EQ(engine->depth, 0);
}

TEST_F(ClosedEngine, ClosesAtOnceAndPrintsNothingWhenNeverOpened) {
    testing::internal::CaptureStdout();
    engine_close_display(engine.get());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(engine->stop_requested);
}

TEST_F(ClosedEngine, MakesNoWindow) {
    EXPECT_EQ(window_create_simple(engine.get(), 0, 0, 10, 10, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_splash(engine.get(), 0, 0, 10, 10, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_colored(engine.get(), 0, 0, 10, 10, 1, 2, 3, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_plain(engine.get(), 0, 0, 10, 10, nullptr, 1.0F), no_window);
}

TEST_F(ClosedEngine, EveryWindowOperationDoesNothing) {
    UiEngine* e = engine.get();
    EXPECT_EQ(window_destroy(e, 0), 0);
    window_forget(e, 0);
    window_destroy_all(e);
    EXPECT_EQ(window_is_valid(e, 99), 0);
    EXPECT_EQ(window_reparent(e, 0, 99), 0);
    EXPECT_EQ(window_x_window(e, 0), 0U);
    EXPECT_EQ(window_x_window(e, -1), 0U);
    EXPECT_EQ(window_from_x_window(e, 99), no_window);
    window_set_title(e, 0, "text");
    window_set_class_hint(e, 0, "text");
    window_set_type_utility(e, 0);
    window_set_type_splash(e, 0);
    window_set_above(e, 0);
    window_set_protocols(e, 0, 1);
    window_set_size_hints(e, 1, 1, 1, 1, 1, 1, 1, 1, 0);
    window_map(e, 0);
    window_select_input(e, 0);
    window_select_input_with_motion(e, 0, true);
    window_resize(e, 0, 10, 10);
    x_window_resize(e, 99, 10, 10);
    window_grab_pointer(e, 0);
    window_ungrab_pointer(e);
    window_grab_keyboard(e, 0);
    window_ungrab_keyboard(e);
    window_grab_all_keys(e, 0);
    window_ungrab_all_keys(e, 0);
    clipboard_request_paste(e, 0);
    EXPECT_EQ(window_width(e, 0), 0U);
}

TEST_F(ClosedEngine, PlacesAndSizesAreZero) {
    std::int32_t x = 5;
    std::int32_t y = 6;
    screen_centre(engine.get(), &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    x = y = 7;
    EXPECT_FALSE(place_near_pointer(engine.get(), &x, &y, 10, 10, 1.0F));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    x = y = 7;
    window_root_position(engine.get(), 0, &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    x = y = 7;
    x_window_size(engine.get(), 99, &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

TEST_F(ClosedEngine, LoopEndsAtOnceWhenAskedBeforeItBegins) {
    event_loop_stop(engine.get());
    event_loop_run(engine.get());
    EXPECT_FALSE(engine->stop_requested);
}

std::atomic<int> engine_ticks{0};

bool count_engine_tick() {
    engine_ticks += 1;
    return true;
}

TEST_F(ClosedEngine, LoopTicksWithoutADisplayAndClosingWaitsForItsEnd) {
    engine_ticks = 0;
    engine_set_tick_interval(engine.get(), 1);
    engine_set_tick_callback(engine.get(), count_engine_tick);
    std::atomic<bool> ended{false};
    std::thread loop([&] {
        event_loop_run(engine.get());
        ended = true;
    });
    while (engine_ticks < 3) {
        std::this_thread::yield();
    }
    engine_close_display(engine.get());
    const int ticks = engine_ticks;
    loop.join();
    EXPECT_EQ(engine_ticks, ticks);
    EXPECT_TRUE(ended);
}

TEST_F(ClosedEngine, SaysThatALocaleIsNotThere) {
    ASSERT_EQ(setenv("LC_ALL", "xx_NOWHERE.UTF-8", 1), 0);
    testing::internal::CaptureStdout();
    const EnginePointer other(engine_new(), engine_destroy);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "** ORX-UI Engine: cannot set locale\n");
    unsetenv("LC_ALL");
}

TEST_F(ClosedEngine, SaysThatTheXLibraryDoesNotKnowALocaleAndGoesOn) {
    // The C library finds it under a name of its own, which is in none of Xlib's tables.
    const std::string folder =
        testing::TempDir() + "locales-" + std::to_string(static_cast<long>(getpid()));
    std::filesystem::create_directory(folder);
    std::filesystem::create_directory_symlink("/usr/lib/locale/C.utf8", folder + "/xx_OWN.utf8");
    ASSERT_EQ(setenv("LOCPATH", folder.c_str(), 1), 0);
    ASSERT_EQ(setenv("LC_ALL", "xx_OWN.UTF-8", 1), 0);
    testing::internal::CaptureStdout();
    const EnginePointer other(engine_new(), engine_destroy);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ORX-UI Engine: X doesn not support this locale\n"
              "** ORX-UI Engine: Unable to set Locale Modifiers\n");
    unsetenv("LC_ALL");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
}

TEST_F(ClosedEngine, SaysThatLocaleModifiersAreNotUnderstoodAndGoesOn) {
    ASSERT_EQ(setenv("XMODIFIERS", "nonsense", 1), 0);
    testing::internal::CaptureStdout();
    const EnginePointer other(engine_new(), engine_destroy);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ORX-UI Engine: Unable to set Locale Modifiers\n");
    unsetenv("XMODIFIERS");
}

} // namespace
