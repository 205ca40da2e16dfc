// installation_plan_test.cpp: every command of an installation, word for word, without running any.
#include "installer/install_steps.h"
#include "installer/installation_plan.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr ProductSettings careful = [] {
    ProductSettings settings = product;
    settings.product_short_name = "tilt";
    settings.icon_file_name = "tilt.png";
    settings.icon_folder = "/usr/share/icons";
    settings.extra_folder = "/usr/share/tilt-presets";
    return settings;
}();

std::string line_of(const PlanStep& step) {
    std::string line;
    for (const char* const* word = step.words; *word != nullptr; ++word) {
        line += (line.empty() ? "" : " ") + std::string(*word);
    }
    return line;
}

std::vector<std::string> lines_of(const PrivilegedPlan& plan) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < plan.step_count; ++i) {
        lines.push_back(line_of(plan.steps[i]));
    }
    return lines;
}

using Lines = std::vector<std::string>;

constexpr const char* extraction = "tar -xf /tmp/zeph-installer-data.tar.gz -C /opt/my lv2";

PrivilegedPlan plan_of(const ProductSettings& settings,
                       const char* desktop = "/home/musician/Desktop") {
    PrivilegedPlan plan;
    make_installation_plan(&plan, settings, {.folder = "/opt/my lv2", .desktop = desktop});
    return plan;
}

TEST(InstallationPlan, OfTheDefaultProductIsOneExtractionThatNobodyChecks) {
    const PrivilegedPlan plan = plan_of(product);
    ASSERT_EQ(lines_of(plan), Lines({extraction}));
    EXPECT_FALSE(plan.steps[0].exact);
    EXPECT_EQ(plan.steps[0].failure, StepFailure::ignored);
    EXPECT_TRUE(plan.steps[0].cancel_wait);
    EXPECT_EQ(plan.steps[0].unless_there, nullptr);
    EXPECT_EQ(plan.undo.words[0], nullptr);
    EXPECT_FALSE(plan.falls_short);
}

TEST(InstallationPlan, WithExactFolderNamesKeepsTheFolderInOneWord) {
    ProductSettings settings = product;
    settings.exact_folder_names = 1;
    const PrivilegedPlan plan = plan_of(settings);
    EXPECT_TRUE(plan.steps[0].exact);
    EXPECT_STREQ(plan.steps[0].words[4], "/opt/my lv2");
}

// A step of the shell's, without its text.
std::string careful_line(const PlanStep& step) {
    EXPECT_TRUE(step.exact);
    EXPECT_EQ(step.failure, StepFailure::ends_plan);
    EXPECT_STREQ(step.words[2], zeph_install_steps);
    return "sh " + std::string(step.words[1]) +
           line_of(step).substr(std::string("sh -c ").size() +
                                std::string(zeph_install_steps).size());
}

TEST(InstallationPlan, WithVerifyInstallationPutsTheFilesBesideThenIntoPlace) {
    ProductSettings settings = careful;
    settings.verify_installation = 1;
    settings.plugin_name = "tilt.lv2";
    const PrivilegedPlan plan = plan_of(settings);
    const std::string rest = " tilt /tmp/zeph-installer-data.tar.gz   /opt/my lv2 tilt.lv2 --";
    ASSERT_EQ(plan.step_count, 2U);
    EXPECT_EQ(careful_line(plan.steps[0]), "sh -c install put_beside" + rest);
    EXPECT_EQ(careful_line(plan.steps[1]), "sh -c install move_into_place" + rest);
    EXPECT_EQ(careful_line(plan.undo), "sh -c install abandon" + rest);
    EXPECT_STREQ(plan.steps[0].words[7], ""); // no uninstaller
    EXPECT_STREQ(plan.steps[0].words[8], "");
    EXPECT_STREQ(plan.steps[0].words[9], "/opt/my lv2");
    EXPECT_TRUE(plan.steps[0].cancel_wait);
    EXPECT_TRUE(plan.steps[0].keeps_undo);
    EXPECT_FALSE(plan.steps[1].cancel_wait);
    EXPECT_FALSE(plan.steps[1].keeps_undo);
}

// All that is installed, also by other steps.
TEST(InstallationPlan, WithAnUninstallerNamesWhatIsToBeListed) {
    ProductSettings settings = careful;
    settings.verify_installation = 1;
    settings.uninstaller = 1;
    settings.plugin_name = "tilt.lv2";
    settings.install_desktop_files = 1;
    settings.create_extra_folder = 1;
    PrivilegedPlan plan;
    make_installation_plan(&plan, settings,
                           {.folder = "/opt/my lv2",
                            .desktop = "/home/A B/Desktop",
                            .levels_made = 1,
                            .extra_folder_missing = true});
    EXPECT_FALSE(plan.falls_short);
    ASSERT_EQ(plan.step_count, 7U);
    for (const PlanStep* step : {&plan.steps[0], &plan.steps[1], &plan.undo}) {
        EXPECT_STREQ(step->words[7], "/usr/local");
        EXPECT_STREQ(step->words[8], zeph_uninstaller);
        const char* const others[] = {"--",
                                      "folder",
                                      "/opt/my lv2",
                                      "/tmp/zeph-installer-desktop-icon.png",
                                      "/usr/share/icons/tilt.png",
                                      "/tmp/zeph-installer-desktop-file.desktop",
                                      "/usr/share/applications/tilt.desktop",
                                      "/tmp/zeph-installer-desktop-file.desktop",
                                      "/home/A B/Desktop/tilt.desktop",
                                      "folder",
                                      "/usr/share/tilt-presets",
                                      nullptr};
        for (std::size_t i = 0; i < std::size(others); ++i) {
            EXPECT_STREQ(step->words[11 + i], others[i]);
        }
    }
    make_installation_plan(&plan, settings, {.folder = "/opt/my lv2", .desktop = nullptr});
    EXPECT_STREQ(plan.steps[0].words[16], nullptr);
}

// The words that follow those of every careful step.
std::vector<std::string> things_of(const PlanStep& step) {
    std::vector<std::string> words;
    for (const char* const* word = step.words + 9; *word != nullptr; ++word) {
        words.emplace_back(*word);
    }
    return words;
}

TEST(InstallationPlan, WithItemsNamesEachWithItsFolderAndTheFoldersToMake) {
    ProductSettings settings = careful;
    settings.verify_installation = 1;
    settings.plugin_name = "tilt.lv2";
    settings.items[0] = {.name = "tilt.clap",
                         .folder = "/usr/lib/clap",
                         .person_folder = nullptr,
                         .installed_size = 1};
    settings.items[1] = {
        .name = "presets.lv2", .folder = nullptr, .person_folder = nullptr, .installed_size = 1};
    settings.items[2] = {
        .name = "manual", .folder = "/opt/tilt/doc", .person_folder = nullptr, .installed_size = 1};
    InstallationSite site{.folder = "/opt/my lv2", .desktop = nullptr, .levels_made = 2};
    site.item_levels_missing[0] = 1;
    site.item_levels_missing[2] = 2;
    PrivilegedPlan plan;
    make_installation_plan(&plan, settings, site);
    std::vector<std::string> expected = {
        "/opt/my lv2",   "tilt.lv2",      "/usr/lib/clap", "tilt.clap",  "/opt/my lv2",
        "presets.lv2",   "/opt/tilt/doc", "manual",        "--",         "new-folder",
        "/usr/lib/clap", "new-folder",    "/opt/tilt",     "new-folder", "/opt/tilt/doc"};
    ASSERT_EQ(plan.step_count, 2U);
    for (const PlanStep* step : {&plan.steps[0], &plan.steps[1], &plan.undo}) {
        EXPECT_EQ(things_of(*step), expected);
    }
    settings.uninstaller = 1;
    make_installation_plan(&plan, settings, site);
    expected.insert(expected.end(), {"folder", "/opt", "folder", "/opt/my lv2"});
    EXPECT_EQ(things_of(plan.steps[0]), expected);
}

TEST(InstallationPlan, ForOnePersonKeepsToTheHome) {
    ProductSettings settings = careful;
    settings.verify_installation = 1;
    settings.uninstaller = 1;
    settings.install_desktop_files = 1;
    settings.plugin_name = "tilt.lv2";
    settings.items[0] = {.name = "tilt.clap",
                         .folder = "/usr/lib/clap",
                         .person_folder = "~/.clap",
                         .installed_size = 1};
    InstallationSite site{.folder = "/h/.lv2", .desktop = "/h/Desktop"};
    site.item_folders[0] = "/h/.clap";
    site.item_levels_missing[0] = 1;
    site.icons = "/h/.local/share/icons";
    site.icon_levels_missing = 1;
    site.applications = "/h/.local/share/applications";
    site.prefix = "/h/.local";
    PrivilegedPlan plan;
    make_installation_plan(&plan, settings, site);
    ASSERT_EQ(plan.step_count, 6U);
    EXPECT_STREQ(plan.steps[0].words[7], "/h/.local");
    EXPECT_EQ(things_of(plan.steps[0]),
              (std::vector<std::string>{
                  "/h/.lv2", "tilt.lv2", "/h/.clap", "tilt.clap", "--", "new-folder", "/h/.clap",
                  "new-folder", "/h/.local/share/icons", "/tmp/zeph-installer-desktop-icon.png",
                  "/h/.local/share/icons/tilt.png", "/tmp/zeph-installer-desktop-file.desktop",
                  "/h/.local/share/applications/tilt.desktop",
                  "/tmp/zeph-installer-desktop-file.desktop", "/h/Desktop/tilt.desktop"}));
    EXPECT_EQ(line_of(plan.steps[2]),
              "cp -f /tmp/zeph-installer-desktop-icon.png /h/.local/share/icons/tilt.png");
    EXPECT_EQ(line_of(plan.steps[3]), "cp -f /tmp/zeph-installer-desktop-file.desktop "
                                      "/h/.local/share/applications/tilt.desktop");
}

TEST(InstallationPlan, WithMoreFoldersThanACommandTakesDoesNothing) {
    ProductSettings settings = careful;
    settings.verify_installation = 1;
    std::string deep;
    for (int i = 0; i < 100; ++i) {
        deep += "/d";
    }
    settings.items[0] = {
        .name = "manual", .folder = deep.c_str(), .person_folder = nullptr, .installed_size = 1};
    InstallationSite site{.folder = "/opt/lv2", .desktop = nullptr};
    site.item_levels_missing[0] = 100;
    PrivilegedPlan plan;
    make_installation_plan(&plan, settings, site);
    EXPECT_EQ(plan.step_count, 0U);
    EXPECT_TRUE(plan.falls_short);
}

TEST(InstallationPlan, WithDesktopFilesCopiesIconAndEntry) {
    ProductSettings settings = careful;
    settings.install_desktop_files = 1;
    const PrivilegedPlan plan = plan_of(settings);
    EXPECT_EQ(
        lines_of(plan),
        Lines({extraction, "cp -f /tmp/zeph-installer-desktop-icon.png /usr/share/icons/tilt.png",
               "cp -f /tmp/zeph-installer-desktop-file.desktop "
               "/usr/share/applications/tilt.desktop",
               "cp -f /tmp/zeph-installer-desktop-file.desktop "
               "/home/musician/Desktop/tilt.desktop",
               "chmod 777 /home/musician/Desktop/tilt.desktop"}));
    for (std::size_t i = 1; i < plan.step_count; ++i) {
        EXPECT_EQ(plan.steps[i].failure, StepFailure::ignored);
        EXPECT_FALSE(plan.steps[i].cancel_wait);
        EXPECT_FALSE(plan.steps[i].exact);
    }
    EXPECT_EQ(plan.steps[2].link_removed, nullptr);
    EXPECT_STREQ(plan.steps[3].link_removed, "/home/musician/Desktop/tilt.desktop");
    EXPECT_STREQ(plan.steps[4].link_removed, "/home/musician/Desktop/tilt.desktop");
}

TEST(InstallationPlan, WithExactFolderNamesKeepsEveryPathInOneWord) {
    ProductSettings settings = careful;
    settings.install_desktop_files = 1;
    settings.create_extra_folder = 1;
    settings.exact_folder_names = 1;
    const PrivilegedPlan plan = plan_of(settings, "/home/A B/Desktop");
    ASSERT_EQ(plan.step_count, 6U);
    for (std::size_t i = 0; i < plan.step_count; ++i) {
        EXPECT_TRUE(plan.steps[i].exact) << i;
    }
    EXPECT_STREQ(plan.steps[3].words[3], "/home/A B/Desktop/tilt.desktop");
    EXPECT_STREQ(plan.steps[4].words[2], "/home/A B/Desktop/tilt.desktop");
}

TEST(InstallationPlan, MakesTheExtraFolderOnlyWithDesktopFilesAndOnlyWhenItIsMissing) {
    ProductSettings settings = careful;
    settings.create_extra_folder = 1;
    EXPECT_EQ(plan_of(settings).step_count, 1U);
    settings.install_desktop_files = 1;
    const PrivilegedPlan plan = plan_of(settings);
    ASSERT_EQ(plan.step_count, 6U);
    EXPECT_EQ(line_of(plan.steps[5]), "mkdir -m 777 /usr/share/tilt-presets");
    EXPECT_STREQ(plan.steps[5].unless_there, "/usr/share/tilt-presets");
}

TEST(InstallationPlan, WithoutADesktopFallsShortAfterTheTwoCommonCopies) {
    ProductSettings settings = careful;
    settings.install_desktop_files = 1;
    settings.create_extra_folder = 1;
    const PrivilegedPlan plan = plan_of(settings, nullptr);
    EXPECT_EQ(plan.step_count, 3U);
    EXPECT_TRUE(plan.falls_short);
    const std::string endless(plan_text_size, 'h');
    EXPECT_EQ(plan_of(settings, endless.c_str()).step_count, 3U);
    EXPECT_TRUE(plan_of(settings, endless.c_str()).falls_short);
}

TEST(FolderPlan, MakesTheDefaultFolderWhereItIsMissing) {
    PrivilegedPlan plan;
    make_folder_plan(&plan, careful, careful.default_install_folder);
    ASSERT_EQ(lines_of(plan), Lines({"mkdir -p -m 755 /usr/lib/lv2"}));
    EXPECT_STREQ(plan.steps[0].unless_there, "/usr/lib/lv2");
    EXPECT_EQ(plan.steps[0].failure, StepFailure::ends_plan);
}

TEST(Plan, WithTooManyStepsFallsShort) {
    PrivilegedPlan plan{};
    const PlanStep step{.words = {"true"}};
    for (std::size_t i = 0; i < plan_steps_most; ++i) {
        plan_add_step(&plan, step);
    }
    EXPECT_FALSE(plan.falls_short);
    plan_add_step(&plan, step);
    EXPECT_TRUE(plan.falls_short);
    EXPECT_EQ(plan.step_count, plan_steps_most);
}

} // namespace
