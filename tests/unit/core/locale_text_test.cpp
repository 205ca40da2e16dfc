// Text from elsewhere, in the encoding of the person's locale.

#include "gui/ORX/core/locale_text.h"

#include "support/child_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string converted(const std::string& text) {
    unsigned char* made =
        text_in_locale(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    std::string result = reinterpret_cast<const char*>(made);
    std::free(made);
    return result;
}

// The process has that locale while the object lives. Others than C are made for the test.
struct Locale {
    explicit Locale(const char* name) { EXPECT_NE(std::setlocale(LC_ALL, name), nullptr) << name; }
    Locale(const char* language, const char* charset) {
        folder = testing::TempDir() + "locale-" + std::to_string(getpid());
        std::filesystem::create_directories(folder);
        const std::string name = std::string(language) + "." + charset;
        support::ChildProcess localedef({.command = {"localedef", "-i", language, "-f", charset,
                                                     "--no-archive", folder + "/" + name}});
        (void)localedef.wait_for_end();
        setenv("LOCPATH", folder.c_str(), 1);
        EXPECT_NE(std::setlocale(LC_ALL, name.c_str()), nullptr) << localedef.error_output();
    }
    ~Locale() {
        std::setlocale(LC_ALL, "C");
        if (!folder.empty()) {
            unsetenv("LOCPATH");
            std::filesystem::remove_all(folder);
        }
    }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;
    std::string folder = {};
};

TEST(LocaleText, Utf8StaysWhatItIsInUtf8) {
    const Locale locale("C.UTF-8");
    for (const char* text : {"", "plain", "gr\xC3\xBCn \xE2\x82\xAC \xF0\x9F\x8E\xB9"}) {
        EXPECT_EQ(converted(text), text);
    }
}

TEST(LocaleText, WhatIsNotUtf8CountsAsLatin1) {
    const Locale locale("C.UTF-8");
    EXPECT_EQ(converted("gr\xFCn"), "gr\xC3\xBCn");
    EXPECT_EQ(converted("\xC3"), "\xC3\x83");             // cut off
    EXPECT_EQ(converted("\xC0\xAF"), "\xC3\x80\xC2\xAF"); // longer than need be
    EXPECT_EQ(converted("\xE0\x80\xAF"), "\xC3\xA0\xC2\x80\xC2\xAF");
    EXPECT_EQ(converted("\xF0\x80\x80\xAF"), "\xC3\xB0\xC2\x80\xC2\x80\xC2\xAF");
    EXPECT_EQ(converted("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"); // too great
    EXPECT_EQ(converted("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");             // half of a pair
    EXPECT_EQ(converted("\xF5\x80\x80\x80"), "\xC3\xB5\xC2\x80\xC2\x80\xC2\x80"); // beyond all
}

TEST(LocaleText, BecomesTheBytesOfAnOlderLocale) {
    const Locale locale("de_DE", "ISO-8859-1");
    EXPECT_EQ(converted("gr\xC3\xBCn"), "gr\xFCn");
    EXPECT_EQ(converted("gr\xFCn"), "gr\xFCn");
}

TEST(LocaleText, IsUtf8WhereTheLocaleLacksACharacter) {
    {
        const Locale locale("de_DE", "ISO-8859-1");
        EXPECT_EQ(converted("\xC3\xBC\xE2\x82\xAC"), "\xC3\xBC\xE2\x82\xAC");
    }
    const Locale plain("C");
    EXPECT_EQ(converted("plain"), "plain");
    EXPECT_EQ(converted("gr\xC3\xBCn"), "gr\xC3\xBCn");
    EXPECT_EQ(converted("gr\xFCn"), "gr\xC3\xBCn");
}

TEST(LocaleText, EndsAtAZeroByte) {
    const Locale locale("C.UTF-8");
    EXPECT_EQ(converted(std::string("ab\0cd", 5)), "ab");
}

} // namespace
