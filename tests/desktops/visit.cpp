// What a person does on a desktop, and what is looked at.

#include "desktops/visit.h"

#include "end_to_end/installed_file.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <thread>

namespace desktops {
namespace {

using end_to_end::Sitting;
using support::Picture;
using support::Place;
using support::wait_until;
using support::XWindow;

constexpr std::chrono::milliseconds patience{15'000};
// A frame has a title bar above the window and borders beside it.
constexpr int frame_size = 48;
constexpr int title_bar_middle = 9;
constexpr std::uint32_t from_a_pager = 2;
constexpr std::chrono::milliseconds longest_double_click{600};

std::string text_of(const Place& place) {
    return std::to_string(place.width) + "x" + std::to_string(place.height) + "+" +
           std::to_string(place.x) + "+" + std::to_string(place.y);
}

class Visit {
public:
    Visit(Sitting& sitting, const support::Account& account, const VisitOptions& options)
        : sitting_(sitting), account_(account), options_(options), view_(sitting.view()) {}

    std::vector<Finding> go() {
        sitting_.await_splash();
        check_place("splash in the middle", sitting_.splash_window());
        sitting_.reach_main_window_from_splash();
        sitting_.reach_password_screen_from_main_window();
        const XWindow window = sitting_.main_window();
        const bool has_keyboard = check_keyboard();
        check_place("main window in the middle", window);
        check("main window's icon", view_.property(window, "_NET_WM_ICON").has_value(), "none");
        options_.keep_picture("main");
        check_cover();
        check_minimise();
        check_half_off();
        install(has_keyboard);
        return findings_;
    }

private:
    void check(const std::string& thing, bool well, const std::string& trouble) {
        findings_.push_back({thing, well ? "" : trouble});
    }

    void check_place(const std::string& thing, XWindow window) {
        const Place screen = view_.root_place();
        const auto in_the_middle = [&] {
            const Place place = view_.place_on_root(window);
            return std::abs(2 * place.x + place.width - screen.width) <= 2 * frame_size &&
                   std::abs(2 * place.y + place.height - screen.height) <= 2 * frame_size;
        };
        check(thing, wait_until(in_the_middle, patience), text_of(view_.place_on_root(window)));
    }

    bool check_keyboard() {
        const bool has =
            wait_until([&] { return view_.input_focus() == sitting_.main_window(); }, patience);
        char focus[32];
        std::snprintf(focus, sizeof focus, "it is 0x%x's", view_.input_focus());
        check("keyboard without a click", has, focus);
        return has;
    }

    [[nodiscard]] Picture main_picture() const {
        return sitting_.picture_of(sitting_.main_window());
    }

    // Once nothing more is painted.
    [[nodiscard]] Picture still_picture_of(XWindow window) const {
        Picture picture;
        const auto still = [&] {
            picture = sitting_.picture_of(window);
            return support::holds_for(
                [&] { return count_differences(picture, sitting_.picture_of(window)) == 0; },
                std::chrono::milliseconds{300});
        };
        (void)wait_until(still, patience);
        return picture;
    }

    // That the main window comes to show that very picture.
    void check_picture(const std::string& thing, const Picture& before) {
        const bool same =
            wait_until([&] { return count_differences(before, main_picture()) == 0; }, patience);
        check(thing, same,
              std::to_string(count_differences(before, main_picture())) + " other pixels");
    }

    void check_cover() {
        const Picture before = still_picture_of(sitting_.main_window());
        xcb_connection_t* connection = view_.connection();
        const Place place = view_.place_on_root(sitting_.main_window());
        const xcb_window_t cover = xcb_generate_id(connection);
        const std::uint32_t unmanaged = 1;
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, cover, view_.root(),
                          static_cast<std::int16_t>(place.x + 100),
                          static_cast<std::int16_t>(place.y + 100), 400, 280, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        xcb_map_window(connection, cover);
        const bool covered = wait_until([&] { return view_.viewable(cover); }, patience);
        xcb_destroy_window(connection, cover);
        xcb_flush(connection);
        check("covered", covered, "the cover does not show");
        check_picture("whole after being covered", before);
    }

    void check_minimise() {
        if (!options_.can_minimise) {
            return;
        }
        const XWindow window = sitting_.main_window();
        const Picture before = main_picture();
        constexpr std::uint32_t iconic_state = 3;
        constexpr std::uint32_t normal_state = 1;
        const auto has_state = [&](std::uint32_t wanted) {
            return wait_until(
                [&] {
                    const auto state = view_.numbers_property(window, "WM_STATE");
                    return !state.empty() && state.front() == wanted;
                },
                patience);
        };
        view_.ask_manager(window, "WM_CHANGE_STATE", {iconic_state});
        check("minimised", has_state(iconic_state), "it stays");
        view_.ask_manager(window, "_NET_ACTIVE_WINDOW", {from_a_pager});
        check("brought back", has_state(normal_state), "it stays away");
        check_picture("whole after being minimised", before);
    }

    // As a program that arranges windows does, and as a pager does.
    void move_to(int x, int y) {
        const XWindow window = sitting_.main_window();
        const std::uint32_t place[] = {static_cast<std::uint32_t>(x),
                                       static_cast<std::uint32_t>(y)};
        xcb_configure_window(view_.connection(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                             place);
        xcb_flush(view_.connection());
        if (!stands_off(x < 0)) {
            constexpr std::uint32_t with_x_and_y = 3U << 8U;
            constexpr std::uint32_t static_gravity = 10;
            view_.ask_manager(
                window, "_NET_MOVERESIZE_WINDOW",
                {static_gravity | with_x_and_y | from_a_pager << 12U, place[0], place[1], 0, 0});
        }
    }

    // By the title bar, as a person does; without one, or where it is not the X server's, other
    // ways remain.
    void drag(int distance) {
        const Place place = view_.place_on_root(sitting_.main_window());
        const int x = place.x + place.width * 3 / 4;
        const int y = place.y - title_bar_middle;
        sitting_.person().move_pointer(x, y);
        sitting_.person().press_button();
        constexpr int steps = 10;
        for (int step = 1; step <= steps; ++step) {
            sitting_.person().move_pointer(x + distance * step / steps, y);
        }
        sitting_.person().release_button();
    }

    // Whether the window comes to stand off the screen, or on it.
    [[nodiscard]] bool stands_off(bool off) const {
        return wait_until(
            [&] { return (view_.place_on_root(sitting_.main_window()).x < 0) == off; },
            std::chrono::milliseconds{1500});
    }

    void check_half_off() {
        const Picture before = main_picture();
        const Place place = view_.place_on_root(sitting_.main_window());
        const auto where = [&] { return text_of(view_.place_on_root(sitting_.main_window())); };
        const int distance = place.x + place.width / 2;
        drag(-distance);
        if (!stands_off(true)) {
            move_to(place.x - distance, place.y);
        }
        check("moved half off", stands_off(true), where());
        // Two presses on a title bar in quick succession are a double click, which may roll a
        // window up.
        std::this_thread::sleep_for(longest_double_click);
        drag(distance);
        if (!stands_off(false)) {
            move_to(place.x, place.y);
        }
        check("moved back", stands_off(false), where());
        check_picture("whole after being half off", before);
    }

    void install(bool has_keyboard) {
        if (!has_keyboard) {
            sitting_.focus_main_window();
        }
        sitting_.person().type(account_.password);
        sitting_.person().press_return();
        sitting_.reach_unpacking();
        sitting_.reach_folder_browser();
        check_browser();
        options_.keep_picture("browser");
        sitting_.accept_folder();
        sitting_.reach_last_screen();
        options_.keep_picture("last");
        sitting_.press_ok();
        const support::ChildEnd end = sitting_.finish();
        check("ended clean", end.exit_status == 0 && end_to_end::installer_files_in_tmp().empty(),
              "status " + std::to_string(end.exit_status.value_or(-1)));
        check("installed", end_to_end::plugin_in(account_.home) == end_to_end::plugin_of_archive(),
              "the file is not there, or another one");
    }

    [[nodiscard]] bool browser_is_above() const {
        const std::vector<XWindow> order = view_.children(view_.root());
        const auto place_of = [&](XWindow window) {
            return std::find(order.begin(), order.end(), view_.top_level_of(window));
        };
        return place_of(sitting_.browser_window()) > place_of(sitting_.main_window());
    }

    void check_browser() {
        const XWindow browser = sitting_.browser_window();
        check_place("browser in the middle", browser);
        check("browser's icon", view_.property(browser, "_NET_WM_ICON").has_value(), "none");
        check("browser's class", view_.class_name(browser) == "zeph-installer",
              "\"" + view_.class_name(browser) + "\"");
        const std::vector<std::string> state = view_.atoms_property(browser, "_NET_WM_STATE");
        check("browser without alarm",
              std::find(state.begin(), state.end(), "_NET_WM_STATE_DEMANDS_ATTENTION") ==
                  state.end(),
              "it demands attention");
        check("browser above", wait_until([&] { return browser_is_above(); }, patience),
              "the main window covers it");
        const Picture whole = still_picture_of(browser);
        view_.ask_manager(sitting_.main_window(), "_NET_ACTIVE_WINDOW", {from_a_pager});
        (void)wait_until([&] { return view_.input_focus() == sitting_.main_window(); },
                         std::chrono::milliseconds{1000});
        if (options_.keeps_owned_above) {
            check("browser stays above", wait_until([&] { return browser_is_above(); }, patience),
                  "the main window covers it");
        } else {
            view_.ask_manager(browser, "_NET_ACTIVE_WINDOW", {from_a_pager});
        }
        check(
            "browser whole",
            wait_until([&] { return count_differences(whole, sitting_.picture_of(browser)) == 0; },
                       patience),
            "something covers it");
    }

    Sitting& sitting_;
    const support::Account& account_;
    const VisitOptions& options_;
    const support::DisplayView& view_;
    std::vector<Finding> findings_;
};

} // namespace

std::vector<Finding> visit(Sitting& sitting, const support::Account& account,
                           const VisitOptions& options) {
    return Visit(sitting, account, options).go();
}

Finding visit_and_close(Sitting& sitting) {
    sitting.await_splash();
    sitting.reach_main_window_from_splash();
    sitting.reach_password_screen_from_main_window();
    sitting.view().ask_manager(sitting.main_window(), "_NET_CLOSE_WINDOW", {0, from_a_pager});
    if (!sitting.installer().wait_for_end(patience)) {
        sitting.view().ask_to_close(sitting.main_window()); // as a desktop's own keys do
    }
    const support::ChildEnd end = sitting.finish();
    const bool well = end.exit_status == 0 && end_to_end::installer_files_in_tmp().empty();
    return {"closed by its frame", well ? "" : "it did not end clean"};
}

} // namespace desktops
