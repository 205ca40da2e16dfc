// installed_tree_test.cpp: what a trial notices of a tree that is not as it is carried.
#include "end_to_end/installed_tree.h"
#include "payload/scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

class InstalledTree : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(tree("a.lv2/presets"));
        std::ofstream(tree("a.lv2/a b\n.so")) << "library";
        fs::create_symlink("a b\n.so", tree("a.lv2/link"));
        (void)support::output_of({"tar", "-czf", archive(), "-C", scratch_.file("tree"), "a.lv2"});
    }

    [[nodiscard]] std::string tree(const std::string& name) const {
        return scratch_.file("tree/" + name);
    }
    [[nodiscard]] std::string archive() const { return scratch_.file("a.tar.gz"); }
    [[nodiscard]] end_to_end::TreeFigures prove() const {
        return end_to_end::prove_tree(archive(), scratch_.file("tree"));
    }

    void expect_noticed(const std::string& what, const std::function<void()>& change) {
        change();
        EXPECT_THROW((void)prove(), std::runtime_error) << what;
        fs::remove_all(scratch_.file("tree"));
        fs::create_directories(scratch_.file("tree"));
        (void)support::output_of({"tar", "-xpf", archive(), "-C", scratch_.file("tree")});
        EXPECT_NO_THROW((void)prove()) << what;
    }

    ScratchFolder scratch_;
};

} // namespace

TEST_F(InstalledTree, IsCountedWhereItIsAsItIsCarried) {
    std::ofstream(tree("another plug-in.so")) << "there before";
    EXPECT_EQ(prove().members, 4U);
    EXPECT_EQ(prove().tops, "a.lv2");
}

TEST_F(InstalledTree, IsNoticedInEveryDifference) {
    expect_noticed("a changed byte", [&] { std::ofstream(tree("a.lv2/a b\n.so")) << "librarY"; });
    expect_noticed("a missing file", [&] { fs::remove(tree("a.lv2/a b\n.so")); });
    expect_noticed("another mode",
                   [&] { fs::permissions(tree("a.lv2/presets"), fs::perms::owner_all); });
    expect_noticed("another link", [&] {
        fs::remove(tree("a.lv2/link"));
        fs::create_symlink("presets", tree("a.lv2/link"));
    });
    expect_noticed("one more", [&] { std::ofstream(tree("a.lv2/presets/more")) << "1"; });
}
