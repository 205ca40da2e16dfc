// new_product_test.cpp: --new lays out a folder to start from, and never over one that is there.
#include "make_installer/product_folder.h"
#include "support/child_process.h"

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

TEST(NewProduct, BringsTheLicencesOfWhatAnInstallerContains) {
    const ProductFolder product;
    const std::string text = product.read("INSTALLER-LICENSES.txt");
    for (const char* part :
         {"Your installer contains the installer program", "MIT License",
          "the zeph-installer authors", "Your installer contains its font", "Bitstream Vera"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part;
    }
}

TEST(NewProduct, DrawsItsPicturesFromTheSvgFiles) {
    const ProductFolder product;
    std::filesystem::remove(product.file("folder_icon.png"));
    EXPECT_EQ(support::output_of({product.file("draw-pictures.sh")}), "");
    const std::string drawn = product.read("folder_icon.png");
    EXPECT_EQ(drawn.substr(1, 3), "PNG");
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
