// Decoding and deleting characters.
#include <gtest/gtest.h> // before the X headers, whose macros break it

#include "gui/ORX/text/utf8.h"
#include "unit/imaging/test_images.h"
#include "unit/text/text_fixture.h"

#include <cstring>
#include <string>

namespace {

struct Result {
    std::uint32_t code_point;
    std::ptrdiff_t length;
    friend bool operator==(const Result&, const Result&) = default;
};

Result next(const std::string& bytes, bool utf8) {
    // Exactly the bytes and the zero, so that a look behind them is seen by the sanitizer.
    const std::vector<char> exact(bytes.c_str(), bytes.c_str() + bytes.size() + 1);
    Result result{};
    result.length = utf8_next(exact.data(), utf8, &result.code_point) - exact.data();
    return result;
}

TEST(Utf8Next, WithoutUtf8EachByteIsACharacter) {
    EXPECT_EQ(next("A", false), (Result{0x41, 1}));
    EXPECT_EQ(next("\xC3\xA4", false), (Result{0xC3, 1}));
    EXPECT_EQ(next("\x80", false), (Result{0x80, 1}));
}

TEST(Utf8Next, SequencesOfEveryLength) {
    EXPECT_EQ(next("A", true), (Result{0x41, 1}));
    EXPECT_EQ(next("\xC3\xA4", true), (Result{0xE4, 2}));
    EXPECT_EQ(next("\xE2\x82\xAC", true), (Result{0x20AC, 3}));
    EXPECT_EQ(next("\xF0\x9F\x98\x80", true), (Result{0x1F600, 4}));
    EXPECT_EQ(next("\xF8\x88\x80\x80\x80", true), (Result{0x200000, 5}));
    EXPECT_EQ(next("\xFC\x84\x80\x80\x80\x80", true), (Result{0x4000000, 6}));
    EXPECT_EQ(next("\xFE\x82\x80\x80\x80\x80\x81", true), (Result{0x80000001, 7}));
    EXPECT_EQ(next("\xFF\x81\x82\x83\x84\x85\x86\x87", true).length, 8);
}

TEST(Utf8Next, MalformedTextIsTakenAsItComes) {
    EXPECT_EQ(next("\x80\xBF\x41", true), (Result{0x41, 3})); // stray bytes are passed over
    EXPECT_EQ(next("\xC3"
                   "A",
                   true),
              (Result{0xC1, 2}));                      // not a continuation, taken all the same
    EXPECT_EQ(next("\xC0\x80", true), (Result{0, 2})); // over-long zero
    EXPECT_EQ(next("\xE0\x80\xAF", true), (Result{0x2F, 3})); // over-long slash
    EXPECT_EQ(next("\xBF\xBF", true), (Result{0, 3}));        // nothing but stray bytes
}

TEST(Utf8Next, ASequenceCutShortLeavesTheEndToBeMet) {
    EXPECT_EQ(next("\xC3", true), (Result{0x03, 1}));
    EXPECT_EQ(next("\xE2\x82", true), (Result{0x82, 2}));
    EXPECT_EQ(next("\xFF", true), (Result{0, 1}));
    EXPECT_EQ(next("", true), (Result{0, 1}));
}

TEST(Utf8Next, RandomBytesEqualTheRule) {
    images::Random random = images::make_random();
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        const int length = images::number(random, 0, 12);
        for (int i = 0; i < length; ++i) {
            const int high = images::number(random, 0, 2) == 0 ? 0xC0 : 0x80;
            bytes.push_back(static_cast<char>(images::number(random, 0, 1) == 0
                                                  ? images::number(random, 1, 255)
                                                  : images::number(random, high, 255)));
        }
        for (const bool utf8 : {false, true}) {
            const text_rules::Decoded wanted = text_rules::decode(bytes, 0, utf8);
            ASSERT_EQ(next(bytes, utf8),
                      (Result{wanted.code_point, static_cast<std::ptrdiff_t>(wanted.length)}));
        }
    }
}

// What is left of a buffer of that size.
std::string deleted(const std::string& content, int size, bool utf8) {
    std::vector<char> buffer(static_cast<std::size_t>(std::max(size, 1)), 'x');
    std::memcpy(buffer.data(), content.c_str(),
                std::min(content.size() + 1, static_cast<std::size_t>(std::max(size, 1))));
    delete_last_char(buffer.data(), size, utf8);
    return {buffer.data(), strnlen(buffer.data(), buffer.size())};
}

TEST(DeleteLastChar, TakesWholeSequences) {
    EXPECT_EQ(deleted("a\xC3\xA4", 16, true), "a");
    EXPECT_EQ(deleted("ab", 16, true), "a");
    EXPECT_EQ(deleted("a\xE2\x82\xAC", 16, true), "a");
    EXPECT_EQ(deleted("\xF0\x9F\x98\x80", 16, true), "");
    EXPECT_EQ(deleted("a", 16, true), "");
    EXPECT_EQ(deleted("", 16, true), "");
}

TEST(DeleteLastChar, StrayBytesDoNotTakeAPlainCharacterWithThem) {
    EXPECT_EQ(deleted("ab\x80\x80", 16, true), "ab");
    EXPECT_EQ(deleted("\x80\x80", 16, true), "");
    EXPECT_EQ(deleted("a\xC3", 16, true), "a");
}

TEST(DeleteLastChar, ByBytesInSingleByteMode) {
    EXPECT_EQ(deleted("ab", 16, false), "a");
    EXPECT_EQ(deleted("a\xC3\xA4", 16, false), "a\xC3");
    EXPECT_EQ(deleted("a", 16, false), "");
    EXPECT_EQ(deleted("", 16, false), "");
}

TEST(DeleteLastChar, AtTheBuffersLimit) {
    for (const bool utf8 : {false, true}) {
        EXPECT_EQ(deleted("abc", 5, utf8), "ab");  // size - 2 characters
        EXPECT_EQ(deleted("abc", 4, utf8), "abc"); // size - 1: left alone
        EXPECT_EQ(deleted("abc", 3, utf8), "abc"); // no zero in the buffer
        EXPECT_EQ(deleted("a", 1, utf8), "a");
        EXPECT_EQ(deleted("a", 0, utf8), "a");
        EXPECT_EQ(deleted("a", -7, utf8), "a");
        delete_last_char(nullptr, 10, utf8);
    }
}

TEST(DeleteLastChar, LeavesNoByteOfTheCharacterBehind) {
    char buffer[8] = "a\xE2\x82\xAC";
    delete_last_char(buffer, 8, true);
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(buffer[i], 0);
    }
}

} // namespace
