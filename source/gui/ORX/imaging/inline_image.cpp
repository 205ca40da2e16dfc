// inline_image.cpp: a Pixbuf over a blob's own pixels.
#include "gui/ORX/imaging/inline_image.h"

#include "gui/ORX/core/console_line.h"
#include "gui/ORX/imaging/pixbuf.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace {

constexpr std::uint32_t blob_magic = 0x47646B50; // "GdkP"
constexpr std::size_t rowstride_offset = 12;
constexpr std::size_t width_offset = 16;
constexpr std::size_t height_offset = 20;
constexpr std::size_t pixels_offset = 24;

std::uint32_t big_endian_word(const unsigned char* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
}

} // namespace

Pixbuf* orx_pixbuf_new_from_inline(UiEngine*, const unsigned char* blob) {
    if (blob == nullptr || big_endian_word(blob) != blob_magic) {
        print_line("orx_pixbuf_new_from_inline - pixbuf is not a pixbuf test failed");
        return nullptr;
    }
    // The record has one kind of pixel pointer; nothing writes through an inline one.
    auto* pixels = const_cast<std::uint8_t*>(blob + pixels_offset);
    return new (std::nothrow)
        Pixbuf{big_endian_word(blob + width_offset), big_endian_word(blob + height_offset),
               big_endian_word(blob + rowstride_offset), 4, pixels};
}

void orx_pixbuf_free_inline(UiEngine*, Pixbuf* pixbuf) {
    delete pixbuf;
}
