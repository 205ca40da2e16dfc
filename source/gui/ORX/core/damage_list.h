// damage_list.h: a window's list of dirty rectangles that never overlap. Pure, no display.
//
// Rectangles are device pixels, right and bottom exclusive. A list is used under x_lock when it
// belongs to a window. Storage is made for 8 rectangles with the first one and doubles when full.
#pragma once

#include <cstdint>

// More than these are not kept apart: whoever sends thousands of small or crossing ones must not
// make the program count instead of paint.
inline constexpr std::int32_t damage_rects_most = 256;

struct DamageRect {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

struct DamageList {
    std::int32_t count = 0;
    std::int32_t capacity = 0;
    DamageRect* rects = nullptr; // owned; null until the first rectangle is added
};

// Adds a rectangle; its edges may come in either order. Rectangles it covers leave the list, a
// rectangle that covers it keeps it out, and one that it overlaps is cut to the parts outside it.
// When that would make more than damage_rects_most of them, or no more memory can be had, the list
// becomes one rectangle round everything; only when there is not even storage for the first
// rectangle is it lost.
void damage_add(DamageList* list, std::int32_t left, std::int32_t top, std::int32_t right,
                std::int32_t bottom);

// Takes the last rectangle off the list. The list must not be empty.
[[nodiscard]] DamageRect damage_pop(DamageList* list);

// Number of rectangles; 0 while no storage exists.
[[nodiscard]] std::int32_t damage_count(const DamageList* list);

// Takes one rectangle out; those after it move down by one.
void damage_remove(DamageList* list, std::int32_t index);

// Empties the list and keeps its storage.
void damage_clear(DamageList* list);

// Empties the list and frees its storage.
void damage_free(DamageList* list);
