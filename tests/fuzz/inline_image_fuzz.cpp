// Inline images: any header is read as it stands and no byte more, and what the build's converter
// writes comes back pixel for pixel.

#include "fuzz/fuzz_input.h"

#include "gui/ORX/imaging/inline_image.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "inline_image_blob.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using fuzz::require;

constexpr std::size_t header_size = 24; // bytes
constexpr char magic[] = {'G', 'd', 'k', 'P'};

void read_any_header(fuzz::Input input) {
    // Nothing but a header: the pixels are never looked at.
    const auto blob = std::make_unique<unsigned char[]>(header_size);
    std::copy_n(input.next, std::min(input.left, header_size), blob.get());
    const std::vector<unsigned char> before(blob.get(), blob.get() + header_size);

    Pixbuf* pixbuf = orx_pixbuf_new_from_inline(nullptr, blob.get());
    const bool has_magic = std::memcmp(blob.get(), magic, sizeof magic) == 0;
    require((pixbuf != nullptr) == has_magic, "the magic decides");
    if (pixbuf != nullptr) {
        fuzz::Input words{before.data() + 12, header_size - 12};
        require(pixbuf->rowstride == fuzz::take_word(words), "bytes a row");
        require(pixbuf->width == fuzz::take_word(words), "width");
        require(pixbuf->height == fuzz::take_word(words), "height");
        require(pixbuf->n_channels == 4, "four channels");
        require(pixbuf->pixels == blob.get() + header_size, "the pixels are the blob's own");
    }
    orx_pixbuf_free_inline(nullptr, pixbuf);
    require(std::equal(before.begin(), before.end(), blob.get()), "the blob stays as it is");
}

void there_and_back(fuzz::Input input) {
    PictureSize size{};
    size.width = 1 + fuzz::take_below(input, 16);
    size.height = 1 + fuzz::take_below(input, 16);
    std::vector<std::uint8_t> pixels(std::size_t{size.width} * size.height * 4);
    std::generate(pixels.begin(), pixels.end(), [&input] { return fuzz::take_byte(input); });

    const std::vector<std::uint8_t> blob = inline_image_blob(size, pixels);
    Pixbuf* pixbuf = orx_pixbuf_new_from_inline(nullptr, blob.data());
    require(pixbuf != nullptr, "what the converter writes is an image");
    require(pixbuf->width == size.width && pixbuf->height == size.height &&
                pixbuf->rowstride == size.width * 4,
            "the size comes back");
    require(pixbuf->pixels + pixels.size() == blob.data() + blob.size(), "no byte is left over");
    require(std::equal(pixels.begin(), pixels.end(), pixbuf->pixels), "the pixels come back");
    orx_pixbuf_free_inline(nullptr, pixbuf);
}

} // namespace

// Every blob without the magic is reported on standard output.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Input input{data, size};
    read_any_header(input);
    there_and_back(input);
    require(orx_pixbuf_new_from_inline(nullptr, nullptr) == nullptr, "no blob is no image");
    return 0;
}
