// What a person does in front of an installer, and what is to be seen there.

#include "end_to_end/sitting.h"

#include <unistd.h>

#include <stdexcept>
#include <thread>

namespace end_to_end {

using support::Colour;
using support::Picture;
using support::Place;
using support::XWindow;

namespace {

constexpr Colour widget_grey{56, 56, 56};
constexpr std::chrono::milliseconds double_click_time{400};
constexpr int first_baseline = 24;
constexpr int line_step = 16;
constexpr int ink_height = 9;
constexpr int panel_width = 600;
// A line of one word has a few dozen strokes; the darkened picture has no pixel this bright.
constexpr int least_ink = 20;
constexpr int ink_brightness = 200;

} // namespace

Sitting::Sitting(const SittingOptions& options) : options_(options) {
    if (options.running_desktop.empty()) {
        make_screen();
    }
    view_ = std::make_unique<support::DisplayView>(screen_name());
    person_ = std::make_unique<support::Person>(screen_name());
    person_->move_pointer(1, 1);
}

void Sitting::make_screen() {
    server_ = std::make_unique<support::XServer>(options_.screen);
    if (options_.line.delay.count() > 0 || options_.line.cut_after > 0) {
        line_ = std::make_unique<support::DistantDisplay>(server_->display_name(), options_.line);
    }
    manager_ = std::make_unique<support::WindowManager>(options_.manager, server_->display_name());
}

Sitting::~Sitting() = default;

void Sitting::start_program(const support::ChildOptions& program) {
    installer_ = std::make_unique<support::ChildProcess>(program);
}

void Sitting::await_splash() {
    splash_window_ = view_->wait_for_class("zeph-inst-splash", options_.patience);
    // White is the empty window; the picture has covered it when the corners are dark.
    wait_for("the splash picture", [this] {
        const Picture picture = picture_of(splash_window_);
        return picture.width > 0 && picture.at(0, 0) != Colour{255, 255, 255} &&
               picture.at(picture.width - 1, picture.height - 1) != Colour{255, 255, 255};
    });
}

void Sitting::reach_main_window_from_splash() {
    click(splash_window_, panel_width / 2, 200);
    main_window_ = view_->wait_for_class("zeph-installer");
    wait_for("text in the main window", [this] { return line_shown(picture_of(main_window_), 0); });
}

void Sitting::reach_password_screen_from_main_window() {
    wait_for("the password screen", [this] {
        const Picture picture = picture_of(main_window_);
        return lines_shown(picture) == "0 2 3" && field_shown(picture);
    });
    // Keys are taken once the lock has been written.
    wait_for("the lock file", options_.locked);
}

void Sitting::focus_main_window() {
    click(main_window_, 40, 345);
    if (options_.manager == support::WindowManagerKind::openbox) {
        wait_for("the keyboard focus", [this] { return view_->input_focus() == main_window_; });
    }
}

void Sitting::give_password(const std::string& password) {
    focus_main_window();
    person_->type(password);
    person_->press_return();
}

void Sitting::reach_wrong_password_screen() {
    wait_for("the wrong-password screen", [this] {
        const Picture picture = picture_of(main_window_);
        return lines_shown(picture) == "0 2 3 5" && field_shown(picture);
    });
}

void Sitting::reach_unpacking() {
    wait_for("the progress bar", [this] {
        const Picture picture = picture_of(main_window_);
        return bar_shown(picture) && lines_shown(picture) == "0 2";
    });
}

void Sitting::reach_folder_browser() {
    browser_window_ = view_->wait_for_title(options_.browser_title, options_.patience);
    // The listing is drawn last: its first row is the folder itself.
    wait_for("the listing", [this] {
        const Picture picture = picture_of(browser_window_);
        if (picture.width == 0) {
            return false;
        }
        const Place first_row{device(49), device(84), device(12), device(16)};
        return count_colour(picture, first_row, {255, 255, 255}, 155) > 0;
    });
}

void Sitting::reach_copying() {
    wait_for("the console to tell of copying",
             [this] { return console().find("Copying Files\n") != std::string::npos; });
}

void Sitting::reach_last_screen() {
    // The browser, while it is still there, lies over the button and is as grey.
    wait_for("the browser's end",
             [this] { return browser_window_ == 0 || !view_->viewable(browser_window_); });
    wait_for("the OK button", [this] { return button_shown(picture_of(main_window_)); });
}

void Sitting::enter_folder_row(int row) {
    const Place path_row{device(66), device(50), device(556), device(13)};
    const Picture before = take_picture(*view_, browser_window_, path_row);
    // Rows are 16 high, the first begins at the top of the list.
    click(browser_window_, 40, 82 + row * 16 + 10);
    wait_for("another folder's path", [&] {
        return count_differences(before, take_picture(*view_, browser_window_, path_row)) > 0;
    });
}

void Sitting::accept_folder() {
    click(browser_window_, 16 + 32, 368 + 8);
}

void Sitting::cancel_folder() {
    click(browser_window_, 96 + 32, 368 + 8);
}

void Sitting::press_ok() {
    click(main_window_, 268 + 32, 356 + 10);
}

void Sitting::lose_screen() {
    person_.reset();
    manager_.reset();
    server_->stop();
}

support::ChildEnd Sitting::finish() {
    const std::optional<support::ChildEnd> end = installer_->wait_for_end(options_.patience);
    if (!end) {
        throw std::runtime_error("the installer does not end\n" + report());
    }
    return *end;
}

void Sitting::pause_between_clicks() {
    const auto since = std::chrono::steady_clock::now() - last_click_;
    if (since < double_click_time) {
        std::this_thread::sleep_for(double_click_time - since);
    }
    last_click_ = std::chrono::steady_clock::now();
}

void Sitting::click(XWindow window, int x, int y, int button) {
    pause_between_clicks();
    const Place place = view_->place_on_root(window);
    person_->click_at(place.x + device(x), place.y + device(y), button);
}

void Sitting::press(XWindow window, int x, int y) {
    pause_between_clicks();
    const Place place = view_->place_on_root(window);
    person_->move_pointer(place.x + device(x), place.y + device(y));
    person_->press_button();
}

void Sitting::wait_for(const std::string& what, const std::function<bool()>& predicate) {
    bool came = false; // what came may go again
    const auto over = [&] { return (came = predicate()) || !installer_->running(); };
    if (!support::wait_until(over, options_.patience) || !came) {
        throw std::runtime_error(what + " did not come\n" + report());
    }
}

std::string Sitting::console() {
    return installer_->output();
}

Picture Sitting::picture_of(XWindow window) const {
    return take_picture(*view_, window);
}

int Sitting::device(double design) const {
    return static_cast<int>(design * options_.scale + 0.5);
}

Colour Sitting::pixel(const Picture& picture, int x, int y) const {
    const int device_x = device(x + 0.5 - 0.5 / options_.scale);
    const int device_y = device(y + 0.5 - 0.5 / options_.scale);
    return device_x < picture.width && device_y < picture.height ? picture.at(device_x, device_y)
                                                                 : Colour{};
}

bool Sitting::line_shown(const Picture& picture, int line) const {
    if (picture.width < device(panel_width)) {
        return false;
    }
    const int baseline = first_baseline + line_step * line;
    const Place strip{0, device(baseline - ink_height), device(panel_width), device(ink_height)};
    return count_colour(picture, strip, {255, 255, 255}, 255 - ink_brightness) >= least_ink;
}

std::string Sitting::lines_shown(const Picture& picture) const {
    std::string lines;
    for (int line = 0; line < 12; ++line) {
        if (line_shown(picture, line)) {
            lines += (lines.empty() ? "" : " ") + std::to_string(line);
        }
    }
    return lines;
}

bool Sitting::field_shown(const Picture& picture) const {
    // Inside the field's right end, and beside it, where only the wider bar would show.
    return near_colour(pixel(picture, 370, 363), widget_grey, 2) &&
           !near_colour(pixel(picture, 40, 362), widget_grey, 2);
}

bool Sitting::bar_shown(const Picture& picture) const {
    return near_colour(pixel(picture, 40, 361), widget_grey, 2);
}

bool Sitting::button_shown(const Picture& picture) const {
    return near_colour(pixel(picture, 275, 358), widget_grey, 2);
}

std::string Sitting::report() {
    std::string text = "console:\n" + installer_->output() + "errors:\n" +
                       installer_->error_output() + "windows:\n" + view_->describe_tree();
    const std::string file = options_.pictures + "/failed-" + std::to_string(getpid()) + ".png";
    try {
        support::save_png(take_picture(*view_, view_->root()), file);
        text += "picture: " + file + "\n";
    } catch (const std::runtime_error& error) {
        text += error.what();
    }
    return text;
}

} // namespace end_to_end
