// Prompt recognition: any output, in pieces of any length, means what a reading of the whole text
// says.

#include "fuzz/fuzz_input.h"

#include "privilege/prompt_text.h"

#include <algorithm>
#include <vector>

namespace {

using fuzz::require;

struct Meaning {
    bool answer_line;
    bool line_is_open;
    bool prompt_is_open;
    bool prompt_mentioned;
    bool complained;
    friend bool operator==(const Meaning&, const Meaning&) = default;
};

Meaning meaning_of(const PromptText& text) {
    return {text.answer_line, text.line_is_open, text.prompt_is_open, text.prompt_mentioned,
            text.complained};
}

bool same_state(const PromptText& a, const PromptText& b) {
    return meaning_of(a) == meaning_of(b) && a.length == b.length && a.sorry_end == b.sorry_end &&
           a.try_again_end == b.try_again_end && a.password_matched == b.password_matched &&
           a.sorry_matched == b.sorry_matched && a.try_again_matched == b.try_again_matched;
}

std::string lower_case(std::string text) {
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return text;
}

std::vector<std::size_t> ends_of(const std::string& text, const std::string& word) {
    std::vector<std::size_t> ends;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        ends.push_back(at + word.size());
    }
    return ends;
}

bool is_complaint(const std::string& text) {
    for (const std::size_t sorry : ends_of(text, "sorry")) {
        for (const std::size_t again : ends_of(text, "try again")) {
            if (std::max(sorry, again) - std::min(sorry, again) < reading_length) {
                return true;
            }
        }
    }
    return false;
}

bool is_visible(char c) {
    return static_cast<unsigned char>(c) > ' ';
}

// What comes before the answer only tells whether the line that it is typed into holds anything.
// A word that the line was in the middle of when its end came is not a prompt of the new line.
Meaning read_whole(const std::string& before, const std::string& text, bool answered) {
    const std::string lower = lower_case(text);
    const std::size_t feed = lower.rfind('\n');
    const bool one_line = feed == std::string::npos;
    const std::string line = one_line ? lower : lower.substr(feed + 1);
    const std::string earlier = before.substr(before.rfind('\n') + 1);
    Meaning meaning{};
    meaning.answer_line = answered && one_line;
    meaning.line_is_open = std::any_of(line.begin(), line.end(), is_visible) ||
                           (one_line && std::any_of(earlier.begin(), earlier.end(), is_visible));
    meaning.prompt_is_open = line.find("password") != std::string::npos;
    meaning.prompt_mentioned = lower.find("password") != std::string::npos;
    meaning.complained = is_complaint(lower);
    return meaning;
}

void feed(PromptText& recogniser, const std::string& text) {
    const auto copy = fuzz::exact_copy(text);
    prompt_text_feed(&recogniser, copy.get(), text.size());
}

PromptText start(const std::string& before, bool answered) {
    PromptText recogniser = prompt_text_start();
    if (answered) {
        feed(recogniser, before);
        prompt_text_answered(&recogniser);
    }
    return recogniser;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input{data, size};
    const bool answered = fuzz::take_byte(input) % 2 == 1;
    const std::size_t piece_length = 1 + fuzz::take_byte(input);
    const std::string before = answered ? fuzz::take_text(input) : "";
    // Output may hold zero bytes.
    const std::string text(reinterpret_cast<const char*>(input.next), input.left);
    const Meaning expected = read_whole(before, text, answered);

    PromptText whole = start(before, answered);
    feed(whole, text);
    require(meaning_of(whole) == expected, "fed at once, the text means what it says");
    require(whole.length == text.size(), "every byte is counted");

    PromptText pieces = start(before, answered);
    const std::size_t moment = text.size() / 12 + 1;
    std::size_t next_moment = moment;
    for (std::size_t at = 0; at < text.size(); at += piece_length) {
        const std::string piece = text.substr(at, piece_length);
        feed(pieces, piece);
        const std::size_t fed = at + piece.size();
        if (fed >= next_moment) {
            require(meaning_of(pieces) == read_whole(before, text.substr(0, fed), answered),
                    "at each moment, the text so far means what it says");
            next_moment = fed + moment;
        }
    }
    require(same_state(pieces, whole), "pieces of one length make no difference");

    // Every place in a short text, some forty in a long one.
    const std::size_t step = text.size() / 64 + 1;
    PromptText first = start(before, answered);
    for (std::size_t at = 0; at < text.size(); at += step) {
        PromptText second = first;
        feed(second, text.substr(at));
        require(same_state(second, whole), "it makes no difference where the text is split");
        feed(first, text.substr(at, step));
    }
    return 0;
}
