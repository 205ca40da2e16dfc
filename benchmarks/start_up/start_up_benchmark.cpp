// The installer's start, size, memory and idleness, beside a plain window in the same run.
//
//   start_up_benchmark [ROUNDS]     9 rounds when nothing is said; needs root, for a private world
//
// A round starts the plain window and the installer one after the other, on a private screen
// without a window manager, as an ordinary user. From the installer's time go the pauses that it
// makes on purpose: 50 sleeps of a nominal millisecond that measure the tick, as long as they take
// here, and a quarter of a second in which sudo is asked whether the person may use it (or as long
// as sudo itself takes, when that is more). A second series without sudo and su has the first only.
// Starts are timed at real-time priority, server included, where the system lets us: on a busy
// machine everybody's milliseconds would be in the figures otherwise.

#include "start_up/first_picture.h"
#include "start_up/font_size.h"
#include "start_up/process_figures.h"
#include "start_up/stage.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int default_rounds = 9;
constexpr int tick_sleeps = 50;
constexpr double probe_pause_ms = 250;
constexpr double most_times_plain = 3;
constexpr long most_kilobytes_resident = 16 * 1024;
constexpr double most_own_kilobytes = 400;
constexpr double most_idle_percent = 1;
constexpr std::chrono::seconds settling_time{1};
constexpr std::chrono::seconds idle_time{10};

double milliseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double tick_measuring_ms() {
    const auto start = Clock::now();
    for (int i = 0; i < tick_sleeps; ++i) {
        usleep(1000);
    }
    return milliseconds_since(start);
}

// How long sudo itself takes to say whether the person may use it.
double sudo_ms(const support::Account& account) {
    support::ChildOptions options =
        support::run_as(account, {"/usr/bin/sudo", "-u", account.name, "echo"}, {"LC_ALL=C"});
    options.terminal = true;
    const auto start = Clock::now();
    support::ChildProcess sudo(options);
    while (sudo.running()) {
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return milliseconds_since(start);
}

void print_row(const char* what, double value, const char* unit, const char* goal, bool met) {
    std::printf("  %-52s %9.1f %-3s %s%s\n", what, value, unit, goal,
                *goal == '\0' ? "" : (met ? "  met" : "  MISSED"));
}

// While it lives, this program and whatever it starts go before everybody else's.
struct Precedence {
    Precedence() {
        const sched_param priority{1};
        given = sched_setscheduler(0, SCHED_RR, &priority) == 0;
    }
    ~Precedence() {
        const sched_param ordinary{0};
        sched_setscheduler(0, SCHED_OTHER, &ordinary);
    }
    Precedence(const Precedence&) = delete;
    Precedence& operator=(const Precedence&) = delete;

    bool given;
};

bool measure_start(bool with_sudo, int rounds) {
    const Precedence precedence;
    const start_up::Stage stage(with_sudo);
    std::vector<double> plain_ms;
    std::vector<double> installer_ms;
    std::vector<double> paint_ms;
    std::vector<double> pause_ms;
    std::vector<double> own_ms;
    std::vector<double> sudo_times;
    for (int round = -1; round < rounds; ++round) {
        const auto plain_times = start_up::time_first_picture(stage.server, stage.plain_window);
        const auto times = start_up::time_first_picture(stage.server, stage.installer);
        const double sudo = with_sudo ? sudo_ms(stage.account) : 0;
        const double pauses =
            tick_measuring_ms() + (with_sudo ? std::max(probe_pause_ms, sudo) : 0);
        if (round < 0) {
            continue; // files were still to be read from the disk
        }
        plain_ms.push_back(plain_times.painted_ms);
        installer_ms.push_back(times.painted_ms);
        paint_ms.push_back(times.painted_ms - times.mapped_ms);
        pause_ms.push_back(pauses);
        own_ms.push_back(times.painted_ms - pauses);
        sudo_times.push_back(sudo);
    }
    const double ratio = start_up::median(own_ms) / start_up::median(plain_ms);
    std::printf("\nstart to first picture, %s, medians of %d rounds%s\n",
                with_sudo ? "sudo asked" : "neither sudo nor su there", rounds,
                precedence.given ? "" : " (no real-time priority)");
    print_row("plain window: on screen", start_up::median(plain_ms), "ms", "", true);
    print_row("installer: splash on screen", start_up::median(installer_ms), "ms", "", true);
    print_row("of which pauses made on purpose", start_up::median(pause_ms), "ms", "", true);
    if (with_sudo) {
        print_row("  (sudo alone takes)", start_up::median(sudo_times), "ms", "", true);
    }
    print_row("of which from window shown to painted", start_up::median(paint_ms), "ms", "", true);
    print_row("installer beyond the pauses", start_up::median(own_ms), "ms", "", true);
    print_row("as many times the plain window", ratio, "", "at most 3", ratio <= most_times_plain);
    return ratio <= most_times_plain;
}

std::uintmax_t artwork_bytes() {
    constexpr std::uintmax_t header = 24;
    constexpr std::uintmax_t pixel = 4;
    return 4 * header + pixel * (600 * 400 + 600 * 336 + 2 * 64 * 64);
}

bool measure_size() {
    const std::uintmax_t whole = std::filesystem::file_size(ZEPH_INSTALLER);
    const std::uintmax_t payload =
        std::filesystem::file_size(ZEPH_ARCHIVE) + std::filesystem::file_size(ZEPH_ICON);
    const double own =
        static_cast<double>(whole - payload - artwork_bytes() - start_up::font_bytes()) / 1024;
    std::printf("\nexecutable\n");
    print_row("whole file", static_cast<double>(whole) / 1024, "KB", "", true);
    print_row("artwork", static_cast<double>(artwork_bytes()) / 1024, "KB", "", true);
    print_row("font", static_cast<double>(start_up::font_bytes()) / 1024, "KB", "", true);
    print_row("archive and desktop icon", static_cast<double>(payload) / 1024, "KB", "", true);
    print_row("everything else", own, "KB", "at most 400", own <= most_own_kilobytes);
    return own <= most_own_kilobytes;
}

bool measure_main_window() {
    const start_up::Stage stage(true);
    support::ChildProcess installer(stage.installer);
    start_up::reach_password_screen(stage, installer);
    const pid_t process = installer.process_id();
    std::this_thread::sleep_for(settling_time);
    const long resident = start_up::status_kilobytes(process, "VmRSS");
    const double ticks_before = start_up::processor_seconds(process);
    const double before = start_up::scheduled_seconds(process);
    const auto start = Clock::now();
    std::this_thread::sleep_for(idle_time);
    const double seconds = milliseconds_since(start) / 1000;
    const double fine = (start_up::scheduled_seconds(process) - before) / seconds * 100;
    const double coarse = (start_up::processor_seconds(process) - ticks_before) / seconds * 100;
    std::printf("\npassword screen, scale 1\n");
    print_row("resident memory (VmRSS)", static_cast<double>(resident) / 1024, "MB", "at most 16",
              resident <= most_kilobytes_resident);
    for (const char* name : {"RssAnon", "RssFile", "RssShmem"}) {
        print_row((std::string("  of which ") + name).c_str(),
                  static_cast<double>(start_up::status_kilobytes(process, name)) / 1024, "MB", "",
                  true);
    }
    print_row("peak so far (VmHWM)",
              static_cast<double>(start_up::status_kilobytes(process, "VmHWM")) / 1024, "MB", "",
              true);
    print_row("processor while nothing happens, 10 s, clock ticks", coarse, "%", "at most 1",
              coarse <= most_idle_percent);
    print_row("the same by the scheduler's account", fine, "%", "at most 1",
              fine <= most_idle_percent);
    return resident <= most_kilobytes_resident && std::min(coarse, fine) <= most_idle_percent;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : default_rounds;
    if (const auto obstacle = support::world_obstacle(); obstacle || rounds < 1) {
        std::fprintf(stderr, "%s\n", obstacle ? obstacle->c_str() : "no rounds");
        return 2;
    }
    try {
        bool met = measure_size();
        met = measure_start(true, rounds) && met;
        met = measure_start(false, rounds) && met;
        met = measure_main_window() && met;
        return met ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
