// prompt_text.cpp: matching words in a stream.
#include "privilege/prompt_text.h"

namespace {

constexpr char password_word[] = "password";
constexpr char sorry_word[] = "sorry";
constexpr char try_again_word[] = "try again";
constexpr char failed_word[] = ": authentication failed, try again";
constexpr char sudo_word[] = "[sudo] ";
constexpr char sudo_rs_beginning[] = "[sudo: ";
constexpr std::uint8_t begins_otherwise = 255;

// tolower would follow the locale; the child speaks plain ASCII.
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// One step of a match; true when c completes the word. The first letter of each word occurs
// nowhere else in it, so a match that breaks off can only start over with c itself.
bool match(const char* word, std::uint8_t* matched, char c) {
    if (lower(c) != word[*matched]) {
        *matched = 0;
    }
    if (lower(c) == word[*matched]) {
        ++*matched;
    }
    if (word[*matched] != '\0') {
        return false;
    }
    *matched = 0;
    return true;
}

// The line so far is the first sudo_rs_matched bytes of the beginning, or begins otherwise.
void feed_beginning(PromptText* text, char c) {
    std::uint8_t* matched = &text->sudo_rs_matched;
    if (*matched < sizeof sudo_rs_beginning - 1) {
        const bool goes_on = c == sudo_rs_beginning[*matched];
        *matched = goes_on ? static_cast<std::uint8_t>(*matched + 1) : begins_otherwise;
        text->sudo_rs_line = *matched == sizeof sudo_rs_beginning - 1;
    }
    if (match(sudo_word, &text->sudo_matched, c)) {
        text->sudo_rs_line = false;
    }
}

void feed_complaint(PromptText* text, char c) {
    if (match(failed_word, &text->failed_matched, c)) {
        text->failed = true;
    }
    if (match(sorry_word, &text->sorry_matched, c)) {
        text->sorry_end = text->length;
    }
    if (match(try_again_word, &text->try_again_matched, c)) {
        text->try_again_end = text->length;
    }
    if (text->sorry_end != 0 && text->try_again_end != 0) {
        const std::uint64_t apart = text->sorry_end > text->try_again_end
                                        ? text->sorry_end - text->try_again_end
                                        : text->try_again_end - text->sorry_end;
        text->complained = text->complained || apart < reading_length;
    }
}

void feed_byte(PromptText* text, char c) {
    ++text->length;
    if (c == '\n') {
        text->answer_line = false;
        text->line_is_open = false;
        text->prompt_is_open = false;
        text->sudo_rs_line = false;
        text->sudo_rs_matched = 0;
        text->sudo_matched = 0;
    } else {
        text->line_is_open = text->line_is_open || static_cast<unsigned char>(c) > ' ';
        feed_beginning(text, c);
    }
    if (match(password_word, &text->password_matched, c)) {
        text->prompt_is_open = true;
        text->prompt_mentioned = true;
    }
    feed_complaint(text, c);
}

} // namespace

PromptText prompt_text_start() {
    return PromptText{};
}

void prompt_text_feed(PromptText* text, const char* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        feed_byte(text, bytes[i]);
    }
}

void prompt_text_answered(PromptText* text) {
    const bool line_is_open = text->line_is_open;
    *text = PromptText{};
    text->answer_line = true;
    text->answered_blind = !line_is_open;
    text->line_is_open = line_is_open;
    text->sudo_rs_matched = begins_otherwise;
}
