// One installation from the outside: a private world with an account, a screen of its own, the
// built installer, and the person who sits in front of it.
//
// A scenario begins with everything ready and the installer not yet started, so that a test can
// arrange the world first. Each reach_... function acts as the person would to come to that screen
// and returns when the screen is there; failing that it throws with the console text and the window
// tree, and leaves a picture of the screen in the build folder. Places are design pixels of the
// window, as the screens were drawn; the scenario knows the scale.

#pragma once

#include "support/child_process.h"
#include "support/display_view.h"
#include "support/distant_display.h"
#include "support/person.h"
#include "support/picture.h"
#include "support/window_manager.h"
#include "support/worlds/accounts.h"
#include "support/worlds/private_world.h"
#include "support/x_server.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace end_to_end {

// How the person may become root.
enum class Rights {
    sudo,    // by the own password
    su,      // sudo is there but refuses the account; root's password is known
    only_su, // there is no sudo
    none,    // neither program is there
};

inline constexpr const char* title = "QB20-VST V3.0.0 Installer";
inline constexpr const char* browser_title = "- Select your VST plugins folder -";
inline constexpr const char* user_password = "Marlow-7";
inline constexpr const char* root_password = "Wheel:42";
inline constexpr const char* archive_path = "/tmp/zeph-installer-data.tar.gz";
inline constexpr const char* lock_path = "/tmp/zeph-installer-lock";
inline constexpr const char* default_folder = "/usr/lib/lv2";

struct ScenarioOptions {
    Rights rights = Rights::sudo;
    support::WindowManagerKind manager = support::WindowManagerKind::openbox;
    std::string password = user_password;
    // NAME=value texts added to the login environment.
    std::vector<std::string> environment = {"LC_ALL=C", "ORXDPI=96"};
    double scale = 1.0; // the scale that the environment asks for
    support::XServerOptions screen = {.width = 1400, .height = 1000};
    const char* browser_title = end_to_end::browser_title;
    std::vector<std::string> keep_visible = {}; // folders that stay in view in the world
    // The line between the installer and its screen; none when neither of the two is set.
    support::DistantDisplayOptions line = {};
};

class Scenario {
public:
    explicit Scenario(const ScenarioOptions& options = {});
    ~Scenario();

    // Starts the installer as the account, on the scenario's screen. more is added to the
    // environment; its names are not among those of the options.
    void start(const std::vector<std::string>& more = {});

    void reach_splash();
    // Clicks the splash away.
    void reach_main_window_from_splash();
    void reach_main_window();
    void reach_password_screen_from_main_window();
    void reach_password_screen();
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

    // Makes /tmp so small that so many more bytes fit.
    static void leave_room_in_tmp(unsigned long bytes);

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

    [[nodiscard]] const support::Account& account() const { return account_; }
    [[nodiscard]] support::ChildProcess& installer() { return *installer_; }
    [[nodiscard]] support::DisplayView& view() { return *view_; }
    [[nodiscard]] support::Person& person() { return *person_; }
    // Only with a line in the options.
    [[nodiscard]] const support::DistantDisplay& line() const { return *line_; }
    // Where the installer's windows are, as the installer is told.
    [[nodiscard]] const std::string& display_name() const {
        return line_ ? line_->display_name() : server_->display_name();
    }
    [[nodiscard]] support::XWindow splash_window() const { return splash_window_; }
    [[nodiscard]] support::XWindow main_window() const { return main_window_; }
    [[nodiscard]] support::XWindow browser_window() const { return browser_window_; }
    [[nodiscard]] std::string program_path() const { return program_; }

private:
    // Two clicks of a person on two things are further apart than those of a double click.
    void pause_between_clicks();
    [[nodiscard]] support::Colour pixel(const support::Picture& picture, int x, int y) const;
    ScenarioOptions options_;
    std::unique_ptr<support::PrivateWorld> world_;
    support::Account account_;
    std::string program_;
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
