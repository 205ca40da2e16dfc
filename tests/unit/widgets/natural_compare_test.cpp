// natural_compare_test.cpp: the order in which people expect file names.

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

void expect_before(const char* a, const char* b) {
    EXPECT_EQ(orx_natural_compare(a, b), -1) << a << " | " << b;
    EXPECT_EQ(orx_natural_compare(b, a), 1) << b << " | " << a;
}

std::string random_name(std::mt19937& random, const std::string& alphabet, int longest) {
    std::string name(random() % static_cast<unsigned>(longest + 1), '\0');
    for (char& c : name) {
        c = alphabet[random() % alphabet.size()];
    }
    return name;
}

TEST(NaturalCompare, NumbersCompareByValue) {
    expect_before("file2", "file10");
    expect_before("file10", "file20");
    expect_before("9", "10");
    expect_before("199", "200");
    expect_before("file2b", "file10a");
}

TEST(NaturalCompare, NumbersOfAnyLengthCompare) {
    expect_before("a18446744073709551616", "a18446744073709551617");
    expect_before("99999999999999999999999", "100000000000000000000000");
}

TEST(NaturalCompare, NumbersThatBeginWithZeroCompareAsFractions) {
    expect_before("x01", "x1");
    expect_before("010", "1");
    expect_before("1.0005", "1.001");
    expect_before("0", "00");
    expect_before("005", "05");
    EXPECT_EQ(orx_natural_compare("007", "007"), 0);
}

TEST(NaturalCompare, BlanksCountForNothing) {
    EXPECT_EQ(orx_natural_compare("a 1", "a1"), 0);
    EXPECT_EQ(orx_natural_compare("  a\t1\n", "a1"), 0);
    EXPECT_EQ(orx_natural_compare("", "   "), 0);
}

TEST(NaturalCompare, ABlankStillEndsANumber) {
    expect_before("1 2", "12");
}

TEST(NaturalCompare, CaseDecidesUnlessItIsFolded) {
    expect_before("B", "a");
    EXPECT_EQ(orx_natural_compare_ignoring_case("a", "B"), -1);
    EXPECT_EQ(orx_natural_compare_ignoring_case("B", "a"), 1);
    EXPECT_EQ(orx_natural_compare_ignoring_case("ReadMe 2", "README2"), 0);
    EXPECT_EQ(strnatcmp0("a", "B", 7), -1);
}

TEST(NaturalCompare, BytesFromEightyUpComeBeforeAllOthers) {
    expect_before("\xC3\xA4", "1");
    expect_before("\xC3\xA4", "A");
    expect_before("\x80", "\xFF");
    expect_before("\xFF", "\x01");
}

TEST(NaturalCompare, EqualTextsAreEqualAndAPrefixComesFirst) {
    EXPECT_EQ(orx_natural_compare("", ""), 0);
    EXPECT_EQ(orx_natural_compare("plugin", "plugin"), 0);
    expect_before("plug", "plugin");
    expect_before("", "a");
    expect_before("a1", "a1b");
}

TEST(NaturalCompare, IsAStrictWeakOrderSoThatAnyStableSortMayUseIt) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string alphabet = "0019 aAb.\x80\xFF";
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> names;
        for (int i = 0; i < 24; ++i) {
            names.push_back(random_name(random, alphabet, 5));
        }
        for (const std::string& a : names) {
            for (const std::string& b : names) {
                const int ab = orx_natural_compare(a.c_str(), b.c_str());
                ASSERT_EQ(ab, -orx_natural_compare(b.c_str(), a.c_str())) << a << " | " << b;
                for (const std::string& c : names) {
                    const int bc = orx_natural_compare(b.c_str(), c.c_str());
                    const int ac = orx_natural_compare(a.c_str(), c.c_str());
                    if (ab == bc) {
                        ASSERT_EQ(ac, ab) << a << " | " << b << " | " << c;
                    }
                }
            }
        }
    }
}

TEST(NaturalKey, ComparesAsTheTextsDo) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string alphabet = "00199 \taA.\x01\x7F\x80\xFF";
    for (int round = 0; round < 200000; ++round) {
        const std::string a = random_name(random, alphabet, 8);
        const std::string b = random_name(random, alphabet, 8);
        const auto key_of = [](const std::string& text) {
            std::vector<unsigned char> key(orx_natural_key_room(text.size()));
            key.resize(orx_natural_key(text.c_str(), key.data()));
            return key;
        };
        const auto key_a = key_of(a);
        const auto key_b = key_of(b);
        const int order = memcmp(key_a.data(), key_b.data(), std::min(key_a.size(), key_b.size()));
        const int sign = order < 0 ? -1 : (order > 0 ? 1 : 0);
        ASSERT_EQ(sign, orx_natural_compare(a.c_str(), b.c_str())) << a << " | " << b;
    }
}

TEST(NaturalCompareDeathTest, ANullTextEndsTheProcessWithAnAssertion) {
    const char* message = "\\./source/gui/ORX/orx_helpers/ORX_nat_string_compare:86: "
                          "int strnatcmp0\\(const char\\*, const char\\*, int\\): "
                          "Assertion `a && b' failed\\.";
    EXPECT_EXIT((void)strnatcmp0(nullptr, "a", 0), testing::KilledBySignal(SIGABRT), message);
    EXPECT_EXIT((void)orx_natural_compare("a", nullptr), testing::KilledBySignal(SIGABRT), message);
    EXPECT_EXIT((void)orx_natural_compare_ignoring_case(nullptr, nullptr),
                testing::KilledBySignal(SIGABRT), message);
}

} // namespace
