// folder_browser_benchmark.cpp: how long a full folder takes from click to shown, and a drag's
// step.
//
// Beside it, in the same run, the bare loop of readdir and stat that nobody can do without.

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/text/text_renderer.h"
#include "gui/ORX/widgets/folder_dialog.h"
#include "support/display_view.h"
#include "support/person.h"
#include "support/wait_until.h"
#include "support/x_server.h"
#include "unit/widgets/test_folder.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 15;
constexpr int entries = 4094; // and "." and ".."

double milliseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double bare_loop(const std::string& path) {
    const auto start = Clock::now();
    DIR* folder = opendir(path.c_str());
    const dirent* entry = readdir(folder);
    struct stat status {};
    int folders = 0;
    for (; entry != nullptr; entry = readdir(folder)) {
        if (stat(entry->d_name, &status) == 0 && S_ISDIR(status.st_mode)) {
            ++folders;
        }
    }
    closedir(folder);
    return folders < 2 ? 0 : milliseconds_since(start);
}

void measure_listing(const TestFolder& folder) {
    const WorkingDirectory working_directory;
    working_directory.enter(folder.path_of("full"));
    const std::unique_ptr<DirEntry[]> table(new DirEntry[folder_listing_capacity]{});
    std::vector<double> bare;
    std::vector<double> read;
    std::vector<double> sort;
    std::vector<double> both;
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(bare_loop("./"));
        std::int32_t visible = 0;
        const auto start = Clock::now();
        const bool opened = folder_listing_read(table.get(), "./", &visible);
        read.push_back(milliseconds_since(start));
        folder_listing_sort(table.get());
        both.push_back(milliseconds_since(start));
        sort.push_back(both.back() - read.back());
        if (!opened || visible != folder_listing_capacity) {
            std::puts("the folder is not as it should be");
        }
    }
    std::printf("readdir and stat, bare      %7.2f ms\n", median(bare));
    std::printf("reading                     %7.2f ms\n", median(read));
    std::printf("sorting                     %7.2f ms\n", median(sort));
    std::printf("reading and sorting / bare  %7.2f\n", median(both) / median(bare));
    folder_listing_clear(table.get());
}

long resident_kilobytes() {
    long total = 0;
    long pages = 0;
    FILE* file = std::fopen("/proc/self/statm", "re");
    if (file == nullptr || std::fscanf(file, "%ld %ld", &total, &pages) != 2) {
        std::abort();
    }
    std::fclose(file);
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

// A dialog before a person, at one scale.
struct Desk {
    support::XServer server{{.width = 1400, .height = 960}};
    support::DisplayView view{server.display_name()};
    support::Person person{server.display_name()};
    UiEngine* engine = nullptr;
    TextRenderer* text = nullptr;
    std::unique_ptr<FolderDialog> dialog{new FolderDialog};
    std::thread loop;
    support::Place place;
};

void bring_up(Desk* desk, const TestFolder& folder, float scale) {
    setenv("DISPLAY", desk->server.display_name().c_str(), 1);
    setenv("HOME", folder.path().c_str(), 1);
    desk->engine = engine_new();
    if (!engine_open_display(desk->engine)) {
        std::abort();
    }
    desk->text = text_renderer_new(desk->engine);
    folder_dialog_init(desk->dialog.get(), desk->engine, desk->text);
    folder_dialog_set_scale(desk->dialog.get(), scale);
    folder_dialog_set_title(desk->dialog.get(), "benchmark");
    desk->loop = std::thread([engine = desk->engine] { event_loop_run(engine); });
    folder_dialog_open(desk->dialog.get());
    desk->place = desk->view.place_on_root(desk->view.wait_for_title("benchmark"));
}

void take_down(Desk* desk) {
    event_loop_stop(desk->engine);
    desk->loop.join();
    folder_dialog_destroy(desk->dialog.get());
    engine_close_display(desk->engine);
    text_renderer_destroy(desk->text);
    engine_destroy(desk->engine);
}

// The handler that works on a click holds the dialog's mutex until the list is on its window; its
// last request is answered by the server before it lets go.
void wait_for_entries(Desk* desk, int count) {
    for (;;) {
        {
            const std::lock_guard<std::mutex> lock(desk->dialog->mutex);
            if (desk->dialog->visible_count == count) {
                return;
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

int scroll_offset(Desk* desk) {
    const std::lock_guard<std::mutex> lock(desk->dialog->mutex);
    return desk->dialog->scroll_view.scroll_offset;
}

void measure_browser(const TestFolder& folder, float scale) {
    Desk desk;
    bring_up(&desk, folder, scale);
    const auto at = [&](double x, double y) {
        desk.person.move_pointer(desk.place.x + static_cast<int>(x * scale),
                                 desk.place.y + static_cast<int>(y * scale));
    };
    const long before = resident_kilobytes();
    long most = before;
    std::vector<double> shown;
    for (int round = 0; round < rounds; ++round) {
        at(52, 82 + 40); // "full"
        const auto start = Clock::now();
        desk.person.click();
        wait_for_entries(&desk, folder_listing_capacity);
        shown.push_back(milliseconds_since(start));
        most = std::max(most, resident_kilobytes());
        std::this_thread::sleep_for(std::chrono::milliseconds(350)); // no double click
        if (round + 1 < rounds) {
            at(52, 82 + 24); // ".."
            desk.person.click();
            wait_for_entries(&desk, 3);
            std::this_thread::sleep_for(std::chrono::milliseconds(350));
        }
    }
    // Every second row of the track (a whole number of device pixels at each scale), down and up
    // again: the first way draws the list, the second has it.
    std::vector<double> fresh;
    std::vector<double> drawn;
    at(620, 88);
    desk.person.press_button();
    for (const bool down : {true, false}) {
        for (int row = 2; row < 250; row += 2) {
            const int from = scroll_offset(&desk);
            const auto start = Clock::now();
            at(620, down ? 88 + row : 336 - row);
            while (scroll_offset(&desk) == from && milliseconds_since(start) < 1000) {
            }
            (down ? fresh : drawn).push_back(milliseconds_since(start));
            most = std::max(most, resident_kilobytes());
        }
    }
    desk.person.release_button();
    std::printf("scale %.1f: click to shown    %7.2f ms\n", static_cast<double>(scale),
                median(shown));
    std::printf("           drag step, new    %7.2f ms, drawn before %.2f ms\n", median(fresh),
                median(drawn));
    std::printf("           memory grows by   %7.2f MB\n",
                static_cast<double>(most - before) / 1024);
    take_down(&desk);
}

} // namespace

int main() {
    const TestFolder folder;
    folder.add_folder("full");
    folder.add_files(entries, "full/some file name ");
    measure_listing(folder);
    for (const float scale : {1.0F, 1.5F, 2.0F}) {
        measure_browser(folder, scale);
    }
    return 0;
}
