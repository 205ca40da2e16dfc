// Not a test: pictures of the folder browser for people to look at. browser_sheets FOLDER
//
// An ordinary, an empty, a huge and a hostile folder, each at scales 1, 1.5 and 2 and under
// openbox, as FOLDER-SCALE.png.

#include "display/widgets/browser_desk.h"
#include "support/wait_until.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

void fill_ordinary(const TestFolder& folder) {
    for (const char* name : {"Documents", "Downloads", "Music", "vst", "Pictures"}) {
        folder.add_folder(name);
    }
    for (const char* name : {"Reaper project 2.rpp", "Reaper project 10.rpp", "take 1.wav",
                             "take 2.wav", "take 12.wav", "Readme.txt",
                             "\xC3\x9C"
                             "bung.ogg"}) {
        folder.add_file(name);
    }
}

void fill_empty(const TestFolder& /*folder*/) {}

void fill_huge(const TestFolder& folder) {
    folder.add_files(5000, "sample ");
}

void fill_hostile(const TestFolder& folder) {
    folder.add_folder(std::string(255, 'W'));
    folder.add_file("two\nlines");
    folder.add_file("\x1B[31mred\x1B[0m");
    folder.add_file("broken \xFF\xC3 bytes");
    folder.add_file("'quoted' \"twice\"");
    folder.add_file("   blanks   ");
    folder.add_file("..hidden twice");
    folder.add_file("...");
    folder.add_file("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E");
    folder.add_link("to nothing", "not there");
    folder.add_link("round", "round");
    folder.add_pipe("pipe");
    folder.add_socket("socket");
    folder.add_file("$(touch here)");
}

struct Sheet {
    const char* name;
    void (*fill)(const TestFolder&);
};

void take(const Sheet& sheet, float scale, const std::string& target) {
    const TestFolder folder;
    sheet.fill(folder);
    BrowserDesk desk(folder.path(),
                     {.scale = scale, .window_manager = support::WindowManagerKind::openbox});
    desk.open();
    desk.point_at(300, 150);
    // Drawn when two looks in a row see the same.
    support::Picture last;
    (void)support::wait_until([&] {
        const support::Picture now = desk.picture();
        const bool still =
            last.width == now.width && now.width > 0 && support::count_differences(last, now) == 0;
        last = now;
        (void)support::holds_for([] { return true; }, std::chrono::milliseconds(300));
        return still;
    });
    char file[64];
    std::snprintf(file, sizeof file, "/%s-%.1f.png", sheet.name, static_cast<double>(scale));
    support::save_png(last, target + file);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: browser_sheets FOLDER\n");
        return 2;
    }
    std::filesystem::create_directories(arguments[1]);
    const std::string target = std::filesystem::absolute(arguments[1]).string();
    for (const Sheet& sheet : {Sheet{"ordinary", fill_ordinary}, Sheet{"empty", fill_empty},
                               Sheet{"huge", fill_huge}, Sheet{"hostile", fill_hostile}}) {
        for (const float scale : {1.0F, 1.5F, 2.0F}) {
            take(sheet, scale, target);
        }
    }
    return 0;
}
