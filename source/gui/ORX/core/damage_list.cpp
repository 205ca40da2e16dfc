// damage_list.cpp: keeping a list of dirty rectangles free of overlap.
#include "gui/ORX/core/damage_list.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::int32_t first_capacity = 8;

bool is_empty(const DamageRect& rect) {
    return rect.left == rect.right || rect.top == rect.bottom;
}

bool contains(const DamageRect& outer, const DamageRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

bool apart(const DamageRect& a, const DamageRect& b) {
    return a.left >= b.right || a.right <= b.left || a.top >= b.bottom || a.bottom <= b.top;
}

bool reserve(DamageList* list, std::int32_t extra) {
    std::int32_t capacity = list->capacity == 0 ? first_capacity : list->capacity;
    while (capacity < list->count + extra) {
        capacity *= 2;
    }
    if (capacity == list->capacity) {
        return true;
    }
    void* rects =
        std::realloc(list->rects, static_cast<std::size_t>(capacity) * sizeof(DamageRect));
    if (rects == nullptr) {
        return false;
    }
    list->rects = static_cast<DamageRect*>(rects);
    list->capacity = capacity;
    return true;
}

void append(DamageList* list, const DamageRect& rect) {
    list->rects[list->count] = rect;
    list->count += 1;
}

// The parts of old that lie outside added: bands above and below, then what is left beside it.
std::int32_t split(DamageRect old, const DamageRect& added, DamageRect pieces[4]) {
    std::int32_t count = 0;
    if (old.top < added.top) {
        pieces[count++] = {old.left, old.top, old.right, added.top};
        old.top = added.top;
    }
    if (old.bottom > added.bottom) {
        pieces[count++] = {old.left, added.bottom, old.right, old.bottom};
        old.bottom = added.bottom;
    }
    if (old.left < added.left) {
        pieces[count++] = {old.left, old.top, added.left, old.bottom};
    }
    if (old.right > added.right) {
        pieces[count++] = {added.right, old.top, old.right, old.bottom};
    }
    return count;
}

// With too many of them, or without memory, the details go, but nothing that has to be painted
// does.
void collapse(DamageList* list, DamageRect all) {
    if (list->capacity == 0) {
        return;
    }
    for (std::int32_t i = 0; i < list->count; ++i) {
        const DamageRect& rect = list->rects[i];
        all.left = std::min(all.left, rect.left);
        all.top = std::min(all.top, rect.top);
        all.right = std::max(all.right, rect.right);
        all.bottom = std::max(all.bottom, rect.bottom);
    }
    list->rects[0] = all;
    list->count = 1;
}

} // namespace

void damage_add(DamageList* list, std::int32_t left, std::int32_t top, std::int32_t right,
                std::int32_t bottom) {
    const DamageRect added{std::min(left, right), std::min(top, bottom), std::max(left, right),
                           std::max(top, bottom)};
    std::int32_t i = 0;
    while (i < list->count) {
        const DamageRect old = list->rects[i];
        if (is_empty(old)) {
            i += 1;
            continue;
        }
        if (contains(old, added)) {
            return;
        }
        if (contains(added, old)) {
            damage_remove(list, i);
            continue;
        }
        if (apart(old, added)) {
            i += 1;
            continue;
        }
        DamageRect pieces[4];
        const std::int32_t piece_count = split(old, added, pieces);
        if (list->count + piece_count > damage_rects_most || !reserve(list, piece_count)) {
            collapse(list, added);
            return;
        }
        for (std::int32_t piece = 0; piece < piece_count; ++piece) {
            append(list, pieces[piece]);
        }
        damage_remove(list, i);
    }
    if (list->count == damage_rects_most || !reserve(list, 1)) {
        collapse(list, added);
        return;
    }
    append(list, added);
}

DamageRect damage_pop(DamageList* list) {
    list->count -= 1;
    return list->rects[list->count];
}

std::int32_t damage_count(const DamageList* list) {
    return list->rects == nullptr ? 0 : list->count;
}

void damage_remove(DamageList* list, std::int32_t index) {
    std::copy(list->rects + index + 1, list->rects + list->count, list->rects + index);
    list->count -= 1;
}

void damage_clear(DamageList* list) {
    list->count = 0;
}

void damage_free(DamageList* list) {
    std::free(list->rects);
    *list = DamageList{};
}
