// Which event reaches which callback, with real and with synthetic input.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "support/person.h"

#include <X11/keysym.h>

#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

namespace {

using support::WindowManagerKind;

// A real person's input, whatever the window manager. The window stands away from the edges.
struct RealInput : testing::TestWithParam<WindowManagerKind> {
    CallLog log;
    EngineDesk desk{{.window_manager = GetParam()}};
    WindowId id = desk.show_window(&log, 100, 120);
    support::Person person{desk.server.display_name()};

    void point_at(int x, int y) {
        const support::Place place = desk.view.place_on_root(desk.x_window(id));
        person.move_pointer(place.x + x, place.y + y);
    }
    std::string with_id(const std::string& line) const { return line + std::to_string(id); }
};

TEST_P(RealInput, APressAndAReleaseTellPlaceAndButton) {
    point_at(30, 40);
    person.click(support::right_button);
    EXPECT_TRUE(log.wait_for(with_id("press 30 40 3 ")));
    EXPECT_TRUE(log.wait_for(with_id("release 30 40 3 ")));
}

TEST_P(RealInput, TwoQuickClicksAreAPressAndADoubleClick) {
    point_at(10, 10);
    // Again and again: a loaded machine may let more than 0.3 s pass between the two.
    EXPECT_TRUE(support::wait_until([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(350));
        log.clear();
        person.click();
        // No sooner: openbox now and then swallows a press that meets its handling of the one
        // before.
        const bool first = log.wait_for_count("release", 1);
        person.click();
        return first && log.wait_for_count("release", 2) &&
               log.lines_of("press") == std::vector{with_id("press 10 10 1 ")} &&
               log.lines_of("double") == std::vector{with_id("double 10 10 1 ")};
    }));
}

TEST_P(RealInput, WhileThePointerIsGrabbedWhatHappensOutsideIsToldToo) {
    point_at(10, 10);
    desk.settle(id, &log);
    log.clear();
    ASSERT_TRUE(support::wait_until([&] { // a window manager may still hold it
        window_grab_pointer(desk.engine, id);
        point_at(250, 150);
        person.press_button();
        point_at(260, 150);
        person.release_button();
        return support::wait_until([&] { return log.has(with_id("press 250 150 1 ")); },
                                   std::chrono::milliseconds(500));
    })) << "a click beside the window goes unnoticed";
    EXPECT_TRUE(log.wait_for(with_id("motion 260 150 ")));
    EXPECT_TRUE(log.wait_for(with_id("release 260 150 1 ")));
    window_ungrab_pointer(desk.engine);
}

TEST_P(RealInput, MotionIsToldOnlyWhileAButtonIsHeldUnlessAskedFor) {
    point_at(10, 10);
    point_at(20, 20);
    desk.settle(id, &log);
    EXPECT_EQ(log.count("motion"), 0);
    person.press_button();
    ASSERT_TRUE(log.wait_for_count("press", 1));
    point_at(25, 26);
    EXPECT_TRUE(log.wait_for(with_id("motion 25 26 ")));
    person.release_button();
    ASSERT_TRUE(log.wait_for_count("release", 1));
    window_select_input_with_motion(desk.engine, id, true);
    point_at(40, 41);
    EXPECT_TRUE(log.wait_for(with_id("motion 40 41 ")));
    window_select_input_with_motion(desk.engine, id, false);
    log.clear();
    point_at(50, 51);
    desk.settle(id, &log);
    EXPECT_EQ(log.count("motion"), 0);
}

TEST_P(RealInput, KeysTellTextSymbolAndState) {
    point_at(10, 10);
    person.click();
    ASSERT_TRUE(log.wait_for_count("release", 1));
    ASSERT_TRUE(support::wait_until([&] {
        person.type("a");
        return log.has(with_id("key [a] 97 0 "));
    }));
    EXPECT_TRUE(log.wait_for(with_id("keyup - 97 0 ")));
    person.type("B");
    EXPECT_TRUE(log.wait_for(with_id("key [B] 66 1 ")));
    person.press_key(XK_Left);
    EXPECT_TRUE(log.wait_for(with_id("key [] " + std::to_string(XK_Left) + " 0 ")));
    person.press_return();
    EXPECT_TRUE(log.wait_for(with_id("key [\r] " + std::to_string(XK_Return) + " 0 ")));
}

TEST_P(RealInput, AManagedWindowIsToldItsNewSizeAndParent) {
    window_resize(desk.engine, id, 321, 123);
    EXPECT_TRUE(log.wait_for(with_id("configure 123 321 ")));
    EXPECT_TRUE(log.wait_for_count("paint 0 0 321 123", 1));
    EXPECT_EQ(window_width(desk.engine, id), 321U);
    EXPECT_EQ(log.count("reparent"), GetParam() == WindowManagerKind::none ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Worlds, RealInput,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& world) { return window_manager_name(world.param); });

// Waits on the clock itself: the double-click time is what is tested.
void pass_time(long milliseconds) {
    timespec time{milliseconds / 1000, milliseconds % 1000 * 1'000'000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &time, &time) != 0) {
    }
}

struct Dispatch : testing::Test {
    CallLog log;
    EngineDesk desk;
    WindowId id = desk.make_window(&log);
    events::Sender send{desk.view, desk.x_window(id)};

    std::string with_id(const std::string& line) const { return line + std::to_string(id); }
    std::string with_window(const std::string& line) const {
        return line + std::to_string(send.window);
    }
    void settle() { desk.settle(id, &log); }

    // What button 1 is told as when it is pressed every 0.2 s. Again and again: a loaded machine
    // may let so much more pass that the presses are slow ones.
    std::vector<std::string> presses_in_a_row(int count) {
        using Clock = std::chrono::steady_clock;
        EXPECT_TRUE(support::wait_until([&] {
            pass_time(350);
            log.clear();
            bool in_time = true;
            Clock::time_point last = Clock::now();
            for (int i = 0; i < count; ++i) {
                pass_time(i == 0 ? 0 : 200);
                const Clock::time_point before = Clock::now();
                send.press(1, 2, 1);
                settle();
                in_time =
                    in_time && (i == 0 || Clock::now() - last < std::chrono::milliseconds(280));
                last = before;
            }
            return in_time;
        }));
        std::vector<std::string> told = log.lines();
        std::erase_if(told, [](const std::string& line) { return line.starts_with("message"); });
        return told;
    }
};

TEST_F(Dispatch, SlowPressesAreTwoPresses) {
    send.press(1, 2, 1);
    settle();
    pass_time(350);
    send.press(1, 2, 1);
    settle();
    EXPECT_EQ(log.count("press"), 2);
    EXPECT_EQ(log.count("double"), 0);
}

TEST_F(Dispatch, TwoPressesAFifthOfASecondApartAreAPressAndADoubleClick) {
    EXPECT_EQ(presses_in_a_row(2),
              (std::vector{with_id("press 1 2 1 "), with_id("double 1 2 1 ")}));
}

TEST_F(Dispatch, ADoubleClickRestartsTheClock) {
    EXPECT_EQ(presses_in_a_row(3), (std::vector{with_id("press 1 2 1 "), with_id("double 1 2 1 "),
                                                with_id("double 1 2 1 ")}));
}

TEST_F(Dispatch, OtherButtonsNeverDouble) {
    send.press(1, 2, 1);
    send.press(1, 2, 3);
    send.press(1, 2, 3);
    send.press(1, 2, 1);
    settle();
    EXPECT_EQ(log.count("press 1 2 3"), 2);
    EXPECT_EQ(log.count("double 1 2 1"), 1);
    EXPECT_EQ(log.count("press 1 2 1"), 1);
}

TEST_F(Dispatch, AnotherButtonBeforeTheFirstMakesNoDoubleClickOfIt) {
    send.press(1, 2, 3);
    send.press(1, 2, 1);
    settle();
    EXPECT_TRUE(log.has(with_id("press 1 2 3 ")));
    EXPECT_TRUE(log.has(with_id("press 1 2 1 ")));
    EXPECT_EQ(log.count("double"), 0);
}

TEST_F(Dispatch, ADoubleClickNobodyTakesStillRestartsTheClockAndIsNoPress) {
    window_set_on_double_click(desk.engine, id, nullptr);
    EXPECT_EQ(presses_in_a_row(3), std::vector{with_id("press 1 2 1 ")});
}

TEST_F(Dispatch, CreateAndReparentTellTheirNumbersInTheirOrder) {
    send.create(30, 20);
    send.reparent(-5, 6);
    settle();
    EXPECT_TRUE(log.has(with_id("create 20 30 ")));
    EXPECT_TRUE(log.has(with_window("reparent -5 6 ")));
}

TEST_F(Dispatch, ReleaseAndMotionTellTheirPlace) {
    send.release(-3, 4, 5);
    send.motion(7, -8);
    settle();
    EXPECT_TRUE(log.has(with_id("release -3 4 5 ")));
    EXPECT_TRUE(log.has(with_id("motion 7 -8 ")));
}

TEST_F(Dispatch, AMessageTellsItsFirstNumber) {
    send.message(32, 4711);
    EXPECT_TRUE(log.wait_for(with_window("message 4711 ")));
}

TEST_F(Dispatch, ADestroyNoticeGivesTheSlotBack) {
    send.destroy();
    EXPECT_TRUE(support::wait_until([&] { return window_table_empty(desk.engine); }));
    const TableLockGuard guard(desk.engine);
    EXPECT_EQ(desk.engine->live_order[0], no_window);
}

TEST_F(Dispatch, ASelectionNobodyAskedForHasNoText) {
    send.selection();
    EXPECT_TRUE(log.wait_for(with_id("selection - ")));
}

TEST_F(Dispatch, ASelectionIsReadFromPrimaryWhateverPropertyIsNamed) {
    const auto store = [this](xcb_atom_t property, const std::string& text) {
        xcb_change_property(desk.view.connection(), XCB_PROP_MODE_REPLACE, send.window, property,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()),
                            text.data());
    };
    store(XCB_ATOM_PRIMARY, "primary");
    store(XCB_ATOM_SECONDARY, "secondary");
    send.selection(XCB_ATOM_SECONDARY);
    EXPECT_TRUE(log.wait_for_count("selection", 1));
    send.selection(XCB_ATOM_NONE);
    EXPECT_TRUE(log.wait_for_count("selection", 2));
    EXPECT_EQ(log.lines_of("selection"), std::vector(2, with_id("selection [primary] ")));
}

TEST_F(Dispatch, AShortTextCarriesNoTailOfALongerOne) {
    // Two bytes of UTF-8 cannot be typed in every locale; the buffer is looked at instead.
    std::string buffer;
    log.actions["key"] = [&] { buffer.assign(desk.engine->key_text, 17); };
    std::fill_n(desk.engine->key_text, 17, 'x');
    const int a_key = 38;
    send.key(true, a_key);
    settle();
    ASSERT_EQ(log.count("key ["), 1);
    EXPECT_EQ(buffer, std::string("a") + std::string(16, '\0'));
}

TEST_F(Dispatch, AModifierAloneIsAKeyWithoutText) {
    const int shift_key = 50;
    send.key(true, shift_key);
    settle();
    EXPECT_TRUE(log.has(with_id("key [] " + std::to_string(XK_Shift_L) + " 0 ")));
}

// With the server's keyboard extension Xlib follows changes by itself, without it only when told.
class ChangingKeyboard : public testing::TestWithParam<bool> {
protected:
    static std::unique_ptr<EngineDesk> open_desk() {
        if (!GetParam()) {
            setenv("XKB_DISABLE", "1", 1);
        }
        auto opened = std::make_unique<EngineDesk>();
        unsetenv("XKB_DISABLE");
        return opened;
    }
    std::unique_ptr<EngineDesk> desk = open_desk();
    CallLog& log = desk->new_log();
    WindowId id = desk->show_window(&log, 100, 120);
    support::Person person{desk->server.display_name()};
};

TEST_P(ChangingKeyboard, IsFollowedAlsoByABusyLoop) {
    person.click_at(110, 130);
    ASSERT_TRUE(log.wait_for_count("release", 1));
    person.type("a");
    ASSERT_TRUE(log.wait_for("key [a] 97 0 " + std::to_string(id)));
    std::latch typed{1};
    log.actions["press"] = [&] { typed.wait(); };
    person.click(support::right_button);
    ASSERT_TRUE(log.wait_for("press 10 10 3 " + std::to_string(id)));
    person.type("\xc3\xa9\xce\xa9"); // neither is on the keyboard yet
    typed.count_down();
    ASSERT_TRUE(log.wait_for_count("release", 2));
    desk->settle(id, &log);
    std::string keys;
    for (const std::string& line : log.lines_of("key [")) {
        keys += line + '\n';
    }
    EXPECT_NE(keys.find("] " + std::to_string(0xe9) + " 0 "), std::string::npos) << keys;
    EXPECT_NE(keys.find("] " + std::to_string(0x010003a9) + " 0 "), std::string::npos) << keys;
}

INSTANTIATE_TEST_SUITE_P(Extension, ChangingKeyboard, testing::Values(true, false),
                         [](const auto& world) { return world.param ? "with" : "without"; });

// Keys that the person's compose file gives texts of its own. Xlib reads it with the display.
struct ComposedKeys : testing::Test {
    std::string compose_file =
        testing::TempDir() + "compose-" + std::to_string(static_cast<long>(getpid()));

    ComposedKeys() {
        std::ofstream(compose_file) << "<a> : \"xyz\"\n"
                                       "<b> : \"q\" q\n"
                                       "<c> : \"seventeen bytes..\" c\n"
                                       "<d> : \"sixteen bytes...\" d\n";
        setenv("XCOMPOSEFILE", compose_file.c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
    }
    ~ComposedKeys() override {
        unsetenv("LC_ALL");
        unsetenv("XCOMPOSEFILE");
        std::filesystem::remove(compose_file);
    }
};

TEST_F(ComposedKeys, WithATextButNoSymbolReachNobody) {
    EngineDesk desk;
    CallLog& log = desk.new_log();
    const WindowId id = desk.make_window(&log);
    const events::Sender send{desk.view, desk.x_window(id)};
    const int a_key = 38;
    const int b_key = 56;
    send.key(true, a_key);
    send.key(true, b_key);
    EXPECT_TRUE(log.wait_for("key [q] 113 0 " + std::to_string(id)));
    desk.settle(id, &log); // the text is looked up only in the pass after that of the key
    EXPECT_EQ(log.count("key ["), 1);
}

TEST_F(ComposedKeys, WithATextThatIsTooLongReachNobody) {
    EngineDesk desk;
    CallLog& log = desk.new_log();
    const WindowId id = desk.make_window(&log);
    const events::Sender send{desk.view, desk.x_window(id)};
    const int c_key = 54;
    const int d_key = 40;
    send.key(true, c_key);
    send.key(true, d_key);
    EXPECT_TRUE(log.wait_for("key [sixteen bytes...] 100 0 " + std::to_string(id)));
    desk.settle(id, &log);
    EXPECT_EQ(log.count("key ["), 1);
}

TEST_F(Dispatch, AClosedWindowTellsWhereItStoodAndGivesItsSlotBack) {
    const WindowId shown = desk.show_window(&log, 70, 80);
    const auto window = desk.x_window(shown);
    log.actions["close"] = [&] {
        EXPECT_EQ(desk.engine->windows[shown].in_use, 1);
        EXPECT_FALSE(desk.view.exists(window));
    };
    events::Sender{desk.view, window}.close();
    EXPECT_TRUE(log.wait_for("close 70 80 " + std::to_string(shown)));
    EXPECT_TRUE(support::wait_until([&] { return window_x_window(desk.engine, shown) == 0; }));
    const TableLockGuard guard(desk.engine);
    EXPECT_EQ(desk.engine->live_order[1], no_window);
}

TEST_F(Dispatch, AWindowWithoutOnCloseClosesAllTheSame) {
    window_set_on_close(desk.engine, id, nullptr);
    send.close();
    EXPECT_TRUE(support::wait_until([&] { return window_table_empty(desk.engine); }));
    EXPECT_FALSE(desk.view.exists(send.window));
}

TEST_F(Dispatch, TheSpareCallbackIsNeverCalled) {
    for (int type = 2; type < 36; ++type) {
        if (type != 17 && type != 31) { // destroy and selection have tests of their own
            send.raw(static_cast<std::uint8_t>(type), 0, 4);
        }
    }
    settle();
    EXPECT_EQ(log.count("spare"), 0);
}

} // namespace
