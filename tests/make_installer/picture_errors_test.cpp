// picture_errors_test.cpp: pictures that the screens cannot use are refused by file and setting.
#include "make_installer/product_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// Byte of the header (behind signature, length and name) that says the bits a channel.
constexpr std::size_t depth_byte = 24;

} // namespace

TEST(PictureErrors, Missing) {
    const ProductFolder product;
    std::filesystem::remove(product.file("splash.png"));
    product.expect_refused({"splash_picture: there is no ", "splash.png", "put the picture there"});
}

TEST(PictureErrors, AFolderInItsPlace) {
    const ProductFolder product;
    product.set("splash_picture", "\"my-plug-in.lv2\"");
    product.expect_refused({"splash_picture: ", "cannot be read"});
}

TEST(PictureErrors, WrongSizeOfEachPicture) {
    const ProductFolder product;
    product.set("splash_picture", "\"background.png\"");
    product.expect_refused({"splash_picture: ", "is 600x336 pixels, but must be 600x400"});
    product.set("background_picture", "\"splash.png\"");
    product.expect_refused({"background_picture: ", "is 600x400 pixels, but must be 600x336"});
    product.set("window_icon_picture", "\"desktop_icon.png\"");
    product.expect_refused({"window_icon_picture: ", "is 48x48 pixels, but must be 64x64"});
    product.set("folder_icon_picture", "\"desktop_icon.png\"");
    product.expect_refused({"folder_icon_picture: ", "is 48x48 pixels, but must be 64x64"});
    product.set("desktop_icon_picture", "\"window_icon.png\"");
    product.expect_refused({"desktop_icon_picture: ", "is 64x64 pixels, but must be 48x48"});
}

TEST(PictureErrors, NoPngAtAll) {
    const ProductFolder product;
    product.write("splash.png", "\xff\xd8\xff\xe0 a photograph");
    product.expect_refused({"splash_picture: ", "is not a PNG file", "save the picture"});
    product.write("splash.png", "");
    product.expect_refused({"splash_picture: ", "is not a PNG file"});
}

TEST(PictureErrors, CutOffAnywhere) {
    const ProductFolder product;
    const std::string whole = product.read("splash.png");
    for (const std::size_t length : {std::size_t{8}, std::size_t{20}, std::size_t{33},
                                     whole.size() / 2, whole.size() - 12, whole.size() - 1}) {
        product.write("splash.png", whole.substr(0, length));
        product.expect_refused({"splash_picture: ", "broken PNG", "save the picture anew"});
    }
}

TEST(PictureErrors, DamagedInside) {
    const ProductFolder product;
    std::string damaged = product.read("splash.png");
    damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x55);
    product.write("splash.png", damaged);
    product.expect_refused({"splash_picture: ", "broken PNG", "checksum"});
    damaged = product.read("background.png");
    damaged[depth_byte] = 16; // the header's checksum now tells
    product.write("background.png", damaged);
    product.expect_refused({"background_picture: ", "broken PNG"});
}

TEST(PictureErrors, DesktopIconWithoutTransparency) {
    // A 48x48 grey picture of 8 bits.
    const ProductFolder product;
    static const unsigned char grey[] = {
        0x89, 'P',  'N',  'G', 0x0d, 0x0a, 0x1a, 0x0a, 0,   0,   0,   13,   'I',  'H',  'D',
        'R',  0,    0,    0,   48,   0,    0,    0,    48,  8,   0,   0,    0,    0,    0x72,
        0x69, 0xa6, 0x5b, 0,   0,    0,    0,    'I',  'E', 'N', 'D', 0xae, 0x42, 0x60, 0x82};
    product.write("desktop_icon.png",
                  std::string(reinterpret_cast<const char*>(grey), sizeof grey));
    product.expect_refused({"desktop_icon_picture: ", "is not RGBA", "transparency"});
}
