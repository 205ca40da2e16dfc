// new_product_test.cpp: --new lays out a folder to start from, and never over one that is there.
#include "make_installer/product_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(NewProduct, LacksNothingButThePlugin) {
    const ProductFolder product;
    std::filesystem::remove_all(product.file("my-plug-in.lv2"));
    const Outcome outcome = product.make();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.complained.find("plugin: there is no "), std::string::npos);
    EXPECT_NE(outcome.complained.find("1 thing to mend"), std::string::npos) << outcome.complained;
}

TEST(NewProduct, SaysWhatToDoNext) {
    const ScratchFolder scratch;
    const std::string folder = scratch.file("a product");
    const Outcome outcome = make_installer({"--new", folder});
    EXPECT_EQ(outcome.status, 0) << outcome.complained;
    EXPECT_NE(outcome.said.find("./make-installer '" + folder + "'"), std::string::npos)
        << outcome.said;
}

TEST(NewProduct, LeavesAFolderWithContentAlone) {
    const ProductFolder product;
    product.set("product_name", "\"Mine\"");
    const std::string before = product.read("product.toml");
    const Outcome outcome = make_installer({"--new", product.path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.complained.find("is not empty"), std::string::npos) << outcome.complained;
    EXPECT_EQ(product.read("product.toml"), before);
}

TEST(NewProduct, SaysWhyAFolderCannotBeMade) {
    const ProductFolder product;
    const Outcome outcome = make_installer({"--new", product.file("product.toml/new")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.complained.find("cannot be made"), std::string::npos) << outcome.complained;
}
