// folder_dialog_home_test.cpp: where the folder browser starts, before there is any display.

#include <gtest/gtest.h> // first: Xlib's macros would break it

#include "gui/ORX/core/engine.h"
#include "gui/ORX/widgets/folder_dialog.h"
#include "unit/widgets/test_folder.h"

#include <cstdlib>
#include <memory>
#include <string>

namespace {

class FolderDialogHome : public testing::Test {
protected:
    void start_with_home(const char* home) {
        working_directory.enter(folder.path());
        if (home == nullptr) {
            unsetenv("HOME");
        } else {
            setenv("HOME", home, 1);
        }
        const auto dialog = std::make_unique<FolderDialog>();
        folder_dialog_init(dialog.get(), nullptr, nullptr);
        EXPECT_FALSE(folder_dialog_is_open(dialog.get()));
        folder_dialog_destroy(dialog.get());
    }

    TestFolder folder;
    WorkingDirectory working_directory;
};

TEST_F(FolderDialogHome, IsTheWorkingDirectoryFromThenOn) {
    folder.add_folder("home");
    start_with_home(folder.path_of("home").c_str());
    EXPECT_EQ(WorkingDirectory::now(), folder.path_of("home"));
}

TEST_F(FolderDialogHome, MayBeRelative) {
    folder.add_folder("home");
    start_with_home("home");
    EXPECT_EQ(WorkingDirectory::now(), folder.path_of("home"));
}

TEST_F(FolderDialogHome, ThatIsNotThereLeavesTheWorkingDirectory) {
    folder.add_file("file");
    for (const std::string& home :
         {std::string(), folder.path_of("file"), folder.path_of("gone"), std::string(5000, 'x')}) {
        start_with_home(home.c_str());
        EXPECT_EQ(WorkingDirectory::now(), folder.path()) << home;
    }
    start_with_home(nullptr);
    EXPECT_EQ(WorkingDirectory::now(), folder.path());
}

TEST_F(FolderDialogHome, WithoutADisplayOpeningAnswersWithACancel) {
    int cancels = 0;
    UiEngine* engine = engine_new();
    const auto dialog = std::make_unique<FolderDialog>();
    folder_dialog_init(dialog.get(), engine, nullptr);
    folder_dialog_set_cancel_callback(
        dialog.get(),
        [](const char* path, void* user) {
            EXPECT_EQ(path, nullptr);
            ++*static_cast<int*>(user);
        },
        &cancels);
    folder_dialog_open(dialog.get());
    EXPECT_EQ(cancels, 1);
    EXPECT_FALSE(folder_dialog_is_open(dialog.get()));
    folder_dialog_destroy(dialog.get());
    engine_destroy(engine);
}

} // namespace
