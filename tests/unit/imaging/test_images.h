// Images for tests: random ones, ones that stand against unreadable memory, and surfaces in every
// pixel format, made without a display.
#pragma once

#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/pixbuf.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace images {

using Random = std::mt19937;

// A generator whose seed is printed, so that a failure can be had again: ORX_TEST_SEED.
[[nodiscard]] Random make_random();
[[nodiscard]] int number(Random& random, int low, int high); // both included

// Memory between two pages that nobody may touch. The block ends at the second one, so that the
// first byte behind it is a fault; with at_start it begins at the first one.
class GuardedMemory {
public:
    explicit GuardedMemory(std::size_t size, bool at_start = false);
    ~GuardedMemory();
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;
    [[nodiscard]] std::uint8_t* data() const { return data_; }
    [[nodiscard]] std::size_t size() const { return size_; }

private:
    std::uint8_t* mapping_;
    std::size_t mapped_;
    std::uint8_t* data_;
    std::size_t size_;
};

// A Pixbuf without the margin that the engine's own have.
class GuardedPixbuf {
public:
    GuardedPixbuf(std::uint32_t width, std::uint32_t height, bool at_start = false);
    void randomise(Random& random);
    [[nodiscard]] std::vector<std::uint8_t> bytes() const;
    Pixbuf pixbuf;

private:
    GuardedMemory memory_;
};

struct Format {
    std::string name;
    int depth;
    int bits_per_pixel;
    unsigned long red;
    unsigned long green;
    unsigned long blue;
};

[[nodiscard]] const std::vector<Format>& formats();

// A surface whose rows stand against unreadable memory, with Xlib's own pixel functions.
class Surface {
public:
    Surface(const Format& format, bool most_significant_first, int width, int height,
            bool at_start = false);
    [[nodiscard]] std::vector<std::uint8_t> bytes() const;
    void fill(std::uint8_t byte);
    XImage image{};

private:
    std::unique_ptr<GuardedMemory> memory_;
};

} // namespace images
