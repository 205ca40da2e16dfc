// installation_test.cpp: the second product's installer, used as a person would: into a folder with
// an awkward name, with a desktop entry, and proven by programs that nobody here wrote.
#include "end_to_end/scenario.h"
#include "payload/wav_file.h"
#include "support/child_process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;
using support::output_of;

namespace {

constexpr const char* bundle_name = "lantern-tilt.lv2";
constexpr const char* product_folder = ZEPH_SOURCE "/products/lantern-tilt";
constexpr const char* applications_entry = "/usr/share/applications/lantern-tilt.desktop";
constexpr const char* installed_icon = "/usr/share/icons/lantern-tilt.png";
constexpr const char* presets_folder = "/usr/share/lantern-tilt-presets";
constexpr const char* entry_text = "[Desktop Entry]\n"
                                   "Encoding=UTF-8\n"
                                   "Version=1.0\n"
                                   "Type=Application\n"
                                   "Terminal=false\n"
                                   "Exec=/usr/lib/lv2/lantern-tilt.lv2/open-manual\n"
                                   "Name=lantern-tilt\n"
                                   "Icon=/usr/share/icons/lantern-tilt.png\n"
                                   "Comment=Tilt equaliser: from dark to bright with one knob\n"
                                   "Categories=AudioVideo;Audio;Music;\n";

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct stat status_of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

void make_folder(const Scenario& scenario, const std::string& path) {
    fs::create_directory(path);
    support::give_to(scenario.account(), path);
}

// Everything of root's, nothing writable by others.
void expect_root_owned(const std::string& folder) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const struct stat status = status_of(entry.path());
        EXPECT_EQ(status.st_uid, 0U) << entry.path();
        EXPECT_EQ(status.st_mode & 022U, 0U) << entry.path();
    }
}

void expect_desktop_entry(const Scenario& scenario) {
    const std::string on_desktop = scenario.account().home + "/Desktop/lantern-tilt.desktop";
    EXPECT_EQ(bytes_of(applications_entry), entry_text);
    EXPECT_EQ(bytes_of(on_desktop), entry_text);
    EXPECT_EQ(status_of(on_desktop).st_mode & 07777U, 0777U);
    // What everybody shares everybody can read, and only root can change.
    for (const char* shared : {applications_entry, installed_icon}) {
        EXPECT_EQ(status_of(shared).st_mode & 07777U, 0644U) << shared;
        EXPECT_EQ(status_of(shared).st_uid, 0U) << shared;
    }
    EXPECT_EQ(bytes_of(installed_icon),
              bytes_of(std::string(product_folder) + "/artwork/desktop_icon.png"));
    support::ChildProcess validator({.command = {"desktop-file-validate", applications_entry}});
    const auto end = validator.wait_for_end();
    EXPECT_TRUE(end && end->exit_status == 0) << validator.output() << validator.error_output();
    EXPECT_EQ(status_of(presets_folder).st_mode & 07777U, 0777U);
    EXPECT_TRUE(fs::is_directory(presets_folder));
}

// Found, described, and a high tone through it comes out louder, as a bright tilt makes it.
void expect_plugin_works(const std::string& folder) {
    const std::string path = "LV2_PATH=" + folder;
    EXPECT_EQ(output_of({"env", path, "lv2ls"}), "urn:lantern:tilt\n");
    EXPECT_NE(output_of({"env", path, "lv2info", "urn:lantern:tilt"}).find("Lantern Tilt"),
              std::string::npos);
    Channel tone(48000);
    for (std::size_t i = 0; i < tone.size(); ++i) {
        tone[i] = 0.25F * std::sin(0.25F * 3.14159265F * static_cast<float>(i % 8));
    }
    write_wav("/tmp/in.wav", {tone, tone}, 48000);
    (void)output_of({"env", path, "lv2apply", "-i", "/tmp/in.wav", "-o", "/tmp/out.wav", "-c",
                     "tilt", "6", "urn:lantern:tilt"});
    const std::vector<Channel> out = read_wav("/tmp/out.wav");
    ASSERT_EQ(out.size(), 2U);
    EXPECT_GT(peak_of(out[1]), 0.25F * 1.6F);
}

// For the maker's guide, which shows these screens.
void keep_picture(const Scenario& scenario, support::XWindow window, const std::string& name) {
    support::save_png(scenario.picture_of(window), ZEPH_PICTURES "/" + name + ".png");
}

void expect_nothing_left_in_tmp() {
    for (const fs::directory_entry& entry : fs::directory_iterator("/tmp")) {
        EXPECT_EQ(entry.path().string().find("zeph-installer"), std::string::npos) << entry.path();
    }
}

class LanternTiltInstallation : public testing::TestWithParam<Rights> {
protected:
    static std::string password() {
        return GetParam() == Rights::sudo ? end_to_end::user_password : end_to_end::root_password;
    }
    static end_to_end::ScenarioOptions options() {
        return {.rights = GetParam(), .keep_visible = {ZEPH_SOURCE}};
    }
};

INSTANTIATE_TEST_SUITE_P(Lantern, LanternTiltInstallation,
                         testing::Values(Rights::sudo, Rights::only_su), [](const auto& rights) {
                             return rights.param == Rights::sudo ? "with_sudo" : "with_su";
                         });

} // namespace

TEST_P(LanternTiltInstallation, GoesIntoAFolderWhoseNameAShellWouldTakeApart) {
    Scenario scenario(options());
    const std::string& home = scenario.account().home;
    const std::string folder = home + "/My 'own' \"plug-ins\" $(touch trap);`touch trap` & *";
    make_folder(scenario, home + "/Desktop");
    make_folder(scenario, folder);

    scenario.reach_splash();
    keep_picture(scenario, scenario.splash_window(), "splash");
    scenario.reach_main_window_from_splash();
    scenario.reach_password_screen_from_main_window();
    keep_picture(scenario, scenario.main_window(), "password");
    scenario.give_password(password());
    scenario.reach_folder_browser();
    scenario.enter_folder_row(3); // after ".", ".." and Desktop
    scenario.accept_folder();
    scenario.reach_last_screen();
    keep_picture(scenario, scenario.main_window(), "complete");
    const std::string console = scenario.console();
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);

    const std::string info = "** INFO ** Lantern Tilt 1.2.0 Installer: ";
    EXPECT_NE(console.find(info + "Installing to - " + folder + "\n"), std::string::npos)
        << console;
    EXPECT_NE(console.find(info + "Installation Complete\n"), std::string::npos) << console;
    EXPECT_EQ(output_of({"diff", "-r", std::string(product_folder) + "/" + bundle_name,
                         folder + "/" + bundle_name}),
              "");
    expect_root_owned(folder);
    EXPECT_FALSE(fs::exists(home + "/trap"));
    EXPECT_FALSE(fs::exists("trap"));
    EXPECT_FALSE(fs::exists("/root/trap"));
    expect_desktop_entry(scenario);
    expect_plugin_works(folder);
    expect_nothing_left_in_tmp();
}

TEST_P(LanternTiltInstallation, SaysSoWhenTheFilesCannotBePutThere) {
    Scenario scenario(options());
    const std::string folder = scenario.account().home + "/Taken";
    make_folder(scenario, scenario.account().home + "/Desktop");
    make_folder(scenario, folder);
    // A full folder where one of the files would go.
    fs::create_directories(folder + "/" + bundle_name + "/manifest.ttl/full");

    scenario.reach_password_screen();
    scenario.give_password(password());
    scenario.reach_folder_browser();
    scenario.enter_folder_row(3);
    scenario.accept_folder();
    scenario.reach_last_screen();
    EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())), "0 2 3 5");
    EXPECT_NE(
        scenario.console().find("** ERROR ** Lantern Tilt 1.2.0 Installer: Failed to copy files - "
                                "Something else of the same name is in the way\n"),
        std::string::npos)
        << scenario.console();
    EXPECT_TRUE(fs::is_empty(folder + "/" + bundle_name + "/manifest.ttl/full"));
    EXPECT_FALSE(fs::exists(folder + "/" + bundle_name + "/lantern-tilt.so"));
    EXPECT_FALSE(fs::exists(folder + "/.lantern-tilt-new"));
    EXPECT_EQ(scenario.console().find("Installation Complete"), std::string::npos);
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    expect_nothing_left_in_tmp();
}
