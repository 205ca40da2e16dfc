// browser_look_test.cpp: what the folder browser looks like, at every scale and in every world.

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using support::WindowManagerKind;

void fill_with_everyday_things(const TestFolder& folder) {
    for (const char* name : {"lv2", "vst", ".vst3", "Music 2", "Music 10"}) {
        folder.add_folder(name);
    }
    for (const char* name : {"readme.txt", "track2.wav", "track10.wav",
                             "\xC3\x9C"
                             "bung.ogg",
                             ".hidden", ".gjpqy"}) {
        folder.add_file(name);
    }
}

class BrowserAtAnyScale : public testing::TestWithParam<float> {};
class BrowserLook : public testing::TestWithParam<float> {};

std::string scale_name(const testing::TestParamInfo<float>& given) {
    return "Scale" + std::to_string(static_cast<int>(given.param * 1000));
}

TEST_P(BrowserAtAnyScale, ShowsAnEverydayFolder) {
    const TestFolder folder;
    fill_with_everyday_things(folder);
    BrowserDesk desk(folder.path(), {.scale = GetParam()});
    desk.open();
    expect_folder(desk, folder.path());
}

TEST_P(BrowserLook, ShowsAnEmptyFolder) {
    const TestFolder folder;
    BrowserDesk desk(folder.path(), {.scale = GetParam()});
    desk.open();
    expect_look(desk, {.path = folder.path(), .rows = {{".", true}, {"..", true}}});
}

TEST_P(BrowserLook, ShowsHundredEntriesWithAShortThumb) {
    const TestFolder folder;
    folder.add_files(98, "file");
    BrowserDesk desk(folder.path(), {.scale = GetParam()});
    desk.open();
    expect_folder(desk, folder.path());
}

TEST_P(BrowserLook, ShowsHostileNamesWithoutSpilling) {
    const TestFolder folder;
    for (const std::string& name :
         {std::string(255, 'W'), std::string(81, 'i'), std::string(80, 'j'), std::string(79, 'l'),
          std::string("new\nline"), std::string("\x1B[31mred"), std::string("\xFF\xFE\x80"),
          std::string("quote\"s and 'blanks'  "), std::string("..."), std::string("..twodots"),
          std::string("%s%n"), std::string("\xE2\x82\xAC uro")}) {
        folder.add_file(name);
    }
    folder.add_folder(std::string(255, 'M'));
    BrowserDesk desk(folder.path(), {.scale = GetParam()});
    desk.open();
    expect_folder(desk, folder.path());
}

TEST_P(BrowserLook, ShowsTheEndOfALongPath) {
    const TestFolder folder;
    std::string path = folder.path();
    for (int depth = 0; depth < 8; ++depth) {
        path += "/a folder with a rather long name " + std::to_string(depth);
        ASSERT_EQ(system(("mkdir '" + path + "'").c_str()), 0);
    }
    BrowserDesk desk(path, {.scale = GetParam()});
    desk.open();
    expect_folder(desk, path);
}

INSTANTIATE_TEST_SUITE_P(Scales, BrowserLook, testing::Values(1.0F, 1.5F, 2.0F), scale_name);

// The scales at which a list of few entries is a rounded row shorter than its view are among them.
INSTANTIATE_TEST_SUITE_P(Scales, BrowserAtAnyScale,
                         testing::Values(1.0F, 1.125F, 1.25F, 1.375F, 1.5F, 1.625F, 1.75F, 1.875F,
                                         2.0F),
                         scale_name);

class BrowserWorld : public testing::TestWithParam<WindowManagerKind> {};

TEST_P(BrowserWorld, ShowsTheSameInEveryWorldAndIsWhatItSays) {
    const TestFolder folder;
    fill_with_everyday_things(folder);
    BrowserDesk desk(folder.path(), {.scale = 1.5F, .window_manager = GetParam()});
    desk.open();
    expect_folder(desk, folder.path());
    const auto window = desk.window();
    EXPECT_EQ(desk.view.text_property(window, "_NET_WM_NAME"), browser_title);
    EXPECT_EQ(desk.view.atoms_property(window, "_NET_WM_WINDOW_TYPE"),
              std::vector<std::string>{"_NET_WM_WINDOW_TYPE_UTILITY"});
    const auto state = desk.view.atoms_property(window, "_NET_WM_STATE");
    EXPECT_NE(std::find(state.begin(), state.end(), "_NET_WM_STATE_ABOVE"), state.end());
    // x, y, width, height, smallest and largest size.
    const auto hints = desk.view.numbers_property(window, "WM_NORMAL_HINTS");
    ASSERT_GE(hints.size(), 9U);
    EXPECT_EQ(std::vector<std::uint32_t>(hints.begin() + 1, hints.begin() + 9),
              (std::vector<std::uint32_t>{220, 156, 960, 648, 960, 648, 960, 648}));
    if (GetParam() == WindowManagerKind::none) {
        EXPECT_EQ(desk.view.place_on_root(window), (support::Place{220, 156, 960, 648}));
    }
}

INSTANTIATE_TEST_SUITE_P(Worlds, BrowserWorld,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& given) {
                             return std::string(support::window_manager_name(given.param));
                         });

TEST(BrowserDepth, IsWholeOnScreensOfAnyDepth) {
    const TestFolder folder;
    fill_with_everyday_things(folder);
    for (const int depth : {15, 16, 30}) {
        BrowserDesk desk(folder.path(), {.server = {.width = 800, .height = 600, .depth = depth}});
        desk.open();
        const support::Picture should =
            expected_picture(desk.text, 1.0F, browser_title,
                             {.path = folder.path(), .rows = rows_of(folder.path())});
        EXPECT_TRUE(support::wait_until([&] {
            return support::count_differences(desk.picture(), should, 8) == 0;
        })) << depth;
    }
}

} // namespace
