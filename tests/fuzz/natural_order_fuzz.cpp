// Natural order: the laws of a strict weak order on any three names, agreement with a comparison of
// whole tokens, and what adding to the end of a name does.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using fuzz::require;

bool is_blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

int sign(int value) {
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

signed char upper(char c) {
    return static_cast<signed char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

std::string take_number(const std::string& text, std::size_t& at) {
    const std::size_t start = at;
    while (at < text.size() && is_digit(text[at])) {
        ++at;
    }
    return text.substr(start, at - start);
}

int compare_numbers(const std::string& a, const std::string& b) {
    const bool fractions = a.front() == '0' || b.front() == '0';
    if (!fractions && a.size() != b.size()) {
        return a.size() < b.size() ? -1 : 1;
    }
    return sign(a.compare(b));
}

// Names as tokens: numbers, single characters, and the end, which is a zero.
int compare_tokens(const std::string& a, const std::string& b, bool fold) {
    std::size_t i = 0;
    std::size_t j = 0;
    for (;;) {
        while (i < a.size() && is_blank(a[i])) {
            ++i;
        }
        while (j < b.size() && is_blank(b[j])) {
            ++j;
        }
        if (i < a.size() && j < b.size() && is_digit(a[i]) && is_digit(b[j])) {
            const std::string number_a = take_number(a, i);
            const std::string number_b = take_number(b, j);
            if (const int result = compare_numbers(number_a, number_b); result != 0) {
                return result;
            }
            continue;
        }
        const signed char ca = i < a.size() ? (fold ? upper(a[i]) : static_cast<signed char>(a[i]))
                                            : static_cast<signed char>(0);
        const signed char cb = j < b.size() ? (fold ? upper(b[j]) : static_cast<signed char>(b[j]))
                                            : static_cast<signed char>(0);
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
        if (i >= a.size() && j >= b.size()) {
            return 0;
        }
        ++i;
        ++j;
    }
}

int compare(const std::string& a, const std::string& b, bool fold) {
    const auto copy_a = fuzz::exact_copy(a);
    const auto copy_b = fuzz::exact_copy(b);
    const int result = strnatcmp0(copy_a.get(), copy_b.get(), fold ? 1 : 0);
    const int entry = fold ? orx_natural_compare_ignoring_case(copy_a.get(), copy_b.get())
                           : orx_natural_compare(copy_a.get(), copy_b.get());
    require(result == entry, "both ways of calling agree");
    require(result >= -1 && result <= 1, "the result is a sign");
    require(result == compare_tokens(a, b, fold), "tokens decide");
    return result;
}

void check_pair(const std::string& a, const std::string& b, bool fold) {
    require(compare(a, b, fold) == -compare(b, a, fold), "the order is antisymmetric");
    require(compare(a, a, fold) == 0, "a name equals itself");
}

void check_triple(const std::string& a, const std::string& b, const std::string& c, bool fold) {
    const int ab = compare(a, b, fold);
    const int bc = compare(b, c, fold);
    const int ac = compare(a, c, fold);
    require(!(ab < 0 && bc < 0) || ac < 0, "before is transitive");
    require(!(ab == 0 && bc == 0) || ac == 0, "equal is transitive");
    require(ab != 0 || ac == bc, "equal names stand in one place");
}

// Blanks at the end count for nothing; an ASCII rest sorts the longer name behind, another before.
void check_longer(const std::string& name, const std::string& rest, bool fold) {
    const auto* first = std::find_if_not(rest.data(), rest.data() + rest.size(), is_blank);
    int expected = 0;
    if (first != rest.data() + rest.size()) {
        expected = static_cast<signed char>(*first) < 0 ? 1 : -1;
    }
    require(compare(name, name + rest, fold) == expected, "a name sorts before a longer one");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input{data, size};
    std::array<std::string, 3> names{};
    for (std::string& name : names) {
        name = fuzz::take_text(input);
    }
    for (const bool fold : {false, true}) {
        check_pair(names[0], names[1], fold);
        check_longer(names[0], names[1], fold);
        std::array<std::size_t, 3> order{0, 1, 2};
        do {
            check_triple(names[order[0]], names[order[1]], names[order[2]], fold);
        } while (std::next_permutation(order.begin(), order.end()));
    }
    return 0;
}
