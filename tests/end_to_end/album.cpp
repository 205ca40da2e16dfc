// Keeping pictures, saying what they show, giving them away.

#include "end_to_end/album.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace end_to_end {

namespace files = std::filesystem;

void Album::keep(Scenario& scenario, support::XWindow window, const char* name,
                 const char* caption) {
    char file[64];
    std::snprintf(file, sizeof file, "%02d-%s.png", ++count_, name);
    save_png(scenario.picture_of(window), folder_ + "/" + file);
    std::printf("  %-28s %s\n", file, caption);
    std::fflush(stdout);
}

void keep_splash(Scenario& scenario, Album& album) {
    scenario.reach_splash();
    album.keep(scenario, scenario.splash_window(), "splash", "the splash");
    scenario.reach_main_window_from_splash();
}

void keep_wrong_password(Scenario& scenario, Album& album) {
    scenario.reach_password_screen_from_main_window();
    album.keep(scenario, scenario.main_window(), "password", "asks for the password");
    scenario.give_password("mistyped");
    scenario.reach_wrong_password_screen();
    album.keep(scenario, scenario.main_window(), "wrong-password", "a wrong one was typed");
}

void say(const std::string& text) {
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

void hand_over(const std::string& folder, const std::string& kept) {
    struct stat owner {};
    if (stat(files::path(folder).parent_path().c_str(), &owner) != 0) {
        return;
    }
    for (auto at = files::recursive_directory_iterator(folder);
         at != files::recursive_directory_iterator(); ++at) {
        if (at->path().filename() == kept) {
            at.disable_recursion_pending();
        } else if (lchown(at->path().c_str(), owner.st_uid, owner.st_gid) != 0) {
            return;
        }
    }
    (void)!lchown(folder.c_str(), owner.st_uid, owner.st_gid);
}

} // namespace end_to_end
