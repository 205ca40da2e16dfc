// A person in front of an installer: a screen of its own, a window manager, the program's windows,
// and what the person does there.
//
// Each reach_... function acts as the person would to come to that screen and returns when the
// screen is there; failing that it throws with the console text and the window tree, and leaves a
// picture of the screen. Places are design pixels of the window, as the screens were drawn; the
// sitting knows the scale.

#pragma once

#include "support/child_process.h"
#include "support/display_view.h"
#include "support/distant_display.h"
#include "support/person.h"
#include "support/picture.h"
#include "support/window_manager.h"
#include "support/x_server.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace end_to_end {

inline constexpr const char* browser_title = "- Select your VST plugins folder -";

struct SittingOptions {
    support::WindowManagerKind manager = support::WindowManagerKind::openbox;
    double scale = 1.0; // the scale that the installer's environment asks for
    support::XServerOptions screen = {.width = 1400, .height = 1000};
    std::string browser_title = end_to_end::browser_title;
    // The line between the installer and its screen; none when neither of the two is set.
    support::DistantDisplayOptions line = {};
    // The display of a desktop that runs already, in place of a manager, a screen and a line.
    std::string running_desktop = {};
    std::string pictures;                        // folder for pictures of what went wrong
    std::function<bool()> locked;                // whether the installer's lock is there
    std::chrono::milliseconds patience{120'000}; // for each screen
};

class Sitting {
public:
    explicit Sitting(const SittingOptions& options);
    ~Sitting();
    Sitting(const Sitting&) = delete;
    Sitting& operator=(const Sitting&) = delete;

    // Starts the installer, which finds the screen by display_name().
    void start_program(const support::ChildOptions& program);

    void await_splash();
    // Clicks the splash away.
    void reach_main_window_from_splash();
    void reach_password_screen_from_main_window();
    // Types a password into the field of the password screen and presses Return.
    void give_password(const std::string& password);
    void reach_wrong_password_screen();
    void reach_unpacking();
    void reach_folder_browser();
    void reach_copying();
    // The last screen, by the OK button that no browser covers.
    void reach_last_screen();

    // Clicks a row of the listing, 0 is the first, and waits until another path is shown.
    void enter_folder_row(int row);
    void accept_folder();
    void cancel_folder();
    void press_ok();

    // Takes the screen away, as a crash of the X server would.
    void lose_screen();

    // Waits for the installer's end; throws when it does not end.
    support::ChildEnd finish();

    // Clicks at a place of a window.
    void click(support::XWindow window, int x, int y, int button = support::left_button);
    // The same without letting the button go.
    void press(support::XWindow window, int x, int y);
    // Puts the pointer into the main window and gives it the keys.
    void focus_main_window();

    // Polls until the predicate holds; throws with the console and the window tree otherwise.
    void wait_for(const std::string& what, const std::function<bool()>& predicate);

    [[nodiscard]] std::string console();
    [[nodiscard]] support::Picture picture_of(support::XWindow window) const;
    // A device length of a design length, as the installer rounds sizes.
    [[nodiscard]] int device(double design) const;
    // Whether a text line of the panel shows text.
    [[nodiscard]] bool line_shown(const support::Picture& picture, int line) const;
    // The lines that show text, as "0 2 3".
    [[nodiscard]] std::string lines_shown(const support::Picture& picture) const;
    [[nodiscard]] bool field_shown(const support::Picture& picture) const;
    [[nodiscard]] bool bar_shown(const support::Picture& picture) const;
    [[nodiscard]] bool button_shown(const support::Picture& picture) const;

    // The windows, the console and where the picture is: for messages about what went wrong.
    [[nodiscard]] std::string report();

    [[nodiscard]] support::ChildProcess& installer() { return *installer_; }
    [[nodiscard]] support::DisplayView& view() { return *view_; }
    [[nodiscard]] support::Person& person() { return *person_; }
    // Only with a line in the options.
    [[nodiscard]] const support::DistantDisplay& line() const { return *line_; }
    // Where the installer's windows are, as the installer is told.
    [[nodiscard]] const std::string& display_name() const {
        return line_ ? line_->display_name() : screen_name();
    }
    [[nodiscard]] support::XWindow splash_window() const { return splash_window_; }
    [[nodiscard]] support::XWindow main_window() const { return main_window_; }
    [[nodiscard]] support::XWindow browser_window() const { return browser_window_; }

private:
    // Two clicks of a person on two things are further apart than those of a double click.
    void pause_between_clicks();
    void make_screen();
    [[nodiscard]] const std::string& screen_name() const {
        return server_ ? server_->display_name() : options_.running_desktop;
    }
    [[nodiscard]] support::Colour pixel(const support::Picture& picture, int x, int y) const;
    SittingOptions options_;
    std::unique_ptr<support::XServer> server_;
    std::unique_ptr<support::DistantDisplay> line_;
    std::unique_ptr<support::WindowManager> manager_;
    std::unique_ptr<support::DisplayView> view_;
    std::unique_ptr<support::Person> person_;
    std::unique_ptr<support::ChildProcess> installer_;
    std::chrono::steady_clock::time_point last_click_;
    support::XWindow splash_window_ = 0;
    support::XWindow main_window_ = 0;
    support::XWindow browser_window_ = 0;
};

} // namespace end_to_end
