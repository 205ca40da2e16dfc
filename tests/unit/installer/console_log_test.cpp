// console_log_test.cpp: a name that somebody has made up, as the console shows it.
#include "installer/console_log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

std::string shown(const char* text) {
    char* copy = visible_copy(text);
    std::string seen = copy == nullptr ? "no memory" : copy;
    std::free(copy);
    return seen;
}

TEST(VisibleCopy, ShowsEachControlCharacterByItsNumber) {
    EXPECT_EQ(shown("\x01\x1B[2J\x1F\x7F"), "\\x01\\x1B[2J\\x1F\\x7F");
    EXPECT_EQ(shown("\xC2\x80-\xC2\x9B-\xC2\x9F"), "\\x80-\\x9B-\\x9F");
}

TEST(VisibleCopy, LeavesEverythingElseAsItIs) {
    for (const char* text :
         {"", "/usr/lib/lv2", " ~", "\xC2\xA0", "gr\xC3\xBCn", "\xC2", "\xC3\x80"}) {
        EXPECT_EQ(shown(text), text);
    }
}

} // namespace
