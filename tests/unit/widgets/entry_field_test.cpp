// entry_field_test.cpp: keys and texts in the one-line fields, and how much of them enters.

#include "gui/ORX/widgets/password_field.h"
#include "gui/ORX/widgets/text_field.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <random>
#include <string>

namespace {

constexpr unsigned long key_return = 0xFF0D;
constexpr unsigned long key_backspace = 0xFF08;
constexpr unsigned long key_delete = 0xFFFF;
constexpr unsigned long key_escape = 0xFF1B;
constexpr unsigned long key_tab = 0xFF09;
constexpr unsigned long key_shift = 0xFFE1;
constexpr unsigned long key_a = 0x61;

class PasswordFieldKeys : public testing::Test {
protected:
    PasswordFieldKeys() {
        password_field_init(&field, nullptr, font.text());
        password_field_set_focused(&field, true);
    }
    ~PasswordFieldKeys() override { password_field_destroy(&field); }

    int type(const char* text) { return password_field_key(&field, key_a, text); }
    int backspace() { return password_field_key(&field, key_backspace, "\b"); }
    std::string text() { return password_field_get_text(&field); }
    // Nothing behind the text: what has left the field is wiped.
    bool wiped_behind_text() {
        return std::all_of(field.content + strlen(field.content), std::end(field.content),
                           [](char c) { return c == '\0'; });
    }

    Font font;
    PasswordField field{};
};

TEST_F(PasswordFieldKeys, StartsEmptyUnfocusedAndWithItsColours) {
    PasswordField fresh;
    memset(static_cast<void*>(&fresh), 0x55, sizeof fresh);
    password_field_init(&fresh, nullptr, font.text());
    EXPECT_STREQ(password_field_get_text(&fresh), "");
    EXPECT_FALSE(password_field_get_focused(&fresh));
    EXPECT_FALSE(password_field_get_hidden(&fresh));
    EXPECT_FALSE(password_field_get_dirty(&fresh));
    EXPECT_EQ(fresh.scale, 1.0F);
    EXPECT_EQ(fresh.x + fresh.y + fresh.w + fresh.h, 0);
    EXPECT_EQ(fresh.caret.r, 255);
    EXPECT_EQ(fresh.spare.g, 255);
    EXPECT_EQ(fresh.background.b, 0);
    EXPECT_EQ(fresh.border.r, 127);
}

TEST_F(PasswordFieldKeys, AppendWhatTheyMean) {
    EXPECT_EQ(type("a"), 0);
    EXPECT_EQ(type("\xC3\xA4"), 0);
    EXPECT_EQ(type("bcd"), 0); // an input method may give several at once
    EXPECT_EQ(text(), "a\xC3\xA4"
                      "bcd");
    EXPECT_FALSE(password_field_get_dirty(&field));
}

TEST_F(PasswordFieldKeys, WithoutTextAppendNothing) {
    type("a");
    EXPECT_EQ(password_field_key(&field, key_shift, ""), 0);
    EXPECT_EQ(password_field_key(&field, key_shift, nullptr), 0);
    EXPECT_EQ(password_field_key(&field, key_escape, "\x1B"), 0);
    EXPECT_EQ(password_field_key(&field, key_tab, "\t"), 0);
    EXPECT_EQ(type("\x01\x7F\n\r"), 0);
    EXPECT_EQ(text(), "a");
}

TEST_F(PasswordFieldKeys, ReturnConfirmsAndChangesNothing) {
    EXPECT_EQ(password_field_key(&field, key_return, "\r"), 1); // on an empty field too
    type("abc");
    EXPECT_EQ(password_field_key(&field, key_return, "\r"), 1);
    EXPECT_EQ(text(), "abc");
}

TEST_F(PasswordFieldKeys, BackSpaceAndDeleteTakeAWholeCharacter) {
    password_field_set_text(&field, "a\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(backspace(), 0);
    EXPECT_EQ(text(), "a\xC3\xA4");
    EXPECT_EQ(password_field_key(&field, key_delete, "\x7F"), 0);
    EXPECT_EQ(text(), "a");
    backspace();
    EXPECT_EQ(text(), "");
    EXPECT_EQ(backspace(), 0);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(wiped_behind_text());
}

TEST_F(PasswordFieldKeys, TakeOneByteWhereCharactersAreBytes) {
    Font latin(false);
    PasswordField bytes;
    password_field_init(&bytes, nullptr, latin.text());
    password_field_set_focused(&bytes, true);
    password_field_set_text(&bytes, "a\xC3\xA4");
    EXPECT_EQ(password_field_key(&bytes, key_backspace, "\b"), 0);
    EXPECT_STREQ(password_field_get_text(&bytes), "a\xC3");
}

TEST_F(PasswordFieldKeys, AreIgnoredWhileHiddenOrWithoutFocus) {
    type("a");
    password_field_set_hidden(&field, true);
    EXPECT_EQ(type("b"), 0);
    EXPECT_EQ(password_field_key(&field, key_return, "\r"), 0);
    EXPECT_EQ(backspace(), 0);
    password_field_set_hidden(&field, false);
    password_field_set_focused(&field, false);
    EXPECT_EQ(type("b"), 0);
    EXPECT_EQ(password_field_key(&field, key_return, "\r"), 0);
    EXPECT_EQ(backspace(), 0);
    EXPECT_EQ(text(), "a");
}

TEST_F(PasswordFieldKeys, HeldDownForEverFillTheFieldAndNoMore) {
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(type("x"), 0);
    }
    EXPECT_EQ(text(), std::string(1023, 'x'));
    EXPECT_EQ(password_field_key(&field, key_return, "\r"), 1);
}

TEST_F(PasswordFieldKeys, RefuseACharacterThatDoesNotFitWhole) {
    password_field_set_text(&field, std::string(1022, 'x').c_str());
    type("\xC3\xA4");
    EXPECT_EQ(text(), std::string(1022, 'x'));
    type("y\xC3\xA4");
    EXPECT_EQ(text(), std::string(1022, 'x') + "y");
}

TEST_F(PasswordFieldKeys, BackSpaceLeavesAFullFieldAloneAndPastingGetsOutOfIt) {
    const std::string full(1023, 'x');
    password_field_set_text(&field, full.c_str());
    backspace();
    EXPECT_EQ(text(), full);
    password_field_set_text(&field, std::string(1022, 'y').c_str());
    backspace();
    EXPECT_EQ(text(), std::string(1021, 'y'));
    EXPECT_TRUE(wiped_behind_text());
}

TEST_F(PasswordFieldKeys, RandomOnesKeepWholeCharactersAndAnEnd) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const char* const characters[] = {"a", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
    std::string expected;
    for (int i = 0; i < 20000; ++i) {
        if (random() % 8 == 0) {
            backspace();
            if (!expected.empty() && expected.size() < 1023) {
                do {
                    const bool continuation = (expected.back() & '\xC0') == '\x80';
                    expected.pop_back();
                    if (!continuation) {
                        break;
                    }
                } while (!expected.empty());
            }
        } else {
            const char* character = characters[random() % 4];
            type(character);
            if (expected.size() + strlen(character) <= 1023) {
                expected += character;
            }
        }
        ASSERT_EQ(text(), expected) << "step " << i;
    }
}

TEST_F(PasswordFieldKeys, PastedTextReplacesTheWhole) {
    type("old");
    password_field_set_text(&field, "new");
    EXPECT_EQ(text(), "new");
    password_field_set_text(&field, nullptr);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(wiped_behind_text());
}

TEST_F(PasswordFieldKeys, PastedTextLosesControlCharacters) {
    password_field_set_text(&field, "pass\tword\r\n\x7F\x1B[0m");
    EXPECT_EQ(text(), "password[0m");
}

TEST_F(PasswordFieldKeys, PastedTextOfAnyLengthIsCutBetweenCharacters) {
    password_field_set_text(&field, std::string(1023, 'x').c_str());
    EXPECT_EQ(text().size(), 1023U);
    password_field_set_text(&field, std::string(1024, 'x').c_str());
    EXPECT_EQ(text().size(), 1023U);
    password_field_set_text(&field, std::string(1 << 20, 'x').c_str());
    EXPECT_EQ(text().size(), 1023U);
    for (int lead = 1019; lead <= 1023; ++lead) {
        const std::string plain(static_cast<std::size_t>(lead), 'x');
        for (const char* character : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
            password_field_set_text(&field, (plain + character + "tail").c_str());
            const std::string whole = plain + character;
            const std::string room = (whole + "tail").substr(0, 1023);
            EXPECT_EQ(text(), whole.size() <= 1023 ? room : plain) << lead;
        }
    }
}

TEST_F(PasswordFieldKeys, PastedTextMayBeMalformed) {
    std::string bytes;
    for (int i = 0; i < 3000; ++i) {
        bytes += '\x80';
    }
    password_field_set_text(&field, bytes.c_str());
    EXPECT_LE(text().size(), 1023U);
    password_field_set_text(&field, "a\xF0\x9F");
    EXPECT_EQ(text(), "a\xF0\x9F");
    password_field_set_text(&field, "\xFF\xC3");
    EXPECT_EQ(text(), "\xFF\xC3");
}

TEST_F(PasswordFieldKeys, PastedTextMayBeTheFieldsOwn) {
    password_field_set_text(&field, "own text");
    password_field_set_text(&field, field.content + 4);
    EXPECT_EQ(text(), "text");
    EXPECT_TRUE(wiped_behind_text());
}

TEST_F(PasswordFieldKeys, NothingOfASecretStaysBehind) {
    const std::string secret(900, 's');
    password_field_set_text(&field, secret.c_str());
    password_field_set_text(&field, "x");
    EXPECT_TRUE(wiped_behind_text());
    password_field_set_text(&field, secret.c_str());
    password_field_clear(&field);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(wiped_behind_text());
    password_field_set_text(&field, secret.c_str());
    password_field_destroy(&field);
    EXPECT_TRUE(wiped_behind_text());
}

TEST(TextFieldKeys, ActAsInThePasswordField) {
    Font font;
    TextField field;
    text_field_init(&field, nullptr, font.text());
    EXPECT_EQ(field.focused_text.r, 255);
    EXPECT_EQ(text_field_key(&field, key_a, "a"), 0);
    EXPECT_STREQ(text_field_get_text(&field), "") << "no focus, no keys";
    text_field_set_focused(&field, true);
    EXPECT_TRUE(text_field_get_focused(&field));
    EXPECT_EQ(text_field_key(&field, key_a, "a"), 0);
    EXPECT_EQ(text_field_key(&field, key_a, "\xC3\xA4"), 0);
    EXPECT_EQ(text_field_key(&field, key_escape, "\x1B"), 0);
    EXPECT_STREQ(text_field_get_text(&field), "a\xC3\xA4");
    EXPECT_EQ(text_field_key(&field, key_return, "\r"), 1);
    EXPECT_EQ(text_field_key(&field, key_backspace, "\b"), 0);
    EXPECT_STREQ(text_field_get_text(&field), "a");
    text_field_set_text(&field, std::string(2000, 'x').c_str());
    EXPECT_EQ(strlen(text_field_get_text(&field)), 1023U);
    text_field_clear(&field);
    EXPECT_STREQ(text_field_get_text(&field), "");
    text_field_destroy(&field);
}

} // namespace
