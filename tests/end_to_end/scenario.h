// One installation from the outside: a private world with an account, a screen of its own, the
// built installer, and the person who sits in front of it.
//
// A scenario begins with everything ready and the installer not yet started, so that a test can
// arrange the world first. What the person can do is in sitting.h.

#pragma once

#include "end_to_end/sitting.h"
#include "support/worlds/accounts.h"
#include "support/worlds/private_world.h"

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
    std::string installer = ZEPH_INSTALLER;
    std::string pictures = ZEPH_PICTURES;        // where a picture goes of what went wrong
    std::chrono::milliseconds patience{120'000}; // with everything that is waited for
};

// The world, and the account in it. It stays until the screen has gone.
struct ScenarioWorld {
    explicit ScenarioWorld(const ScenarioOptions& options);
    std::unique_ptr<support::PrivateWorld> world;
    support::Account account;
    std::string program;
};

class Scenario : private ScenarioWorld, public Sitting {
public:
    explicit Scenario(const ScenarioOptions& options = {});

    // Starts the installer as the account, on the scenario's screen. more is added to the
    // environment; its names are not among those of the options.
    void start(const std::vector<std::string>& more = {});

    // Each starts it.
    void reach_splash();
    void reach_main_window();
    void reach_password_screen();

    // Makes /tmp so small that so many more bytes fit.
    static void leave_room_in_tmp(unsigned long bytes);

    [[nodiscard]] const support::Account& account() const { return ScenarioWorld::account; }
    [[nodiscard]] std::string program_path() const { return program; }

private:
    std::vector<std::string> environment_;
};

} // namespace end_to_end
