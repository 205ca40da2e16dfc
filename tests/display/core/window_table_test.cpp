// Making and ending windows, and the table's rules, as the server sees them.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/core/x_error_trap.h"
#include "support/picture.h"

#include <xcb/xcb.h>

namespace {

struct WindowTable : testing::Test {
    CallLog log;
    EngineDesk desk{{.run = false}};
    UiEngine* engine = desk.engine;

    WindowId make() { return desk.make_window(&log); }
    std::vector<WindowId> order(std::size_t count) const {
        return {engine->live_order, engine->live_order + count};
    }
    // Another client ends the window behind the engine's back.
    void kill_from_outside(WindowId id) {
        xcb_connection_t* connection = desk.view.connection();
        xcb_destroy_window(connection, desk.x_window(id));
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
};

using Ids = std::vector<WindowId>;

TEST_F(WindowTable, ANewWindowTakesTheLowestFreeSlotAndTheEndOfTheOrder) {
    EXPECT_EQ(make(), 0);
    EXPECT_EQ(make(), 1);
    EXPECT_EQ(make(), 2);
    EXPECT_EQ(window_destroy(engine, 1), 0);
    EXPECT_EQ(order(3), (Ids{0, 2, -1}));
    EXPECT_EQ(make(), 1);
    EXPECT_EQ(order(4), (Ids{0, 2, 1, -1}));
}

TEST_F(WindowTable, The256thWindowCannotBeMade) {
    for (int i = 0; i < window_capacity; ++i) {
        ASSERT_EQ(make(), i);
    }
    EXPECT_EQ(make(), no_window);
    EXPECT_EQ(window_create_colored(engine, 0, 0, 5, 5, 1, 2, 3, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_splash(engine, 0, 0, 5, 5, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_simple(engine, 0, 0, 5, 5, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_destroy(engine, 100), 0);
    EXPECT_EQ(make(), 100);
    EXPECT_EQ(engine->live_order[window_capacity - 1], 100);
}

TEST_F(WindowTable, ScaleMultipliesTheSizeAndNotThePosition) {
    int data = 0;
    const WindowId id = window_create_simple(engine, 30, 40, 100, 50, &data, 2.0F);
    const WindowSlot& slot = engine->windows[id];
    EXPECT_EQ(desk.view.place_on_root(desk.x_window(id)), (support::Place{30, 40, 200, 100}));
    EXPECT_EQ(window_width(engine, id), 200U);
    EXPECT_EQ(window_height(engine, id), 100U);
    EXPECT_EQ(slot.inverse_scale, 0x8000U);
    EXPECT_FLOAT_EQ(slot.scale, 2.0F);
    EXPECT_EQ(slot.x, 30U);
    EXPECT_EQ(slot.y, 40U);
    EXPECT_EQ(slot.user_data, &data);
    EXPECT_NE(slot.input_context, nullptr);
    const WindowId odd = window_create_simple(engine, 0, 0, 101, 53, nullptr, 1.375F);
    EXPECT_EQ(window_width(engine, odd), 139U); // 138.875
    EXPECT_EQ(window_height(engine, odd), 73U); // 72.875
    EXPECT_EQ(engine->windows[odd].inverse_scale, 47'662U);
}

TEST_F(WindowTable, SizesThatNoWindowCanHaveMakeNone) {
    EXPECT_EQ(window_create_plain(engine, 0, 0, 0, 10, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_plain(engine, 0, 0, 10, -1, nullptr, 1.0F), no_window);
    EXPECT_EQ(window_create_plain(engine, 0, 0, 10, 10, nullptr, 0.0F), no_window);
    EXPECT_EQ(window_create_plain(engine, 0, 0, 10, 10, nullptr, -1.0F), no_window);
    EXPECT_EQ(window_create_plain(engine, 0, 0, 70'000, 10, nullptr, 1.0F), no_window);
    EXPECT_TRUE(window_table_empty(engine));
}

TEST_F(WindowTable, ANewWindowIsNotShownAndSelectsNothing) {
    const WindowId id = make();
    EXPECT_FALSE(desk.view.viewable(desk.x_window(id)));
    XWindowAttributes attributes{};
    const XLockGuard guard(engine);
    XGetWindowAttributes(engine_display(engine), window_x_window(engine, id), &attributes);
    // What the input method wants of a window is not the engine's choice.
    EXPECT_EQ(attributes.your_event_mask & (ExposureMask | StructureNotifyMask | ButtonPressMask),
              0);
    EXPECT_EQ(attributes.border_width, 0);
}

TEST_F(WindowTable, TheFourKindsDifferInBackgroundGravityAndType) {
    struct Kind {
        WindowId id;
        support::Colour background;
        int gravity;
        std::vector<std::string> type;
    };
    const std::vector<Kind> kinds = {
        {window_create_simple(engine, 0, 0, 20, 20, nullptr, 1.0F), {0, 0, 0}, ForgetGravity, {}},
        {window_create_splash(engine, 30, 0, 20, 20, nullptr, 1.0F),
         {255, 255, 255},
         ForgetGravity,
         {"_NET_WM_WINDOW_TYPE_SPLASH"}},
        {window_create_colored(engine, 60, 0, 20, 20, 200, 100, 50, nullptr, 1.0F),
         {200, 100, 50},
         NorthWestGravity,
         {}},
        {window_create_plain(engine, 90, 0, 20, 20, nullptr, 1.0F),
         {0, 0, 0},
         NorthWestGravity,
         {}},
    };
    for (const Kind& kind : kinds) {
        window_map(engine, kind.id);
        const auto window = desk.x_window(kind.id);
        const support::Picture picture = support::take_picture(desk.view, window);
        ASSERT_EQ(picture.width, 20);
        EXPECT_TRUE(support::near_colour(picture.at(10, 10), kind.background, 0));
        EXPECT_EQ(desk.view.atoms_property(window, "_NET_WM_WINDOW_TYPE"), kind.type);
        EXPECT_EQ(desk.view.atoms_property(window, "WM_PROTOCOLS"),
                  std::vector<std::string>{"WM_DELETE_WINDOW"});
        const XLockGuard guard(engine);
        XWindowAttributes attributes{};
        XGetWindowAttributes(engine_display(engine), window, &attributes);
        EXPECT_EQ(attributes.bit_gravity, kind.gravity);
    }
}

TEST_F(WindowTable, AUsedSlotKeepsItsOldOnCloseAndAuxiliaryPointer) {
    const WindowId id = make();
    window_set_aux_pointer(engine, id, this);
    const CloseCallback old = engine->windows[id].on_close;
    window_destroy(engine, id);
    ASSERT_EQ(window_create_plain(engine, 0, 0, 10, 10, nullptr, 1.0F), id);
    EXPECT_EQ(engine->windows[id].on_close, old);
    EXPECT_EQ(window_aux_pointer(engine, id), this);
    EXPECT_EQ(engine->windows[id].on_paint, nullptr);
}

TEST_F(WindowTable, DestroyingEndsWindowAndPixmap) {
    const WindowId id = make();
    const auto window = desk.x_window(id);
    Pixmap pixmap = 0;
    {
        const TableLockGuard table(engine);
        const XLockGuard x(engine);
        pixmap = XCreatePixmap(engine_display(engine), window, 5, 5, 24);
        engine->windows[id].pixmap = pixmap;
    }
    EXPECT_EQ(window_destroy(engine, id), 0);
    EXPECT_FALSE(desk.view.exists(window));
    EXPECT_EQ(window_x_window(engine, id), 0U);
    EXPECT_EQ(window_destroy(engine, id), 0);
    const XLockGuard x(engine);
    XErrorTrap trap(engine);
    XFreePixmap(engine_display(engine), pixmap);
    EXPECT_EQ(trap.finish(), BadPixmap);
}

TEST_F(WindowTable, DestroyingOneThatHasGoneTellsTheErrorAndFreesTheSlot) {
    const WindowId id = make();
    kill_from_outside(id);
    EXPECT_EQ(window_destroy(engine, id), BadWindow);
    EXPECT_TRUE(window_table_empty(engine));
}

TEST_F(WindowTable, ForgettingFreesTheSlotAndLeavesTheWindow) {
    const WindowId id = make();
    const WindowId other = make();
    const auto window = desk.x_window(id);
    window_forget(engine, id);
    EXPECT_TRUE(desk.view.exists(window));
    EXPECT_EQ(window_x_window(engine, id), 0U);
    EXPECT_EQ(order(2), (Ids{other, -1}));
}

TEST_F(WindowTable, ForgettingOneThatHasGoneIsNoError) {
    const WindowId id = make();
    kill_from_outside(id);
    window_forget(engine, id);
    EXPECT_TRUE(window_table_empty(engine));
}

TEST_F(WindowTable, DestroyingAllLeavesTheOrderAsItIs) {
    make();
    const auto window = desk.x_window(make());
    window_destroy_all(engine);
    EXPECT_TRUE(window_table_empty(engine));
    EXPECT_EQ(order(3), (Ids{0, 1, -1}));
    EXPECT_FALSE(desk.view.exists(window));
    EXPECT_EQ(make(), 0); // the lowest free slot, behind what has stayed in the order
    EXPECT_EQ(order(4), (Ids{0, 1, 0, -1}));
}

TEST_F(WindowTable, AnswersQuestionsAboutWindows) {
    EXPECT_TRUE(window_table_empty(engine));
    const WindowId id = make();
    const auto window = desk.x_window(id);
    EXPECT_FALSE(window_table_empty(engine));
    EXPECT_EQ(window_from_x_window(engine, window), id);
    EXPECT_EQ(window_from_x_window(engine, window + 1000), no_window);
    EXPECT_EQ(window_from_x_window(engine, 0), no_window);
    EXPECT_EQ(window_x_window(engine, -1), 0U);
    EXPECT_EQ(window_x_window(engine, 200), 0U);
    EXPECT_EQ(window_is_valid(engine, window), 0);
    EXPECT_EQ(window_is_valid(engine, window + 1000), BadWindow);
}

TEST_F(WindowTable, AWindowIsGoneAsSoonAsItHasEndedWhoeverEndedIt) {
    const WindowId id = make();
    EXPECT_FALSE(window_is_gone(engine, id));
    kill_from_outside(id); // and the engine has not been told yet
    EXPECT_TRUE(window_is_gone(engine, id)) << "a window that nobody sees is waited for";
    const WindowId forgotten = make();
    window_forget(engine, forgotten);
    EXPECT_TRUE(window_is_gone(engine, forgotten));
}

TEST_F(WindowTable, ReparentingMovesTheWindowIntoItsNewParent) {
    const WindowId parent = make();
    const WindowId child = make();
    EXPECT_EQ(window_reparent(engine, child, desk.x_window(parent)), 0);
    EXPECT_EQ(desk.view.children(desk.x_window(parent)),
              std::vector<support::XWindow>{desk.x_window(child)});
    EXPECT_EQ(window_reparent(engine, child, 0x7FFFFFF), BadWindow);
    EXPECT_EQ(window_reparent(engine, 200, desk.x_window(parent)), 0);
}

TEST_F(WindowTable, EveryOperationOutlivesAWindowThatHasGone) {
    const WindowId id = make();
    const unsigned long window = window_x_window(engine, id);
    kill_from_outside(id);
    window_set_title(engine, id, "t");
    window_set_class_hint(engine, id, "t");
    window_set_type_utility(engine, id);
    window_set_type_splash(engine, id);
    window_set_above(engine, id);
    window_set_protocols(engine, id, 1);
    window_set_size_hints(engine, 1, 1, 1, 1, 1, 1, 1, 1, id);
    window_map(engine, id);
    window_select_input_with_motion(engine, id, true);
    window_resize(engine, id, 10, 10);
    x_window_resize(engine, window, 10, 10);
    std::int32_t width = 1;
    std::int32_t height = 1;
    x_window_size(engine, window, &width, &height);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 0);
    window_grab_pointer(engine, id);
    window_grab_keyboard(engine, id);
    window_grab_all_keys(engine, id);
    window_ungrab_all_keys(engine, id);
    EXPECT_NE(window_reparent(engine, id, desk.view.root()), 0);
    EXPECT_NE(engine_display(engine), nullptr);
}

} // namespace
