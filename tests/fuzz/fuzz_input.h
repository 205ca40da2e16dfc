// The bytes of one fuzz run, taken apart piece by piece, and what a run demands.
//
// A run is a call of LLVMFuzzerTestOneInput, which each harness defines. Texts in the bytes end at
// a zero byte, so that a corpus can be read and written by hand. Nothing here fails: where bytes
// run out, zeros and empty texts follow.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

struct Input {
    const std::uint8_t* next;
    std::size_t left; // bytes
};

[[nodiscard]] bool is_empty(const Input& input);
[[nodiscard]] std::uint8_t take_byte(Input& input);
// 0 to limit - 1.
[[nodiscard]] std::uint32_t take_below(Input& input, std::uint32_t limit);
// Four bytes, the highest first.
[[nodiscard]] std::uint32_t take_word(Input& input);
// Up to the next zero byte, which is taken too.
[[nodiscard]] std::string take_text(Input& input);

// A zero-terminated copy with nothing behind it, so that the address sanitizer sees a read past
// the end.
[[nodiscard]] std::unique_ptr<char[]> exact_copy(const std::string& text);

// Whether a text is UTF-8 that an encoder would write: no stray, missing or surplus bytes. Values
// are not looked at.
[[nodiscard]] bool has_whole_sequences(const std::string& text);

// Ends the process, which is how a run reports a finding, when a demand is not met.
void require(bool met, const char* demand);

} // namespace fuzz
