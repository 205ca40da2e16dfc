// What xprop and xwininfo say of a window, under every window manager.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "support/child_process.h"

#include <X11/Xutil.h>

namespace {

using support::WindowManagerKind;
using Numbers = std::vector<std::uint32_t>;

struct Properties : testing::TestWithParam<WindowManagerKind> {
    CallLog log;
    EngineDesk desk{{.window_manager = GetParam()}};
    UiEngine* engine = desk.engine;
    WindowId id = desk.make_window(&log, 60, 70, 300, 200);

    std::string run(const std::string& program, const std::string& arguments) const {
        return support::output_of({"/bin/sh", "-c",
                                   "LC_ALL=C.UTF-8 DISPLAY=" + desk.server.display_name() + " " +
                                       program + " -id " + std::to_string(desk.x_window(id)) + " " +
                                       arguments});
    }
    std::string property(const std::string& name) const { return run("xprop", name); }
    std::string bytes(const std::string& name) const {
        return run("xprop -f " + name + " 8x", name);
    }
};

TEST_P(Properties, TheTitleIsWrittenInBothWays) {
    window_set_title(engine, id, "Grün 2");
    EXPECT_EQ(property("_NET_WM_NAME"), "_NET_WM_NAME(UTF8_STRING) = \"Grün 2\"\n");
    EXPECT_EQ(bytes("WM_NAME"), "WM_NAME(STRING) = 0x47, 0x72, 0xc3, 0xbc, 0x6e, 0x20, 0x32\n");
}

TEST_P(Properties, TheClassHintIsTheTextTwice) {
    window_set_class_hint(engine, id, "zeph");
    EXPECT_EQ(property("WM_CLASS"), "WM_CLASS(STRING) = \"zeph\", \"zeph\"\n");
}

TEST_P(Properties, AnOwnedWindowHasItsOwnersClassAndStandsWithIt) {
    const WindowId owned = desk.make_window(&log);
    window_set_owner(engine, owned, no_window);
    window_set_owner(engine, owned, 200);
    EXPECT_FALSE(desk.view.property(desk.x_window(owned), "WM_TRANSIENT_FOR"));
    window_set_owner(engine, owned, id); // which has no class yet
    EXPECT_EQ(desk.view.numbers_property(desk.x_window(owned), "WM_TRANSIENT_FOR"),
              Numbers{desk.x_window(id)});
    EXPECT_FALSE(desk.view.property(desk.x_window(owned), "WM_CLASS"));

    window_set_class_hint(engine, id, "zeph");
    window_set_owner(engine, owned, id);
    EXPECT_EQ(desk.view.text_property(desk.x_window(owned), "WM_CLASS"),
              std::string("zeph\0zeph\0", 10));
}

TEST_P(Properties, AWindowTakesTheKeyboardOnlyWithoutAWindowManager) {
    const support::XWindow before = desk.view.input_focus();
    window_take_keyboard_without_manager(engine, id); // not on the screen, so it cannot
    EXPECT_EQ(desk.view.input_focus(), before);
    // One that the window manager leaves alone, so that nobody else gives it the keyboard.
    {
        const XLockGuard guard(engine);
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        XChangeWindowAttributes(engine_display(engine), desk.x_window(id), CWOverrideRedirect,
                                &attributes);
    }
    window_map(engine, id);
    ASSERT_TRUE(support::wait_until([&] { return desk.view.viewable(desk.x_window(id)); }));
    window_take_keyboard_without_manager(engine, id);
    const bool alone = GetParam() == WindowManagerKind::none;
    EXPECT_EQ(desk.view.input_focus() == desk.x_window(id), alone);
}

TEST_P(Properties, TypesAndStateAreOneAtomEach) {
    window_set_type_utility(engine, id);
    EXPECT_EQ(property("_NET_WM_WINDOW_TYPE"),
              "_NET_WM_WINDOW_TYPE(ATOM) = _NET_WM_WINDOW_TYPE_UTILITY\n");
    window_set_type_splash(engine, id);
    EXPECT_EQ(property("_NET_WM_WINDOW_TYPE"),
              "_NET_WM_WINDOW_TYPE(ATOM) = _NET_WM_WINDOW_TYPE_SPLASH\n");
    window_set_above(engine, id);
    EXPECT_EQ(property("_NET_WM_STATE"), "_NET_WM_STATE(ATOM) = _NET_WM_STATE_ABOVE\n");
}

TEST_P(Properties, ProtocolsAreReplacedByTheOneAtom) {
    EXPECT_EQ(property("WM_PROTOCOLS"), "WM_PROTOCOLS(ATOM): protocols  WM_DELETE_WINDOW\n");
    Atom atom = 0;
    {
        const XLockGuard guard(engine);
        atom = XInternAtom(engine_display(engine), "WM_TAKE_FOCUS", False);
    }
    window_set_protocols(engine, id, atom);
    EXPECT_EQ(property("WM_PROTOCOLS"), "WM_PROTOCOLS(ATOM): protocols  WM_TAKE_FOCUS\n");
}

// WM_NORMAL_HINTS in the order of its fields, the short form of the protocol's first version.
TEST_P(Properties, SizeHintsWithEverything) {
    window_set_size_hints(engine, 100, 80, 600, 500, 4, 3, 10, 20, id);
    const auto flags =
        static_cast<std::uint32_t>(PPosition | PSize | PMinSize | PMaxSize | PAspect);
    EXPECT_EQ(desk.view.numbers_property(desk.x_window(id), "WM_NORMAL_HINTS"),
              (Numbers{flags, 10, 20, 300, 200, 100, 80, 600, 500, 0, 0, 4, 3, 4, 3}));
    const std::string dump = property("WM_NORMAL_HINTS");
    EXPECT_NE(dump.find("program specified location: 10, 20"), std::string::npos) << dump;
    EXPECT_NE(dump.find("program specified size: 300 by 200"), std::string::npos) << dump;
    EXPECT_NE(dump.find("program specified minimum size: 100 by 80"), std::string::npos) << dump;
    EXPECT_NE(dump.find("program specified maximum size: 600 by 500"), std::string::npos) << dump;
    EXPECT_NE(dump.find("program specified minimum aspect ratio: 4/3"), std::string::npos) << dump;
    EXPECT_NE(dump.find("program specified maximum aspect ratio: 4/3"), std::string::npos) << dump;
}

TEST_P(Properties, SizeHintsCarryOnlyWhatIsGiven) {
    const auto flags = [&] {
        const Numbers hints = desk.view.numbers_property(desk.x_window(id), "WM_NORMAL_HINTS");
        return hints.empty() ? 0 : hints.front();
    };
    const auto always = static_cast<std::uint32_t>(PSize | PMinSize);
    window_set_size_hints(engine, 10, 10, 0, 0, 0, 0, 0, 0, id);
    EXPECT_EQ(flags(), always);
    window_set_size_hints(engine, 10, 10, 0, 5, 0, 0, 0, 0, id);
    EXPECT_EQ(flags(), always | PMaxSize);
    window_set_size_hints(engine, 10, 10, 0, 0, 1, 0, 0, 0, id);
    EXPECT_EQ(flags(), always | PAspect);
    window_set_size_hints(engine, 10, 10, 0, 0, 0, 0, 0, -3, id);
    EXPECT_EQ(flags(), always | PPosition);
}

TEST_P(Properties, AShownWindowStandsWithSizeMaskAndPlace) {
    window_set_size_hints(engine, 1, 1, 0, 0, 0, 0, 60, 70, id);
    window_select_input(engine, id);
    window_map(engine, id);
    ASSERT_TRUE(support::wait_until([&] { return desk.view.viewable(desk.x_window(id)); }));
    const std::string stats = run("xwininfo", "-stats");
    EXPECT_NE(stats.find("Width: 300"), std::string::npos) << stats;
    EXPECT_NE(stats.find("Height: 200"), std::string::npos) << stats;
    EXPECT_NE(stats.find("Border width: 0"), std::string::npos) << stats;
    EXPECT_NE(stats.find("Map State: IsViewable"), std::string::npos) << stats;
    EXPECT_NE(stats.find("Bit Gravity State: NorthWestGravity"), std::string::npos) << stats;
    const auto own_mask = [&] {
        const XLockGuard guard(engine);
        XWindowAttributes attributes{};
        XGetWindowAttributes(engine_display(engine), window_x_window(engine, id), &attributes);
        return attributes.your_event_mask;
    };
    EXPECT_EQ(own_mask(), 0x2A00F);
    window_select_input_with_motion(engine, id, true);
    EXPECT_EQ(own_mask(), 0x2A04F);
    window_select_input_with_motion(engine, id, false);
    EXPECT_EQ(own_mask(), 0x2A00F);
}

TEST_P(Properties, ResizingChangesServerAndRecord) {
    // A window manager is asked first and answers in its own time.
    const auto becomes = [&](std::int32_t wanted_width, std::int32_t wanted_height) {
        return support::wait_until([&] {
            std::int32_t width = 0;
            std::int32_t height = 0;
            x_window_size(engine, desk.x_window(id), &width, &height);
            return width == wanted_width && height == wanted_height;
        });
    };
    window_resize(engine, id, 120, 90);
    EXPECT_EQ(window_width(engine, id), 120U);
    EXPECT_EQ(window_height(engine, id), 90U);
    EXPECT_TRUE(becomes(120, 90));
    x_window_resize(engine, desk.x_window(id), -1, 40);
    x_window_resize(engine, desk.x_window(id), 40, -1);
    x_window_resize(engine, desk.x_window(id), 0, 0);
    window_resize(engine, id, 0, 10);
    x_window_resize(engine, desk.x_window(id), 50, 40);
    EXPECT_TRUE(becomes(50, 40));
    EXPECT_EQ(window_width(engine, id), 120U);
}

TEST_P(Properties, TheLargestSizeThatAServerCanBeToldIsTaken) {
    window_resize(engine, id, 65535, 65535);
    EXPECT_EQ(window_width(engine, id), 65535U);
    EXPECT_EQ(window_height(engine, id), 65535U);
    window_resize(engine, id, 120, 90);
    window_resize(engine, id, 65536, 80);
    window_resize(engine, id, 80, 65536);
    EXPECT_EQ(window_width(engine, id), 120U);
    EXPECT_EQ(window_height(engine, id), 90U);
}

TEST_P(Properties, GrabsHoldAndAreGivenBack) {
    window_set_size_hints(engine, 1, 1, 0, 0, 0, 0, 60, 70, id);
    window_map(engine, id);
    ASSERT_TRUE(support::wait_until([&] { return desk.view.viewable(desk.x_window(id)); }));
    Display* other = XOpenDisplay(desk.server.display_name().c_str());
    ASSERT_NE(other, nullptr);
    const Window root = DefaultRootWindow(other);
    const auto pointer_free = [&] {
        const int answer =
            XGrabPointer(other, root, True, 0, GrabModeAsync, GrabModeAsync, 0, 0, CurrentTime);
        XUngrabPointer(other, CurrentTime);
        XSync(other, False);
        return answer == GrabSuccess;
    };
    const auto keyboard_free = [&] {
        const int answer =
            XGrabKeyboard(other, root, True, GrabModeAsync, GrabModeAsync, CurrentTime);
        XUngrabKeyboard(other, CurrentTime);
        XSync(other, False);
        return answer == GrabSuccess;
    };
    window_grab_pointer(engine, id);
    EXPECT_FALSE(pointer_free());
    window_ungrab_pointer(engine);
    EXPECT_TRUE(support::wait_until(pointer_free));
    window_grab_keyboard(engine, id);
    EXPECT_FALSE(keyboard_free());
    window_ungrab_keyboard(engine);
    EXPECT_TRUE(support::wait_until(keyboard_free));
    window_grab_all_keys(engine, id);
    trap_x_errors(engine);
    XGrabKey(other, AnyKey, AnyModifier, desk.x_window(id), True, GrabModeAsync, GrabModeAsync);
    XSync(other, False);
    EXPECT_EQ(untrap_x_errors(engine), BadAccess);
    window_ungrab_all_keys(engine, id);
    trap_x_errors(engine);
    XGrabKey(other, AnyKey, AnyModifier, desk.x_window(id), True, GrabModeAsync, GrabModeAsync);
    XSync(other, False);
    EXPECT_EQ(untrap_x_errors(engine), 0);
    XCloseDisplay(other);
}

INSTANTIATE_TEST_SUITE_P(Worlds, Properties,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& world) { return window_manager_name(world.param); });

} // namespace
