// wire_area.h: rectangles as the X protocol can carry them.
//
// Requests carry positions as signed and sizes as unsigned 16-bit numbers; whatever is larger would
// wrap round and land somewhere else. Pure, no display.
#pragma once

#include <algorithm>
#include <cstdint>

struct CopyArea {
    std::int64_t source_x;
    std::int64_t source_y;
    std::int64_t destination_x;
    std::int64_t destination_y;
    std::int64_t width;
    std::int64_t height;
};

inline constexpr std::int64_t largest_wire_position = 32767;

// Cuts a copy to what lies at or right of 0 and below the protocol's limits in both the source and
// the destination. Pixels left of or above 0 exist in neither. false when nothing is left.
[[nodiscard]] inline bool fit_copy(CopyArea& area) {
    const auto fit = [](std::int64_t& source, std::int64_t& destination, std::int64_t& size) {
        const std::int64_t cut = std::max<std::int64_t>({0, -source, -destination});
        source += cut;
        destination += cut;
        size = std::min(
            {size - cut, largest_wire_position - source, largest_wire_position - destination});
        return size > 0;
    };
    const bool columns = fit(area.source_x, area.destination_x, area.width);
    const bool rows = fit(area.source_y, area.destination_y, area.height);
    return columns && rows;
}
