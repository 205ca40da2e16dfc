// Arranging a world with a screen and an installer in it, and what a person does there.

#include "end_to_end/scenario.h"

#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <thread>

namespace end_to_end {

using support::ChildOptions;
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

std::string folder_of(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

support::WorldOptions world_of(const ScenarioOptions& options) {
    support::WorldOptions world{.keep_visible = options.keep_visible};
    world.keep_visible.push_back(folder_of(ZEPH_INSTALLER));
    world.keep_visible.push_back(ZEPH_PICTURES);
    return world;
}

void arrange_rights(Rights rights) {
    if (rights == Rights::su || rights == Rights::only_su) {
        support::set_root_password(root_password);
    } else {
        support::lock_root();
    }
    if (rights == Rights::only_su || rights == Rights::none) {
        support::hide_program("/usr/bin/sudo");
    }
    if (rights == Rights::none) {
        support::hide_program("/usr/bin/su");
        support::hide_program("/bin/su");
    }
}

} // namespace

Scenario::Scenario(const ScenarioOptions& options)
    : options_(options), world_(std::make_unique<support::PrivateWorld>(world_of(options))) {
    account_ = support::add_account("musician", options.password,
                                    options.rights == Rights::sudo ? "ALL=(ALL:ALL) ALL" : "");
    arrange_rights(options.rights);
    std::filesystem::create_directories(default_folder);
    // Every desktop has these; a bare machine that only runs the tests need not.
    std::filesystem::create_directories("/usr/share/icons");
    std::filesystem::create_directories("/usr/share/applications");
    // The build folder may be closed to other accounts; a download lies in the person's own folder.
    program_ = account_.home + "/.zeph-installer";
    std::filesystem::copy_file(ZEPH_INSTALLER, program_);
    support::give_to(account_, program_);
    server_ = std::make_unique<support::XServer>(options.screen);
    if (options.line.delay.count() > 0 || options.line.cut_after > 0) {
        line_ = std::make_unique<support::DistantDisplay>(server_->display_name(), options.line);
    }
    manager_ = std::make_unique<support::WindowManager>(options.manager, server_->display_name());
    view_ = std::make_unique<support::DisplayView>(server_->display_name());
    person_ = std::make_unique<support::Person>(server_->display_name());
    person_->move_pointer(1, 1);
}

Scenario::~Scenario() = default;

void Scenario::start(const std::vector<std::string>& more) {
    std::vector<std::string> environment = {"DISPLAY=" + display_name()};
    environment.insert(environment.end(), options_.environment.begin(), options_.environment.end());
    environment.insert(environment.end(), more.begin(), more.end());
    installer_ =
        std::make_unique<support::ChildProcess>(support::run_as(account_, {program_}, environment));
}

void Scenario::reach_splash() {
    start();
    splash_window_ = view_->wait_for_class("zeph-inst-splash");
    // White is the empty window; the picture has covered it when the corners are dark.
    wait_for("the splash picture", [this] {
        const Picture picture = picture_of(splash_window_);
        return picture.width > 0 && picture.at(0, 0) != Colour{255, 255, 255} &&
               picture.at(picture.width - 1, picture.height - 1) != Colour{255, 255, 255};
    });
}

void Scenario::reach_main_window_from_splash() {
    click(splash_window_, panel_width / 2, 200);
    main_window_ = view_->wait_for_class("zeph-installer");
    wait_for("text in the main window", [this] { return line_shown(picture_of(main_window_), 0); });
}

void Scenario::reach_main_window() {
    reach_splash();
    reach_main_window_from_splash();
}

void Scenario::reach_password_screen() {
    reach_main_window();
    reach_password_screen_from_main_window();
}

void Scenario::reach_password_screen_from_main_window() {
    wait_for("the password screen", [this] {
        const Picture picture = picture_of(main_window_);
        return lines_shown(picture) == "0 2 3" && field_shown(picture);
    });
    // Keys are taken once the lock has been written.
    wait_for("the lock file", [] { return std::filesystem::exists(lock_path); });
}

void Scenario::focus_main_window() {
    click(main_window_, 40, 345);
    if (options_.manager == support::WindowManagerKind::openbox) {
        wait_for("the keyboard focus", [this] { return view_->input_focus() == main_window_; });
    }
}

void Scenario::give_password(const std::string& password) {
    focus_main_window();
    person_->type(password);
    person_->press_return();
}

void Scenario::reach_wrong_password_screen() {
    wait_for("the wrong-password screen", [this] {
        const Picture picture = picture_of(main_window_);
        return lines_shown(picture) == "0 2 3 5" && field_shown(picture);
    });
}

void Scenario::reach_unpacking() {
    wait_for("the progress bar", [this] {
        const Picture picture = picture_of(main_window_);
        return bar_shown(picture) && lines_shown(picture) == "0 2";
    });
}

void Scenario::reach_folder_browser() {
    browser_window_ = view_->wait_for_title(options_.browser_title);
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

void Scenario::reach_copying() {
    wait_for("the console to tell of copying",
             [this] { return console().find("Copying Files\n") != std::string::npos; });
}

void Scenario::reach_last_screen() {
    // The browser, while it is still there, lies over the button and is as grey.
    wait_for("the browser's end",
             [this] { return browser_window_ == 0 || !view_->viewable(browser_window_); });
    wait_for("the OK button", [this] { return button_shown(picture_of(main_window_)); });
}

void Scenario::enter_folder_row(int row) {
    const Place path_row{device(66), device(50), device(556), device(13)};
    const Picture before = take_picture(*view_, browser_window_, path_row);
    // Rows are 16 high, the first begins at the top of the list.
    click(browser_window_, 40, 82 + row * 16 + 10);
    wait_for("another folder's path", [&] {
        return count_differences(before, take_picture(*view_, browser_window_, path_row)) > 0;
    });
}

void Scenario::accept_folder() {
    click(browser_window_, 16 + 32, 368 + 8);
}

void Scenario::cancel_folder() {
    click(browser_window_, 96 + 32, 368 + 8);
}

void Scenario::press_ok() {
    click(main_window_, 268 + 32, 356 + 10);
}

void Scenario::leave_room_in_tmp(unsigned long bytes) {
    struct statvfs status {};
    const bool known = statvfs("/tmp", &status) == 0;
    const unsigned long used = (status.f_blocks - status.f_bfree) * status.f_frsize;
    const std::string size = "size=" + std::to_string(used + bytes);
    if (!known || mount(nullptr, "/tmp", nullptr, MS_REMOUNT, size.c_str()) != 0) {
        throw std::runtime_error("cannot make /tmp smaller");
    }
}

void Scenario::lose_screen() {
    person_.reset();
    manager_.reset();
    server_->stop();
}

support::ChildEnd Scenario::finish() {
    const std::optional<support::ChildEnd> end =
        installer_->wait_for_end(std::chrono::milliseconds{40'000});
    if (!end) {
        throw std::runtime_error("the installer does not end\n" + report());
    }
    return *end;
}

void Scenario::pause_between_clicks() {
    const auto since = std::chrono::steady_clock::now() - last_click_;
    if (since < double_click_time) {
        std::this_thread::sleep_for(double_click_time - since);
    }
    last_click_ = std::chrono::steady_clock::now();
}

void Scenario::click(XWindow window, int x, int y, int button) {
    pause_between_clicks();
    const Place place = view_->place_on_root(window);
    person_->click_at(place.x + device(x), place.y + device(y), button);
}

void Scenario::press(XWindow window, int x, int y) {
    pause_between_clicks();
    const Place place = view_->place_on_root(window);
    person_->move_pointer(place.x + device(x), place.y + device(y));
    person_->press_button();
}

void Scenario::wait_for(const std::string& what, const std::function<bool()>& predicate) {
    bool came = false; // what came may go again
    const auto over = [&] { return (came = predicate()) || !installer_->running(); };
    if (!support::wait_until(over, std::chrono::milliseconds{40'000}) || !came) {
        throw std::runtime_error(what + " did not come\n" + report());
    }
}

std::string Scenario::console() {
    return installer_->output();
}

Picture Scenario::picture_of(XWindow window) const {
    return take_picture(*view_, window);
}

int Scenario::device(double design) const {
    return static_cast<int>(design * options_.scale + 0.5);
}

Colour Scenario::pixel(const Picture& picture, int x, int y) const {
    const int device_x = device(x + 0.5 - 0.5 / options_.scale);
    const int device_y = device(y + 0.5 - 0.5 / options_.scale);
    return device_x < picture.width && device_y < picture.height ? picture.at(device_x, device_y)
                                                                 : Colour{};
}

bool Scenario::line_shown(const Picture& picture, int line) const {
    if (picture.width < device(panel_width)) {
        return false;
    }
    const int baseline = first_baseline + line_step * line;
    const Place strip{0, device(baseline - ink_height), device(panel_width), device(ink_height)};
    return count_colour(picture, strip, {255, 255, 255}, 255 - ink_brightness) >= least_ink;
}

std::string Scenario::lines_shown(const Picture& picture) const {
    std::string lines;
    for (int line = 0; line < 12; ++line) {
        if (line_shown(picture, line)) {
            lines += (lines.empty() ? "" : " ") + std::to_string(line);
        }
    }
    return lines;
}

bool Scenario::field_shown(const Picture& picture) const {
    // Inside the field's right end, and beside it, where only the wider bar would show.
    return near_colour(pixel(picture, 370, 363), widget_grey, 2) &&
           !near_colour(pixel(picture, 40, 362), widget_grey, 2);
}

bool Scenario::bar_shown(const Picture& picture) const {
    return near_colour(pixel(picture, 40, 361), widget_grey, 2);
}

bool Scenario::button_shown(const Picture& picture) const {
    return near_colour(pixel(picture, 275, 358), widget_grey, 2);
}

std::string Scenario::report() {
    std::string text = "console:\n" + installer_->output() + "errors:\n" +
                       installer_->error_output() + "windows:\n" + view_->describe_tree();
    const std::string file =
        std::string(ZEPH_PICTURES) + "/failed-" + std::to_string(getpid()) + ".png";
    try {
        support::save_png(take_picture(*view_, view_->root()), file);
        text += "picture: " + file + "\n";
    } catch (const std::runtime_error& error) {
        text += error.what();
    }
    return text;
}

} // namespace end_to_end
