// settings_errors_test.cpp: each setting that cannot be used is refused by name, with its mend.
#include "make_installer/product_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(SettingsErrors, NoSettingsFile) {
    const ProductFolder product;
    std::filesystem::remove(product.file("product.toml"));
    product.expect_refused({"there is no settings file", "--new"});
}

TEST(SettingsErrors, NoFolderAtAll) {
    const Outcome outcome = make_installer({"there/is/no such folder"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.complained.find("there/is/no such folder/product.toml"), std::string::npos);
}

TEST(SettingsErrors, NotInTheFormat) {
    const ProductFolder product;
    product.write("product.toml", "product_name = \"ab\nproduct_version = 1\n");
    product.expect_refused({"product.toml:1: ", "name = \"text\""});
}

TEST(SettingsErrors, NotUtf8) {
    const ProductFolder product;
    product.write("product.toml", "product_name = \"M\xfcller\"\n");
    product.expect_refused({"UTF-8"});
}

TEST(SettingsErrors, MissingSettings) {
    for (const char* setting : {"product_name", "plugin", "verify_installation", "extra_folder"}) {
        const ProductFolder product;
        product.remove(setting);
        product.expect_refused({std::string(setting) + ": is missing", "add a line"});
    }
}

TEST(SettingsErrors, UnknownSettingNamesTheNearOne) {
    const ProductFolder product;
    product.write("product.toml", product.read("product.toml") + "product_nam = \"x\"\n");
    product.expect_refused({"product_nam: there is no such setting", "product_name"});
}

TEST(SettingsErrors, AMisspeltSettingIsNotMissingToo) {
    const ProductFolder product;
    product.remove("product_version");
    product.write("product.toml", "product_verison = \"1\"\n" + product.read("product.toml"));
    product.expect_refused({"product.toml:1: product_verison: ", "did you mean product_version?"});
    EXPECT_NE(product.make().complained.find("; 1 thing to mend"), std::string::npos);
}

TEST(SettingsErrors, SettingsAndFilesTogetherEachWithItsLine) {
    const ProductFolder product;
    product.write("product.toml", "# one line more\n" + product.read("product.toml"));
    product.set("verify_installation", "7");
    product.set("splash_picture", "\"no.png\"");
    std::filesystem::remove_all(product.file("my-plug-in.lv2"));
    const std::string complained = product.make().complained;
    for (const char* text : {"verify_installation: is 7; ", "splash_picture: there is no ",
                             "plugin: there is no ", "; 3 things to mend"}) {
        EXPECT_NE(complained.find(text), std::string::npos) << text << "\n" << complained;
    }
    // Above product_name stand the new line and six of the template's.
    product.set("product_name", "7");
    product.expect_refused({"product.toml:8: product_name: is not a text"});
}

TEST(SettingsErrors, AByteOrderMarkIsNone) {
    const ProductFolder product;
    product.write("product.toml", "\xef\xbb\xbf" + product.read("product.toml"));
    product.set("verify_installation", "7");
    product.expect_refused({"verify_installation: is 7"});
}

TEST(SettingsErrors, CompressionIsOneOfTwo) {
    const ProductFolder product;
    product.set("compression", "\"zip\"");
    product.expect_refused({"compression: is 'zip'; write \"gzip\" or \"xz\""});
}

TEST(SettingsErrors, AllComplaintsAtOnce) {
    const ProductFolder product;
    product.remove("product_version");
    product.set("default_install_folder", "\"lv2\"");
    product.set("install_desktop_files", "7");
    const Outcome outcome = product.make();
    for (const char* setting :
         {"product_version: ", "default_install_folder: ", "install_desktop_files: "}) {
        EXPECT_NE(outcome.complained.find(setting), std::string::npos) << setting;
    }
    EXPECT_NE(outcome.complained.find("nothing was built; 3 things to mend"), std::string::npos)
        << outcome.complained;
}

TEST(SettingsErrors, SwitchesAreZeroOrOne) {
    const ProductFolder product;
    for (const char* value : {"2", "-1", "true", "\"1\"", "1.5"}) {
        product.set("exact_folder_names", value);
        product.expect_refused({"exact_folder_names: ", "write 0 (off) or 1 (on)"});
    }
}

TEST(SettingsErrors, TextsAreTexts) {
    const ProductFolder product;
    product.set("product_version", "3");
    product.expect_refused({"product_version: is not a text", "quotes"});
}

TEST(SettingsErrors, EmptyNames) {
    for (const char* setting : {"product_name", "product_version", "product_short_name",
                                "default_install_folder", "plugin", "splash_picture"}) {
        const ProductFolder product;
        product.set(setting, "\"\"");
        product.expect_refused({std::string(setting) + ": is empty"});
    }
}

TEST(SettingsErrors, LineBreaksInTexts) {
    const ProductFolder product;
    product.set("product_comment", "\"one\\ntwo\"");
    product.expect_refused({"product_comment: ", "line break"});
}

TEST(SettingsErrors, TitleTooLongForItsLine) {
    // "- " + name + " 1.0 Installer -" may have 62 bytes: 44 for the name.
    const ProductFolder product;
    product.set("product_name", "\"" + std::string(45, 'i') + "\"");
    product.expect_refused({"product_name: ", "1 bytes too long", "shorten"});
}

TEST(SettingsErrors, BrowserTitleThatCannotBeShown) {
    const ProductFolder product;
    product.set("folder_browser_title", "\"\"");
    product.expect_refused({"folder_browser_title: is empty"});
    product.set("folder_browser_title", "\"" + std::string(60, 'W') + "\"");
    product.expect_refused({"folder_browser_title: ", "pixels too wide", "shorten"});
    product.set("folder_browser_title", "\"\u4e2d\"");
    product.expect_refused({"folder_browser_title: ", "font does not have"});
}

TEST(SettingsErrors, TitleTooWideForTheScreen) {
    const ProductFolder product;
    product.set("product_name", "\"" + std::string(40, 'W') + "\"");
    product.set("product_version", "\"WWWWWWW\"");
    product.expect_refused({"product_name: ", "pixels too wide", "shorten"});
}

TEST(SettingsErrors, TitleWithLettersThatTheFontLacks) {
    const ProductFolder product;
    product.set("product_version", "\"\u03b2 2\"");
    product.expect_refused({"product_version: ", "\u03b2", "font"});
}

TEST(SettingsErrors, FoldersThatAreNotAbsoluteOrNotPlain) {
    const ProductFolder product;
    for (const char* folder : {"lv2", "./lv2", "~/lv2"}) {
        product.set("default_install_folder", "\"" + std::string(folder) + "\"");
        product.expect_refused({"default_install_folder: "});
    }
    for (const char* folder : {"/usr/../lv2", "/usr//lib", "/usr/lib/", "/"}) {
        product.set("default_install_folder", "\"" + std::string(folder) + "\"");
        product.expect_refused({"default_install_folder: ", "plain path"});
    }
}

TEST(SettingsErrors, CharactersThatTheRootCommandsWouldTakeApart) {
    const ProductFolder product;
    for (const char character : std::string(" '$`;&|<>()*?[]{}#~!^%")) {
        product.set("default_install_folder", std::string("\"/usr/lib/a") + character + "b\"");
        product.expect_refused({"default_install_folder: has the character", "take apart"});
    }
    for (const char* setting :
         {"product_short_name", "icon_file_name", "icon_folder", "extra_folder"}) {
        product.set(setting, "'/a \"$(id)\"'");
        product.expect_refused({std::string(setting) + ": has the character", "take apart"});
    }
}

TEST(SettingsErrors, FileNamesWithFoldersOrLeadingDashes) {
    const ProductFolder product;
    product.set("product_short_name", "\"../name\"");
    product.expect_refused({"product_short_name: has a / in it"});
    product.set("product_short_name", "\"-rf\"");
    product.expect_refused({"product_short_name: begins with '-'"});
    product.set("product_short_name", "\"" + std::string(65, 'n') + "\"");
    product.expect_refused({"product_short_name: is longer than 64 bytes"});
}

TEST(SettingsErrors, DesktopEntryNeedsItsTexts) {
    const ProductFolder product;
    product.set("install_desktop_files", "1");
    for (const char* setting :
         {"product_executable", "product_comment", "desktop_categories", "icon_file_name"}) {
        product.expect_refused({std::string(setting) + ": is empty"});
    }
    product.set("product_executable", "\"../sh\"");
    product.expect_refused({"product_executable: ", "inside default_install_folder"});
    product.set("desktop_categories", "\"Audio\"");
    product.expect_refused({"desktop_categories: ", "followed by ;"});
    product.set("desktop_categories", "\"Recorder;\"");
    product.expect_refused({"desktop_categories: ", "main category"});
    product.set("icon_file_name", "\"icon.svg\"");
    product.expect_refused({"icon_file_name: ", ".png"});
    product.set("product_comment", "'a \\n b'");
    product.expect_refused({"product_comment: has a backslash"});
}

TEST(SettingsErrors, ExtraFolderThatWouldNeverBeMade) {
    const ProductFolder product;
    product.set("create_extra_folder", "1");
    product.expect_refused({"extra_folder: is empty"});
    product.set("extra_folder", "\"/usr/share/x\"");
    product.expect_refused({"create_extra_folder: ", "install_desktop_files = 1"});
}

TEST(SettingsErrors, UninstallerForWhatIsNotPutInPlaceAsAWhole) {
    const ProductFolder product;
    product.set("verify_installation", "0");
    product.expect_refused({"uninstaller: is 1", "set verify_installation = 1"});
}
