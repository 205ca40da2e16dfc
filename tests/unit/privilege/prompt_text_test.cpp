// What the recogniser makes of the texts that sudo and su print, however they are cut into pieces.

#include "privilege/prompt_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

PromptText after(const std::string& text) {
    PromptText state = prompt_text_start();
    prompt_text_feed(&state, text.data(), text.size());
    return state;
}

// After a prompt was answered.
PromptText after_answer(const std::string& text) {
    PromptText state = after("password");
    prompt_text_answered(&state);
    prompt_text_feed(&state, text.data(), text.size());
    return state;
}

using Findings = std::tuple<bool, bool, bool, bool, bool, bool, bool>;

Findings findings(const PromptText& state) {
    return {state.prompt_is_open, state.prompt_mentioned, state.complained, state.line_is_open,
            state.answer_line,    state.sudo_rs_line,     state.failed};
}

TEST(PromptText, KnowsThePromptsOfEveryTool) {
    for (const char* prompt : {"password", "Password: ", "[sudo: password] Password: ",
                               "[su: authenticate] Password: ", "[sudo] password for anna: ",
                               "PASSWORD:", "Place your finger on the reader\r\nPassword: "}) {
        EXPECT_TRUE(after(prompt).prompt_is_open) << prompt;
    }
}

TEST(PromptText, OtherTextIsNoPrompt) {
    for (const char* text : {"", "\r\n", "Place your finger on the reader\r\n", "pass word",
                             "passwor", "Verification code: ", "pass\r\nword"}) {
        const PromptText state = after(text);
        EXPECT_FALSE(state.prompt_is_open) << text;
        EXPECT_FALSE(state.prompt_mentioned) << text;
    }
}

TEST(PromptText, AnAnswerIsTypedBlindWhereNoPromptIsToBeSeen) {
    for (const auto& [text, blind] : {std::pair{"", true},
                                      {"Place your finger on the reader\r\n", true},
                                      {"Password: ", false}}) {
        PromptText state = after(text);
        prompt_text_answered(&state);
        EXPECT_EQ(state.answered_blind, blind) << text;
    }
}

TEST(PromptText, ALectureMentionsThePasswordWithoutAskingForIt) {
    const PromptText state =
        after("For security reasons, the password you type will not be visible.\r\n\r\n");
    EXPECT_FALSE(state.prompt_is_open);
    EXPECT_TRUE(state.prompt_mentioned);
}

TEST(PromptText, APromptIsFoundBehindALectureOfAnyLength) {
    const std::string lecture(10'000, 'x');
    EXPECT_TRUE(after(lecture + "\r\n" + lecture + "\r\npassword").prompt_is_open);
    EXPECT_TRUE(after(lecture + "password").prompt_is_open);
}

TEST(PromptText, ABrokenOffMatchStartsOverWithTheSameByte) {
    EXPECT_TRUE(after("ppassword").prompt_is_open);
    EXPECT_TRUE(after("passpassword").prompt_is_open);
    EXPECT_TRUE(after_answer("\nsosorry, ttry again").complained);
    EXPECT_TRUE(after_answer("\nsorry, try atry again").complained);
}

TEST(PromptText, TheComplaintNeedsBothHalvesNearEachOther) {
    EXPECT_TRUE(after_answer("\r\nSorry, try again.\r\n").complained);
    EXPECT_TRUE(after_answer("\r\nSORRY!\r\nPlease TRY AGAIN\r\n").complained);
    EXPECT_TRUE(after_answer("\r\nTry again, sorry.\r\n").complained);
    EXPECT_TRUE(after_answer("Sorry, try again.").complained) << "in the line of the answer";
    EXPECT_FALSE(after_answer("\r\nSorry.\r\n").complained);
    EXPECT_FALSE(after_answer("\r\nsudo: Authentication failed, try again.\r\n").complained);
    EXPECT_FALSE(after_answer("\r\nsorry" + std::string(255, '.') + "try again").complained);
}

TEST(PromptText, SudoRsAndItsSuSayThatTheyFailed) {
    EXPECT_TRUE(after_answer("\r\nsudo: Authentication failed, try again.\r\n").failed);
    EXPECT_TRUE(after_answer("***\x1b[0K\r\nsu: Authentication failed, try again.\r\n").failed);
    EXPECT_TRUE(after_answer(":: authentication failed, TRY AGAIN").failed);
    EXPECT_FALSE(after_answer("\r\nsu: Authentication failure\r\n").failed);
    EXPECT_FALSE(after_answer("\r\nAuthentication failed, try again.\r\n").failed);
    EXPECT_FALSE(after_answer("\r\nSorry, try again.\r\n").failed);
}

TEST(PromptText, AQuestionOfSudoRsIsKnownByHowItsLineBegins) {
    for (const char* text :
         {"[sudo: authenticate] Password: ", "[sudo: authenticate] Mot de passe : ", "[sudo: ",
          "A lecture\r\n[sudo: authenticate] Password: "}) {
        EXPECT_TRUE(after(text).sudo_rs_line) << text;
    }
    for (const char* text :
         {"[sudo] password for anna: ", "[sudo:", "[sudo:]", " [sudo: authenticate] Password: ",
          "[SUDO: authenticate] Password: ", "see [sudo: authenticate] Password: ",
          "[sudo: authenticate] Password: \r\n", "[sudo: authenticate] Password: \r\n.",
          "[[sudo: authenticate] Password: ", "[su: authenticate] Password: ",
          "[sudo: authenticate] Password: [sudo] password for anna: "}) {
        EXPECT_FALSE(after(text).sudo_rs_line) << text;
    }
    EXPECT_FALSE(after_answer("[sudo: authenticate] Password: ").sudo_rs_line)
        << "in the line of the answer";
    EXPECT_TRUE(after_answer("\r\n[sudo: authenticate] Password: ").sudo_rs_line);
}

TEST(PromptText, AnAnswerMakesTheOldPromptForgotten) {
    const PromptText state = after_answer("");
    EXPECT_FALSE(state.prompt_is_open);
    EXPECT_FALSE(state.prompt_mentioned);
    EXPECT_TRUE(state.line_is_open) << "the child has not ended the prompt's line";
    EXPECT_TRUE(state.answer_line);
}

TEST(PromptText, ASecondPromptIsSeenBehindTheFeedbackOfTheFirst) {
    for (const char* text :
         {"\r\nSorry, try again.\r\npassword", "\r\nHast du einen im Tee?\r\npassword",
          "******\b\b\b\b\b\b\x1b[0K\r\nsudo: Authentication failed, try again.\r\n"
          "[sudo: password] Password: ",
          "\r\nPassword: "}) {
        const PromptText state = after_answer(text);
        EXPECT_TRUE(state.prompt_is_open) << text;
        EXPECT_FALSE(state.answer_line) << text;
    }
}

TEST(PromptText, APromptInTheLineOfTheAnswerIsMarkedAsSuch) {
    const PromptText state = after_answer("Password: ");
    EXPECT_TRUE(state.prompt_is_open);
    EXPECT_TRUE(state.answer_line);
}

TEST(PromptText, AnEchoedPasswordIsForgottenWithItsLine) {
    const PromptText state = after_answer("my password^@\r\n");
    EXPECT_FALSE(state.prompt_is_open);
    EXPECT_FALSE(state.line_is_open);
}

TEST(PromptText, OnlyVisibleBytesOpenALine) {
    EXPECT_FALSE(after("\r\n \t\r").line_is_open);
    EXPECT_TRUE(after("\r\nx").line_is_open);
    EXPECT_TRUE(after("\r\n\xc3\xa4").line_is_open);
    EXPECT_FALSE(after("x\n").line_is_open);
}

TEST(PromptText, ZeroBytesAreOrdinaryBytes) {
    EXPECT_TRUE(after(std::string("\0\0password", 10)).prompt_is_open);
    EXPECT_FALSE(after(std::string("pass\0word", 9)).prompt_is_open);
}

const std::vector<std::string>& pieces() {
    static const std::vector<std::string> texts = {"password",
                                                   "Password: ",
                                                   "PASS",
                                                   "word",
                                                   "p",
                                                   "\r\n",
                                                   "\n",
                                                   "Sorry",
                                                   "sorry,",
                                                   " try ",
                                                   "again",
                                                   "try again.",
                                                   "t",
                                                   "Sor",
                                                   "ry",
                                                   "ö",
                                                   " ",
                                                   "***\b\b\b",
                                                   "\x1b[0K",
                                                   std::string(1, '\0'),
                                                   std::string(200, '.'),
                                                   "Authentication failed",
                                                   ": Authentication failed, ",
                                                   "[sudo: ",
                                                   "[sudo",
                                                   "[sudo] ",
                                                   ": "};
    return texts;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

// The same questions, asked of the whole text at once.
bool complaint_in(const std::string& text) {
    const std::string plain = lower(text);
    const std::string sorry = "sorry";
    const std::string again = "try again";
    for (auto s = plain.find(sorry); s != std::string::npos; s = plain.find(sorry, s + 1)) {
        for (auto t = plain.find(again); t != std::string::npos; t = plain.find(again, t + 1)) {
            const auto s_end = s + sorry.size();
            const auto t_end = t + again.size();
            if (std::max(s_end, t_end) - std::min(s_end, t_end) < reading_length) {
                return true;
            }
        }
    }
    return false;
}

const std::string failed_complaint = ": authentication failed, try again";

bool asks_as_sudo_rs(const std::string& text, bool answered) {
    const auto end = text.rfind('\n');
    const std::string line = end == std::string::npos ? text : text.substr(end + 1);
    // The answer stands in a line that began before.
    return (!answered || end != std::string::npos) && line.starts_with("[sudo: ") &&
           line.find("[sudo] ") == std::string::npos;
}

TEST(PromptText, RecognisesTheSameAtEverySplitOfRandomTexts) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t count = below(14); count > 0; --count) {
            text += pieces()[below(pieces().size())];
        }
        const bool answered = below(2) == 0;
        PromptText split = prompt_text_start();
        if (answered) {
            prompt_text_answered(&split);
        }
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t count = std::min(text.size() - at, 1 + below(20));
            prompt_text_feed(&split, text.data() + at, count);
            at += count;
        }
        const std::string plain = lower(text);
        const auto line_start = plain.rfind('\n');
        const std::string last_line =
            line_start == std::string::npos ? plain : plain.substr(line_start + 1);
        const bool visible = std::any_of(last_line.begin(), last_line.end(), [](char c) {
            return static_cast<unsigned char>(c) > ' ';
        });
        const Findings expected = {last_line.find("password") != std::string::npos,
                                   plain.find("password") != std::string::npos,
                                   complaint_in(text),
                                   visible,
                                   answered && line_start == std::string::npos,
                                   asks_as_sudo_rs(text, answered),
                                   plain.find(failed_complaint) != std::string::npos};
        ASSERT_EQ(findings(split), expected) << "round " << round << ", text: " << text;
    }
}

TEST(PromptText, EveryCutInTwoGivesTheSame) {
    const std::string text = "\r\nSorry, try again.\r\n[sudo: password] Password: ";
    const Findings whole = findings(after_answer(text));
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        PromptText state = after_answer(text.substr(0, cut));
        prompt_text_feed(&state, text.data() + cut, text.size() - cut);
        EXPECT_EQ(findings(state), whole) << "cut at " << cut;
    }
}

} // namespace
