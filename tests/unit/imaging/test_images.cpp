// Images for tests.
#include "unit/imaging/test_images.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace images {

namespace {

[[noreturn]] void give_up(const char* call) {
    std::perror(call);
    std::abort();
}

} // namespace

Random make_random() {
    const char* given = std::getenv("ORX_TEST_SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                                           : std::random_device{}();
    std::printf("seed: ORX_TEST_SEED=%u\n", seed);
    return Random(seed);
}

int number(Random& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

GuardedMemory::GuardedMemory(std::size_t size, bool at_start) : size_(size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t inner = (size + page - 1) / page * page;
    mapped_ = inner + 2 * page;
    void* mapping = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) {
        give_up("mmap");
    }
    mapping_ = static_cast<std::uint8_t*>(mapping);
    if (inner > 0 && mprotect(mapping_ + page, inner, PROT_READ | PROT_WRITE) != 0) {
        give_up("mprotect");
    }
    data_ = at_start ? mapping_ + page : mapping_ + page + inner - size;
}

GuardedMemory::~GuardedMemory() {
    munmap(mapping_, mapped_);
}

GuardedPixbuf::GuardedPixbuf(std::uint32_t width, std::uint32_t height, bool at_start)
    : pixbuf{width, height, width * 4, 4, nullptr},
      memory_(std::size_t{width} * height * 4, at_start) {
    pixbuf.pixels = memory_.data();
}

void GuardedPixbuf::randomise(Random& random) {
    // Extremes are as common as everything else, for the sake of the clamps.
    for (std::size_t i = 0; i < memory_.size(); ++i) {
        const int kind = number(random, 0, 5);
        memory_.data()[i] = static_cast<std::uint8_t>(kind == 0   ? 0
                                                      : kind == 1 ? 255
                                                                  : number(random, 0, 255));
    }
}

std::vector<std::uint8_t> GuardedPixbuf::bytes() const {
    return {memory_.data(), memory_.data() + memory_.size()};
}

const std::vector<Format>& formats() {
    static const std::vector<Format> all = {
        {"15", 15, 16, 0x7C00, 0x3E0, 0x1F},
        {"16", 16, 16, 0xF800, 0x7E0, 0x1F},
        {"12 in 16", 12, 16, 0xF00, 0xF0, 0xF},
        {"24", 24, 32, 0xFF0000, 0xFF00, 0xFF},
        {"24 reversed", 24, 32, 0xFF, 0xFF00, 0xFF0000},
        {"24 packed", 24, 24, 0xFF0000, 0xFF00, 0xFF},
        {"30", 30, 32, 0x3FF00000, 0xFFC00, 0x3FF},
        {"32", 32, 32, 0xFF0000, 0xFF00, 0xFF},
        {"32 high", 32, 32, 0xFF000000, 0xFF0000, 0xFF00},
        {"32 between bytes", 32, 32, 0xFF00000, 0xFF000, 0xFF0},
        {"32 one byte twice", 32, 32, 0xFF0000, 0xFF00, 0xFF00},
        {"8 palette", 8, 8, 0, 0, 0},
    };
    return all;
}

Surface::Surface(const Format& format, bool most_significant_first, int width, int height,
                 bool at_start) {
    const int order = most_significant_first ? MSBFirst : LSBFirst;
    image.width = width;
    image.height = height;
    image.format = ZPixmap;
    image.byte_order = order;
    image.bitmap_unit = 32;
    image.bitmap_bit_order = order;
    image.bitmap_pad = 32;
    image.depth = format.depth;
    image.bits_per_pixel = format.bits_per_pixel;
    image.bytes_per_line = (width * format.bits_per_pixel + 31) / 32 * 4;
    image.red_mask = format.red;
    image.green_mask = format.green;
    image.blue_mask = format.blue;
    memory_ = std::make_unique<GuardedMemory>(static_cast<std::size_t>(image.bytes_per_line) *
                                                  static_cast<std::size_t>(height),
                                              at_start);
    image.data = reinterpret_cast<char*>(memory_->data());
    if (XInitImage(&image) == 0) {
        give_up("XInitImage");
    }
}

std::vector<std::uint8_t> Surface::bytes() const {
    return {memory_->data(), memory_->data() + memory_->size()};
}

void Surface::fill(std::uint8_t byte) {
    std::memset(memory_->data(), byte, memory_->size());
}

} // namespace images
