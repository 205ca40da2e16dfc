// main_layout.h: where everything stands in the main window, and in which colours.
//
// Design pixels; colours are red, green, blue from 0 to 255.
#pragma once

#include <cstddef>
#include <cstdint>

struct Colour {
    std::int32_t r;
    std::int32_t g;
    std::int32_t b;
};

struct Rectangle {
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
};

inline constexpr Colour layout_grey{56, 56, 56};
inline constexpr Colour layout_light_grey{127, 127, 127};
inline constexpr Colour layout_accent{255, 47, 255};
inline constexpr Colour layout_white{255, 255, 255};

inline constexpr Rectangle password_field_place{225, 360, 150, 16};
inline constexpr Rectangle progress_bar_place{25, 360, 550, 16};
inline constexpr Rectangle ok_button_place{268, 356, 64, 20};

inline constexpr const char* ok_button_label = "OK";

// Of the screen that asks for whom it is installed, from left to right.
inline constexpr std::size_t choice_count = 2;
inline constexpr Rectangle choice_button_places[choice_count] = {{150, 356, 140, 20},
                                                                 {310, 356, 140, 20}};
inline constexpr const char* choice_button_labels[choice_count] = {"Only for me", "For everybody"};
