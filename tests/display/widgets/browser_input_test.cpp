// browser_input_test.cpp: walking through folders and leaving the browser, with a real pointer.

#include "display/widgets/browser_desk.h"
#include "display/widgets/browser_picture.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <string>

namespace {

using support::WindowManagerKind;

struct World {
    float scale;
    WindowManagerKind window_manager;
};

// Rows: ".", "..", "inner 2", "inner 10", then "file".
void fill(const TestFolder& folder) {
    folder.add_folder("inner 2");
    folder.add_folder("inner 10");
    folder.add_folder("inner 2/deep");
    folder.add_file("file");
}

// A second press within 0.3 s would be a double click.
void pause() {
    (void)support::holds_for([] { return true; }, std::chrono::milliseconds(350));
}

class BrowserInput : public testing::TestWithParam<World> {
protected:
    BrowserInput() {
        fill(folder);
        desk.open();
        expect_folder(desk, folder.path());
    }
    TestFolder folder;
    BrowserDesk desk{folder.path(),
                     {.scale = GetParam().scale, .window_manager = GetParam().window_manager}};
};

TEST_P(BrowserInput, AClickEntersAFolderAndDotDotLeavesIt) {
    desk.click_row(2);
    expect_folder(desk, folder.path_of("inner 2"));
    EXPECT_EQ(WorkingDirectory::now(), folder.path_of("inner 2"));
    pause();
    desk.click_row(1);
    expect_folder(desk, folder.path());
    EXPECT_EQ(desk.accepted_count() + desk.cancelled_count(), 0);
}

TEST_P(BrowserInput, TheFolderMarkAndTheMarginEnterToo) {
    desk.click(18 + 24, 82 + 2 * 16 + 8);
    expect_folder(desk, folder.path_of("inner 2"));
    pause();
    desk.click(18 + 2, 82 + 16 + 8); // ".."
    expect_folder(desk, folder.path());
}

TEST_P(BrowserInput, AClickOnAFileOrBehindANameOrOnEmptySpaceChangesNothing) {
    for (const auto& [x, y] : {std::pair{18 + 34, 82 + 4 * 16 + 8}, std::pair{400, 82 + 2 * 16 + 8},
                               std::pair{18 + 34, 82 + 200}}) {
        desk.click(x, y);
        pause();
        expect_folder(desk, folder.path());
    }
    EXPECT_EQ(WorkingDirectory::now(), folder.path());
}

TEST_P(BrowserInput, ASecondClickOfADoubleClickActsOnTheNewListing) {
    // The third row of the inner folder is "deep".
    desk.point_at(18 + 34, 82 + 2 * 16 + 8);
    desk.person.click();
    // No sooner: openbox now and then swallows a press that meets its handling of the one before.
    ASSERT_TRUE(support::wait_until([&] { return WorkingDirectory::now() != folder.path(); }));
    desk.person.click();
    expect_folder(desk, folder.path_of("inner 2/deep"));
    EXPECT_EQ(desk.accepted_count(), 0);
}

TEST_P(BrowserInput, OkGivesTheFolderShownWithoutAClickBefore) {
    desk.point_at(40, 376);
    desk.person.press_button();
    expect_look(desk, {.path = folder.path(), .rows = rows_of(folder.path()), .ok_lit = true});
    EXPECT_EQ(desk.accepted_count(), 0);
    desk.person.release_button();
    ASSERT_TRUE(desk.wait_for_accept());
    EXPECT_EQ(desk.accepted_path(), folder.path());
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
    EXPECT_EQ(WorkingDirectory::now(), folder.path());
}

TEST_P(BrowserInput, OkGivesTheFolderEnteredEvenWhenReleasedElsewhere) {
    desk.click_row(3);
    expect_folder(desk, folder.path_of("inner 10"));
    pause();
    desk.point_at(40, 376);
    desk.person.press_button();
    desk.point_at(320, 200);
    desk.person.release_button();
    ASSERT_TRUE(desk.wait_for_accept());
    EXPECT_EQ(desk.accepted_path(), folder.path_of("inner 10"));
}

TEST_P(BrowserInput, CancelGivesNoFolder) {
    desk.point_at(120, 376);
    desk.person.press_button();
    expect_look(desk, {.path = folder.path(), .rows = rows_of(folder.path()), .cancel_lit = true});
    desk.person.release_button();
    ASSERT_TRUE(desk.wait_for_cancel());
    EXPECT_EQ(desk.accepted_count(), 0);
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
}

TEST_P(BrowserInput, TheWindowManagersCloseIsACancel) {
    desk.view.ask_to_close(desk.window());
    ASSERT_TRUE(desk.wait_for_cancel());
    EXPECT_EQ(desk.cancelled_count(), 1);
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
}

TEST_P(BrowserInput, OpensAgainWhereThePersonWas) {
    desk.click_row(2);
    expect_folder(desk, folder.path_of("inner 2"));
    pause();
    desk.click(40, 376);
    ASSERT_TRUE(desk.wait_for_accept());
    ASSERT_TRUE(desk.view.wait_until_gone(desk.window()));
    folder.add_file("inner 2/new");
    desk.open();
    expect_folder(desk, folder.path_of("inner 2"));
    desk.view.ask_to_close(desk.window());
    ASSERT_TRUE(desk.wait_for_cancel());
    ASSERT_TRUE(desk.view.wait_until_gone(desk.window()));
    desk.open();
    expect_folder(desk, folder.path_of("inner 2"));
}

INSTANTIATE_TEST_SUITE_P(Worlds, BrowserInput,
                         testing::Values(World{1.0F, WindowManagerKind::openbox},
                                         World{1.5F, WindowManagerKind::none},
                                         World{2.0F, WindowManagerKind::twm}),
                         [](const auto& given) {
                             return std::string(
                                        support::window_manager_name(given.param.window_manager)) +
                                    std::to_string(static_cast<int>(given.param.scale * 1000));
                         });

class BrowserPointer : public testing::Test {
protected:
    BrowserPointer() {
        fill(folder);
        desk.open();
        expect_folder(desk, folder.path());
    }
    // Selects both inner folders, as nothing that a person does here can, and has them seen.
    void show_selected() {
        {
            const std::lock_guard<std::mutex> lock(desk.dialog->mutex);
            desk.dialog->entries[2].selected = 1;
            desk.dialog->entries[3].selected = 1;
            std::fill(std::begin(desk.dialog->list_band_drawn),
                      std::end(desk.dialog->list_band_drawn), false);
        }
        desk.person.turn_wheel_down(); // has the list drawn again; there is nothing to scroll
        auto rows = rows_of(folder.path());
        rows[2].selected = rows[3].selected = true;
        desk.point_at(320, 300);
        desk.person.turn_wheel_down();
        desk.point_at(18 + 34, 82 + 4 * 16 + 8);
        desk.person.click(); // on the file: the view is shown again
        expect_look(desk, {.path = folder.path(), .rows = rows});
    }

    TestFolder folder;
    BrowserDesk desk{folder.path()};
};

TEST_F(BrowserPointer, OtherButtonsEnterNothing) {
    for (const int button : {support::middle_button, support::right_button}) {
        desk.point_at(18 + 34, 82 + 2 * 16 + 8);
        desk.person.click(button);
        desk.point_at(40, 376);
        desk.person.click(button);
    }
    expect_folder(desk, folder.path());
    EXPECT_TRUE(support::holds_for([this] { return desk.accepted_count() == 0; },
                                   std::chrono::milliseconds(100)));
}

TEST_F(BrowserPointer, ASelectedFolderIsDrawnOrange) {
    show_selected();
}

TEST_F(BrowserPointer, EmptySpaceTakesAwayASelection) {
    show_selected();
    pause();
    desk.click(18 + 34, 82 + 200);
    expect_folder(desk, folder.path());
}

TEST_F(BrowserPointer, ADoubleClickGivesAPathThatIsAlreadyChosen) {
    const std::string chosen = folder.path_of("inner 10");
    {
        const std::lock_guard<std::mutex> lock(desk.dialog->mutex);
        desk.dialog->chosen_path = strdup(chosen.c_str());
    }
    pause(); // the clock of double clicks starts with the engine
    desk.click(18 + 34, 82 + 200);
    EXPECT_TRUE(support::holds_for([this] { return desk.accepted_count() == 0; },
                                   std::chrono::milliseconds(350)));
    // Again and again: a loaded machine may let more than 0.3 s pass between the two.
    ASSERT_TRUE(support::wait_until([this] {
        pause();
        desk.person.click();
        desk.person.click();
        return support::wait_until([this] { return desk.accepted_count() > 0; },
                                   std::chrono::milliseconds(500));
    }));
    EXPECT_EQ(desk.accepted_path(), chosen);
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    EXPECT_FALSE(folder_dialog_is_open(desk.dialog.get()));
    EXPECT_EQ(desk.accepted_count(), 1);
    EXPECT_EQ(desk.cancelled_count(), 0);
}

TEST_F(BrowserPointer, AFolderThatCannotBeEnteredLeavesWhatIsShownTrue) {
    ASSERT_EQ(rmdir(folder.path_of("inner 10").c_str()), 0);
    folder.add_file("new file");
    desk.click_row(3);
    expect_folder(desk, folder.path()); // as it is now
    EXPECT_EQ(WorkingDirectory::now(), folder.path());
    desk.click(40, 376);
    ASSERT_TRUE(desk.wait_for_accept());
    EXPECT_EQ(desk.accepted_path(), folder.path());
}

TEST_F(BrowserPointer, AnEntryThatIsNoFolderAnyMoreIsNotEntered) {
    ASSERT_EQ(rmdir(folder.path_of("inner 10").c_str()), 0);
    folder.add_file("inner 10");
    desk.click_row(3);
    expect_folder(desk, folder.path());
}

TEST_F(BrowserPointer, ADeletedFolderIsNotGivenAsAnAnswer) {
    desk.click_row(3);
    expect_folder(desk, folder.path_of("inner 10"));
    ASSERT_EQ(rmdir(folder.path_of("inner 10").c_str()), 0);
    pause();
    desk.click(40, 376);
    expect_look(desk, {.path = "(this folder is no longer there)",
                       .rows = {{".", true}, {"..", true}}, // as listed while it was there
                       .ok_refused = true});
    EXPECT_EQ(desk.accepted_count(), 0);
    EXPECT_TRUE(folder_dialog_is_open(desk.dialog.get()));
    pause();
    desk.click_row(1); // ".." leads out of what is gone
    expect_look(desk, {.path = folder.path(), .rows = rows_of(folder.path()), .ok_refused = true});
    pause();
    desk.click(120, 376);
    ASSERT_TRUE(desk.wait_for_cancel());
}

TEST_F(BrowserPointer, ClosingFromTheProgramCallsNobody) {
    folder_dialog_close(desk.dialog.get());
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    folder_dialog_close(desk.dialog.get());
    EXPECT_EQ(desk.accepted_count() + desk.cancelled_count(), 0);
    desk.open();
    expect_folder(desk, folder.path());
}

TEST(BrowserCallbacks, ShareTheUserThatWasGivenLast) {
    const TestFolder folder;
    BrowserDesk desk(folder.path());
    std::atomic<int> earlier{0};
    std::atomic<int> later{0};
    const auto count = [](const char*, void* user) { ++*static_cast<std::atomic<int>*>(user); };
    folder_dialog_set_accept_callback(desk.dialog.get(), count, &earlier);
    folder_dialog_set_cancel_callback(desk.dialog.get(), count, &later);
    desk.open();
    desk.click(40, 376);
    EXPECT_TRUE(support::wait_until([&] { return earlier + later > 0; }));
    EXPECT_EQ(later, 1);
    ASSERT_TRUE(desk.view.wait_until_gone(desk.window()));
    folder_dialog_set_cancel_callback(desk.dialog.get(), count, &earlier);
    folder_dialog_set_accept_callback(desk.dialog.get(), count, &later);
    desk.open();
    desk.view.ask_to_close(desk.window());
    EXPECT_TRUE(support::wait_until([&] { return earlier + later > 1; }));
    EXPECT_EQ(later, 2);
}

TEST_F(BrowserPointer, OpeningTwiceIsOpeningOnce) {
    folder_dialog_open(desk.dialog.get());
    desk.click(120, 376);
    ASSERT_TRUE(desk.wait_for_cancel());
    EXPECT_TRUE(desk.view.wait_until_gone(desk.window()));
    EXPECT_FALSE(desk.view.find_title(browser_title).has_value());
}

} // namespace
