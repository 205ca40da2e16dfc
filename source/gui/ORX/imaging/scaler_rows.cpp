// scaler_rows.cpp: which source pixels make which output pixels, and the walk over the rows.
#include "gui/ORX/imaging/scaler_rows.h"

#include "gui/ORX/imaging/pixel_run.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

// A request never makes more than this many columns or rows, however large the surface.
constexpr std::int64_t largest_rectangle = 8192;

constexpr std::int64_t no_row = -1;

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

// What is left of a request once it is cut to the surface. Output columns and rows are counted from
// the scaled image's origin, source positions are 16.16 fixed point.
struct ScalePlan {
    std::int64_t step; // source pixels per output pixel
    std::int64_t first_column;
    std::int64_t columns;
    std::int64_t first_row;
    std::int64_t rows;
    std::int64_t first_source_column; // the columns of the source that the taps reach; they may
    std::int64_t source_columns;      // lie outside it, where the edge pixels stand in
};

std::int64_t source_pixel(std::int64_t position) {
    return position >> 16;
}
std::uint8_t source_phase(std::int64_t position) {
    return static_cast<std::uint8_t>((position >> 8) & 255);
}

// Number of outputs from first on, at most limit, whose source pixel is inside the source.
std::int64_t outputs_inside(std::int64_t first, std::int64_t limit, std::int64_t step,
                            std::int64_t source_size) {
    if (limit < 1 || source_pixel(first * step) >= source_size) {
        return 0;
    }
    if (step == 0) {
        return limit;
    }
    const std::int64_t last = ((source_size << 16) - 1) / step;
    return std::min(limit, last - first + 1);
}

bool source_step(float scale, std::int64_t& step) {
    const float exact = (1.0F / scale) * 65536.0F;
    if (!(scale > 0.0F) || !(exact < 2147483648.0F)) {
        return false;
    }
    step = static_cast<std::int32_t>(exact);
    return true;
}

void find_source_columns(ScalePlan& plan) {
    const std::int64_t last_column = plan.first_column + plan.columns - 1;
    plan.first_source_column = source_pixel(plan.first_column * plan.step) - 1;
    plan.source_columns = source_pixel(last_column * plan.step) + 3 - plan.first_source_column;
}

bool make_plan(const Pixbuf* source, const ScaleRequest& request, std::int64_t surface_width,
               std::int64_t surface_height, ScalePlan& plan) {
    const std::int64_t left = std::max(request.x, 0);
    const std::int64_t top = std::max(request.y, 0);
    const std::int64_t width =
        std::min(std::min<std::int64_t>(request.width, largest_rectangle), surface_width - left);
    const std::int64_t height =
        std::min(std::min<std::int64_t>(request.height, largest_rectangle), surface_height - top);
    if (!source_step(request.scale, plan.step)) {
        return false;
    }
    plan.first_column = std::max<std::int64_t>(left - request.image_x, 0);
    plan.first_row = std::max<std::int64_t>(top - request.image_y, 0);

    const std::int64_t last_source_row = static_cast<std::int64_t>(source->height) - 1;
    const auto clamp_row = [last_source_row](std::int64_t row) {
        return std::clamp<std::int64_t>(row, 0, last_source_row);
    };
    if (clamp_row(source_pixel(plan.step * plan.first_row) - 1) ==
        clamp_row(source_pixel((plan.first_row + height - 1) * plan.step) + 3)) {
        return false; // one source row alone is not scaled
    }

    // An image that starts inside the rectangle would run over the surface's far edges.
    plan.columns = outputs_inside(
        plan.first_column, std::min(width, surface_width - request.image_x - plan.first_column),
        plan.step, source->width);
    plan.rows = outputs_inside(plan.first_row,
                               std::min(height, surface_height - request.image_y - plan.first_row),
                               plan.step, source->height);
    if (plan.columns < 1 || plan.rows < 1) {
        return false;
    }
    find_source_columns(plan);
    return true;
}

constexpr std::size_t alignment = 64;

// One piece of memory for everything that a call needs.
struct ScaleBuffers {
    std::unique_ptr<std::uint8_t, FreeMemory> memory; // null when it was given
    std::uint8_t* plan;
    std::uint32_t* offsets;
    std::uint8_t* padded;  // a source row with its edge pixels repeated
    std::uint8_t* ring[4]; // scaled rows, by the low two bits of the source row
    std::uint8_t* output;
    std::uint8_t* phases;
};

std::size_t round_up(std::size_t value, std::size_t granularity) {
    return (value + granularity - 1) / granularity * granularity;
}

// False when the memory given is too small, or when there is none for it to be made of.
bool make_buffers(const RowKernels& kernels, const ScalePlan& plan, std::size_t columns,
                  std::uint8_t* given, std::size_t given_size, ScaleBuffers& buffers) {
    const std::size_t row_bytes = round_up(columns * 4, alignment);
    const std::size_t plan_bytes = round_up(columns * kernels.plan_bytes_per_column, alignment);
    const std::size_t padded_bytes =
        round_up((static_cast<std::size_t>(plan.source_columns) + readable_slack) * 4, alignment);
    const std::size_t bytes = plan_bytes + row_bytes * 6 + padded_bytes + columns;
    std::uint8_t* next = bytes <= given_size ? given : nullptr;
    if (given == nullptr) {
        buffers.memory.reset(
            static_cast<std::uint8_t*>(std::aligned_alloc(alignment, round_up(bytes, alignment))));
        next = buffers.memory.get();
    }
    if (next == nullptr) {
        return false;
    }
    const auto take = [&next](std::size_t size) {
        std::uint8_t* taken = next;
        next += size;
        return taken;
    };
    buffers.plan = take(plan_bytes);
    buffers.offsets = reinterpret_cast<std::uint32_t*>(take(row_bytes));
    for (std::uint8_t*& row : buffers.ring) {
        row = take(row_bytes);
    }
    buffers.output = take(row_bytes);
    buffers.padded = take(padded_bytes);
    buffers.phases = take(columns);
    return true;
}

// Columns beyond the last one only fill up the row; they repeat a source pixel that is there.
void plan_columns(const RowKernels& kernels, const ScalePlan& plan, std::size_t columns,
                  const ScaleBuffers& buffers) {
    for (std::size_t i = 0; i < columns; ++i) {
        const std::int64_t column = std::min(static_cast<std::int64_t>(i), plan.columns - 1);
        const std::int64_t position = (plan.first_column + column) * plan.step;
        buffers.offsets[i] =
            static_cast<std::uint32_t>(source_pixel(position) - 1 - plan.first_source_column);
        buffers.phases[i] = source_phase(position);
    }
    kernels.plan_columns(buffers.offsets, buffers.phases, columns, buffers.plan);
}

// Copies the columns that the taps reach; left and right of the image its edge pixels stand in.
void pad_row(const Pixbuf* source, std::int64_t row, const ScalePlan& plan, std::uint8_t* padded) {
    const std::uint8_t* pixels = pixel_at(source, pixel_index(source, 0, row));
    const std::int64_t last = static_cast<std::int64_t>(source->width) - 1;
    const std::int64_t from = plan.first_source_column;
    const std::int64_t to = from + plan.source_columns;
    const std::int64_t inner_from = std::clamp<std::int64_t>(from, 0, last);
    const std::int64_t inner_to = std::clamp<std::int64_t>(to, inner_from + 1, last + 1);
    for (std::int64_t column = from; column < inner_from; ++column) {
        std::memcpy(padded + (column - from) * 4, pixels, 4);
    }
    std::memcpy(padded + (inner_from - from) * 4, pixels + inner_from * 4,
                static_cast<std::size_t>(inner_to - inner_from) * 4);
    for (std::int64_t column = inner_to; column < to; ++column) {
        std::memcpy(padded + (column - from) * 4, pixels + last * 4, 4);
    }
}

// Renders the plan, in memory that is given or, without it, made. False when there is too little.
bool render(const RowKernels& kernels, const Pixbuf* source, const ScaleRequest& request,
            const ScalePlan& plan, std::uint8_t* given, std::size_t given_size, RowSink sink,
            void* sink_data) {
    const std::size_t columns = round_up(static_cast<std::size_t>(plan.columns), row_granularity);
    ScaleBuffers buffers{};
    if (!make_buffers(kernels, plan, columns, given, given_size, buffers)) {
        return false;
    }
    plan_columns(kernels, plan, columns, buffers);

    std::int64_t ring_row[4] = {no_row, no_row, no_row, no_row};
    const std::int64_t last_source_row = static_cast<std::int64_t>(source->height) - 1;
    for (std::int64_t row = 0; row < plan.rows; ++row) {
        const std::int64_t position = (plan.first_row + row) * plan.step;
        const std::uint8_t* tap_rows[4];
        for (std::int64_t tap = 0; tap < 4; ++tap) {
            const std::int64_t wanted =
                std::clamp<std::int64_t>(source_pixel(position) - 1 + tap, 0, last_source_row);
            const auto place = static_cast<std::size_t>(wanted & 3);
            if (ring_row[place] != wanted) {
                pad_row(source, wanted, plan, buffers.padded);
                kernels.scale_row(buffers.padded, buffers.offsets, buffers.plan, columns,
                                  buffers.ring[place]);
                ring_row[place] = wanted;
            }
            tap_rows[tap] = buffers.ring[place];
        }
        kernels.mix_rows(tap_rows, source_phase(position), columns, buffers.output);
        sink(sink_data, request.image_x + plan.first_column, request.image_y + plan.first_row + row,
             buffers.output, static_cast<std::size_t>(plan.columns));
    }
    return true;
}

// The same in strips so narrow that the stack is enough for them.
void render_in_strips(const RowKernels& kernels, const Pixbuf* source, const ScaleRequest& request,
                      const ScalePlan& plan, RowSink sink, void* sink_data) {
    constexpr std::int64_t strip_columns = 64;
    constexpr std::size_t enough = 16'384; // for a picture at a tenth of its size, and larger
    alignas(alignment) std::uint8_t memory[enough];
    ScalePlan strip = plan;
    for (std::int64_t done = 0; done < plan.columns; done += strip_columns) {
        strip.first_column = plan.first_column + done;
        strip.columns = std::min(strip_columns, plan.columns - done);
        find_source_columns(strip);
        if (!render(kernels, source, request, strip, memory, enough, sink, sink_data)) {
            return;
        }
    }
}

} // namespace

void scale_rows(const RowKernels& kernels, const Pixbuf* source, const ScaleRequest& request,
                std::int64_t surface_width, std::int64_t surface_height, RowSink sink,
                void* sink_data) {
    ScalePlan plan{};
    if (pixel_count(source) == 0 ||
        !make_plan(source, request, surface_width, surface_height, plan)) {
        return;
    }
    if (!render(kernels, source, request, plan, nullptr, 0, sink, sink_data)) {
        render_in_strips(kernels, source, request, plan, sink, sink_data);
    }
}
