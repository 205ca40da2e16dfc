// Damage list against a bitmap: whatever is added, popped and removed, the rectangles cover exactly
// the dirty cells and no cell twice.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/core/damage_list.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

using fuzz::require;

constexpr std::uint32_t edges = 32; // possible edges on each axis
constexpr std::int32_t first_capacity = 8;

// The cells between one edge and the next: a row each, of one bit a cell.
using Bitmap = std::array<std::uint32_t, edges>;
using EdgeTable = std::array<std::int32_t, edges>;

// Edges on the screen, or the farthest ones that a number can hold: the cells in between have sizes
// that do not fit into one.
EdgeTable edge_table(bool far) {
    EdgeTable table{};
    for (std::size_t i = 0; i < edges; ++i) {
        table[i] = static_cast<std::int32_t>(i) - 8;
        if (far && i < 8) {
            table[i] = std::numeric_limits<std::int32_t>::min() + static_cast<std::int32_t>(i);
        }
        if (far && i >= edges - 8) {
            table[i] =
                std::numeric_limits<std::int32_t>::max() - static_cast<std::int32_t>(edges - 1 - i);
        }
    }
    return table;
}

std::size_t index_of(const EdgeTable& table, std::int32_t edge) {
    const auto* found = std::lower_bound(table.begin(), table.end(), edge);
    require(found != table.end() && *found == edge, "every edge is an edge that was added");
    return static_cast<std::size_t>(found - table.begin());
}

std::uint32_t row_of_cells(std::size_t left, std::size_t right) {
    return left < right ? (1U << right) - (1U << left) : 0U;
}

void set_cells(Bitmap& bitmap, const EdgeTable& table, const DamageRect& rect, bool dirty) {
    const std::uint32_t cells =
        row_of_cells(index_of(table, rect.left), index_of(table, rect.right));
    const std::size_t bottom = index_of(table, rect.bottom);
    for (std::size_t y = index_of(table, rect.top); y < bottom; ++y) {
        require((bitmap[y] & cells) == (dirty ? 0U : cells), "no cell is covered twice");
        bitmap[y] ^= cells;
    }
}

void add_cells(Bitmap& bitmap, std::size_t left, std::size_t top, std::size_t right,
               std::size_t bottom) {
    for (std::size_t y = std::min(top, bottom); y < std::max(top, bottom); ++y) {
        bitmap[y] |= row_of_cells(std::min(left, right), std::max(left, right));
    }
}

void check(const DamageList& list, const EdgeTable& table, const Bitmap& dirty) {
    Bitmap covered{};
    for (std::int32_t i = 0; i < damage_count(&list); ++i) {
        const DamageRect& rect = list.rects[i];
        require(rect.left <= rect.right && rect.top <= rect.bottom, "edges are in order");
        set_cells(covered, table, rect, true);
    }
    require(covered == dirty, "the list covers what is dirty and nothing else");
    std::int32_t capacity = first_capacity;
    while (capacity < list.capacity) {
        capacity *= 2;
    }
    require(list.capacity == 0 || list.capacity == capacity, "storage grows by doubling");
    require(list.count <= list.capacity, "the list lies in its storage");
}

bool same(const DamageRect& a, const DamageRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input{data, size};
    const EdgeTable table = edge_table(fuzz::take_byte(input) % 2 == 1);
    DamageList list;
    Bitmap dirty{};
    while (!fuzz::is_empty(input)) {
        const std::uint8_t action = fuzz::take_byte(input);
        const std::int32_t count = damage_count(&list);
        if (action < 224 || count == 0) {
            const std::size_t left = fuzz::take_below(input, edges);
            const std::size_t top = fuzz::take_below(input, edges);
            const std::size_t right = fuzz::take_below(input, edges);
            const std::size_t bottom = fuzz::take_below(input, edges);
            damage_add(&list, table[left], table[top], table[right], table[bottom]);
            add_cells(dirty, left, top, right, bottom);
            require(damage_count(&list) <= damage_rects_most, "the list is bounded");
            // Each of them is cut into four at most.
            if (damage_count(&list) == 1 && 4 * count >= damage_rects_most) {
                const DamageRect& all = list.rects[0];
                add_cells(dirty, index_of(table, all.left), index_of(table, all.top),
                          index_of(table, all.right), index_of(table, all.bottom));
            }
        } else if (action < 236) {
            const DamageRect last = list.rects[count - 1];
            const DamageRect popped = damage_pop(&list);
            require(same(last, popped) && damage_count(&list) == count - 1, "the last one goes");
            set_cells(dirty, table, popped, false);
        } else if (action < 248) {
            const auto index = static_cast<std::int32_t>(
                fuzz::take_below(input, static_cast<std::uint32_t>(count)));
            const DamageRect removed = list.rects[index];
            damage_remove(&list, index);
            require(damage_count(&list) == count - 1, "one goes");
            set_cells(dirty, table, removed, false);
        } else if (action < 254) {
            damage_clear(&list);
            dirty = {};
        } else {
            damage_free(&list);
            require(list.rects == nullptr && list.capacity == 0, "the storage is given back");
            dirty = {};
        }
        check(list, table, dirty);
    }
    damage_free(&list);
    return 0;
}
