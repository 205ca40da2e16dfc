// ORX_nat_string_compare.cpp: natural order, one pair of bytes at a time.

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"

#include <cctype>

// The C library's own report of a failed assertion, which its header hides in release builds.
extern "C" [[noreturn]] void __assert_fail(const char* assertion, const char* file,
                                           unsigned int line, const char* function) noexcept;

namespace {

// Bytes are signed: the C library's tables take -128 to 255, and the order wants 0x80 and up to
// come first.
bool is_space(signed char c) {
    return std::isspace(c) != 0;
}

bool is_digit(signed char c) {
    return std::isdigit(c) != 0;
}

int sign_of_difference(signed char a, signed char b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

// Numbers without a leading zero: the longer run of digits is the larger number; of two equally
// long ones the first difference decides.
int compare_right_aligned(const signed char* a, const signed char* b) {
    int bias = 0;
    for (;; ++a, ++b) {
        if (!is_digit(*a) && !is_digit(*b)) {
            return bias;
        }
        if (!is_digit(*a)) {
            return -1;
        }
        if (!is_digit(*b)) {
            return 1;
        }
        if (bias == 0) {
            bias = sign_of_difference(*a, *b);
        }
    }
}

// Runs that begin with a zero: as the digits of fractions.
int compare_left_aligned(const signed char* a, const signed char* b) {
    for (;; ++a, ++b) {
        if (!is_digit(*a) && !is_digit(*b)) {
            return 0;
        }
        if (!is_digit(*a)) {
            return -1;
        }
        if (!is_digit(*b)) {
            return 1;
        }
        const int difference = sign_of_difference(*a, *b);
        if (difference != 0) {
            return difference;
        }
    }
}

const signed char* skip_space(const signed char* text) {
    while (is_space(*text)) {
        ++text;
    }
    return text;
}

} // namespace

int strnatcmp0(const char* a, const char* b, int fold_case) {
    if (a == nullptr || b == nullptr) {
        __assert_fail("a && b", "./source/gui/ORX/orx_helpers/ORX_nat_string_compare", 86,
                      "int strnatcmp0(const char*, const char*, int)");
    }
    auto rest_a = reinterpret_cast<const signed char*>(a);
    auto rest_b = reinterpret_cast<const signed char*>(b);
    for (;; ++rest_a, ++rest_b) {
        rest_a = skip_space(rest_a);
        rest_b = skip_space(rest_b);
        signed char ca = *rest_a;
        signed char cb = *rest_b;
        if (is_digit(ca) && is_digit(cb)) {
            const bool fractional = ca == '0' || cb == '0';
            const int result = fractional ? compare_left_aligned(rest_a, rest_b)
                                          : compare_right_aligned(rest_a, rest_b);
            if (result != 0) {
                return result;
            }
        }
        if (ca == 0 && cb == 0) {
            return 0;
        }
        if (fold_case != 0) {
            ca = static_cast<signed char>(std::toupper(ca));
            cb = static_cast<signed char>(std::toupper(cb));
        }
        const int difference = sign_of_difference(ca, cb);
        if (difference != 0) {
            return difference;
        }
    }
}

int orx_natural_compare(const char* a, const char* b) {
    return strnatcmp0(a, b, 0);
}

int orx_natural_compare_ignoring_case(const char* a, const char* b) {
    return strnatcmp0(a, b, 1);
}
