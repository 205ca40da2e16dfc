// plugin_errors_test.cpp: plug-ins that cannot be packed, or would do harm where they are unpacked.
#include "make_installer/product_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace fs = std::filesystem;

TEST(PluginErrors, Missing) {
    const ProductFolder product;
    fs::remove_all(product.file("my-plug-in.lv2"));
    product.expect_refused({"plugin: there is no ", "my-plug-in.lv2", "put the plug-in there"});
}

TEST(PluginErrors, EmptyFile) {
    const ProductFolder product;
    product.write("plugin.so", "");
    product.set("plugin", "\"plugin.so\"");
    product.expect_refused({"plugin: ", "plugin.so is an empty file"});
}

TEST(PluginErrors, FolderWithoutFiles) {
    const ProductFolder product;
    fs::remove(product.file("my-plug-in.lv2/manifest.ttl"));
    fs::create_directory(product.file("my-plug-in.lv2/presets"));
    product.expect_refused({"plugin: ", "has no files in it"});
}

TEST(PluginErrors, FolderThatBelongsToTheSystem) {
    // Unpacked into /usr/lib, it would change the owner and mode of /usr/lib/lv2.
    const ProductFolder product;
    fs::rename(product.file("my-plug-in.lv2"), product.file("lv2"));
    product.set("plugin", "\"lv2\"");
    product.expect_refused({"plugin: ", "belongs to the system", "the plug-in's own folder"});
}

TEST(PluginErrors, LinksThatLeadOutOrNowhere) {
    const ProductFolder product;
    fs::create_symlink("/etc/hostname", product.file("my-plug-in.lv2/out"));
    product.expect_refused({"plugin: ", "my-plug-in.lv2/out is a link to /etc/hostname", "inside"});
    fs::remove(product.file("my-plug-in.lv2/out"));
    fs::create_symlink("nothing", product.file("my-plug-in.lv2/loose"));
    product.expect_refused({"plugin: ", "my-plug-in.lv2/loose is a link to nothing"});
}

TEST(PluginErrors, NeitherFileNorFolder) {
    const ProductFolder product;
    ASSERT_EQ(mkfifo(product.file("my-plug-in.lv2/pipe").c_str(), 0600), 0);
    product.expect_refused({"plugin: ", "my-plug-in.lv2/pipe is neither a file nor a folder"});
}
