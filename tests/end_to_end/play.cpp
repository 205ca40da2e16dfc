// Plays one installation that runs elsewhere, on another machine's root file system for instance,
// on a private screen of this one, and says in one line how it went.
//
//   zeph-play RESULTS PASSWORD [--browser TITLE] [--accept-offered] [--dpi DPI] -- COMMAND...
//
// COMMAND gets DISPLAY and ORXDPI (96 without --dpi), starts the installer there, and tells what
// cannot be seen from here: it prints "session: starting" just before the installer starts and
// "session: locked" when the lock file is there. The person types PASSWORD. Refused, they close the
// window; accepted, they choose the listing's first folder inside the one shown (--accept-offered:
// the one shown) and go on to the end. RESULTS, a folder, gets console.txt and pictures.
//
// The line, whose parts stand between tabs: what it came to (installed, not installed, refused, or
// what did not come), seconds until the first window, seconds from Return to the verdict. Ends with
// status 0 unless it cannot play.

#include "end_to_end/sitting.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace end_to_end {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::minutes patience{3}; // for a machine played by an emulator

constexpr int plain_dpi = 96;

struct Play {
    std::string results;
    std::string password;
    std::string browser = browser_title;
    bool accept_offered = false;
    int dpi = plain_dpi;
    std::vector<std::string> command;
};

struct Outcome {
    std::string verdict;
    double window_seconds = -1;
    double verdict_seconds = -1;
};

double seconds_since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

bool says(Sitting& sitting, const char* text) {
    return sitting.console().find(text) != std::string::npos;
}

void keep(Sitting& sitting, const Play& play, support::XWindow window, const char* name) {
    save_png(sitting.picture_of(window), play.results + "/" + name + ".png");
}

void choose_folder(Sitting& sitting, const Play& play) {
    sitting.reach_folder_browser();
    if (!play.accept_offered) {
        sitting.enter_folder_row(2);
    }
    keep(sitting, play, sitting.browser_window(), "3-browser");
    sitting.accept_folder();
}

void install(Sitting& sitting, const Play& play, Outcome& outcome) {
    sitting.wait_for("the start", [&] { return says(sitting, "session: starting"); });
    const auto start = Clock::now();
    sitting.await_splash();
    outcome.window_seconds = seconds_since(start);
    keep(sitting, play, sitting.splash_window(), "1-splash");
    sitting.reach_main_window_from_splash();
    sitting.reach_password_screen_from_main_window();
    keep(sitting, play, sitting.main_window(), "2-password");
    sitting.give_password(play.password);
    const auto typed = Clock::now();
    bool accepted = false;
    sitting.wait_for("a verdict", [&] {
        accepted = says(sitting, "Password OK\n");
        return accepted ||
               sitting.lines_shown(sitting.picture_of(sitting.main_window())) == "0 2 3 5";
    });
    outcome.verdict_seconds = seconds_since(typed);
    if (!accepted) {
        outcome.verdict = "refused";
        sitting.view().ask_to_close(sitting.main_window());
    } else {
        choose_folder(sitting, play);
        sitting.reach_last_screen();
        keep(sitting, play, sitting.main_window(), "4-last");
        outcome.verdict = says(sitting, "Installation Complete\n") ? "installed" : "not installed";
        sitting.press_ok();
    }
    (void)sitting.finish();
}

Outcome play_it(const Play& play) {
    Sitting* seen = nullptr;
    Sitting sitting({.scale = static_cast<double>(play.dpi) / plain_dpi,
                     .browser_title = play.browser,
                     .pictures = play.results,
                     .locked = [&seen] { return says(*seen, "session: locked"); },
                     .patience = patience});
    seen = &sitting;
    setenv("DISPLAY", sitting.display_name().c_str(), 1);
    setenv("ORXDPI", std::to_string(play.dpi).c_str(), 1);
    sitting.start_program({.command = play.command});
    Outcome outcome;
    try {
        install(sitting, play, outcome);
    } catch (const std::exception& error) {
        const std::string text = error.what();
        outcome.verdict = text.substr(0, text.find('\n'));
        std::ofstream(play.results + "/what-went-wrong.txt") << text;
    }
    std::ofstream(play.results + "/console.txt") << sitting.console();
    return outcome;
}

bool read_arguments(int count, char** arguments, Play& play) {
    if (count < 5) {
        return false;
    }
    play.results = std::filesystem::absolute(arguments[1]).string();
    play.password = arguments[2];
    int at = 3;
    for (; at < count && std::strcmp(arguments[at], "--") != 0; ++at) {
        if (std::strcmp(arguments[at], "--accept-offered") == 0) {
            play.accept_offered = true;
        } else if (std::strcmp(arguments[at], "--browser") == 0 && at + 1 < count) {
            play.browser = arguments[++at];
        } else if (std::strcmp(arguments[at], "--dpi") == 0 && at + 1 < count) {
            play.dpi = std::atoi(arguments[++at]);
        } else {
            return false;
        }
    }
    if (at + 1 >= count) {
        return false;
    }
    play.command.assign(arguments + at + 1, arguments + count);
    return true;
}

} // namespace
} // namespace end_to_end

int main(int count, char** arguments) {
    end_to_end::Play play;
    if (!end_to_end::read_arguments(count, arguments, play)) {
        std::fprintf(
            stderr,
            "usage: zeph-play RESULTS PASSWORD [--browser TITLE] [--accept-offered] [--dpi DPI] "
            "-- COMMAND...\n");
        return 2;
    }
    try {
        std::filesystem::create_directories(play.results);
        const end_to_end::Outcome outcome = end_to_end::play_it(play);
        std::printf("%s\t%.1f\t%.1f\n", outcome.verdict.c_str(), outcome.window_seconds,
                    outcome.verdict_seconds);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
