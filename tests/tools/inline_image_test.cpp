// The converter from PNG files to the pictures that the program carries: exact bytes for every kind
// of picture, and one plain line for every file that it cannot use.

#include "support/child_process.h"
#include "tools/png_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>

namespace {

using png_files::Bytes;
using png_files::Folder;
using png_files::Image;
using png_files::Kind;

struct Outcome {
    int exit_status = -1;
    std::string message; // standard error
};

Outcome run(const std::vector<std::string>& command) {
    support::ChildOptions options;
    options.command = command;
    support::ChildProcess child(options);
    const auto end = child.wait_for_end();
    Outcome outcome;
    outcome.exit_status = end && end->exit_status ? *end->exit_status : -1;
    outcome.message = child.error_output();
    EXPECT_EQ(child.output(), "");
    return outcome;
}

Outcome convert(const std::string& picture, const std::string& width, const std::string& height,
                const std::string& blob) {
    return run({INLINE_IMAGE_TOOL, picture, width, height, blob});
}

Image noise(Kind kind, std::uint32_t width, std::uint32_t height) {
    const unsigned seed = std::random_device{}();
    std::printf("noise seed %u\n", seed);
    std::mt19937 random(seed);
    Image image;
    image.width = width;
    image.height = height;
    image.kind = kind;
    const std::size_t channels = kind == Kind::rgba ? 4 : kind == Kind::rgb ? 3 : 1;
    image.samples.resize(channels * width * height);
    const auto byte = [&random] { return static_cast<std::uint8_t>(random() & 255); };
    std::generate(image.samples.begin(), image.samples.end(), byte);
    if (kind == Kind::palette) {
        image.palette.resize(std::size_t{256} * 3);
        std::generate(image.palette.begin(), image.palette.end(), byte);
        image.palette_alpha.resize(100);
        std::generate(image.palette_alpha.begin(), image.palette_alpha.end(), byte);
    }
    return image;
}

void expect_exact_conversion(const Image& image) {
    const Folder folder;
    png_files::write(image, folder.file("a.png"));
    const Outcome outcome = convert(folder.file("a.png"), std::to_string(image.width),
                                    std::to_string(image.height), folder.file("a.blob"));
    EXPECT_EQ(outcome.exit_status, 0) << outcome.message;
    EXPECT_EQ(outcome.message, "");
    EXPECT_TRUE(png_files::file_bytes(folder.file("a.blob")) == png_files::blob(image));
}

// The picture is refused with exactly this line, and nothing is written.
void expect_refusal(const Folder& folder, const std::string& picture, const std::string& line) {
    const Outcome outcome = convert(picture, "5", "4", folder.file("out.blob"));
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.message, "inline_image: " + picture + ": " + line + "\n");
    EXPECT_FALSE(std::filesystem::exists(folder.file("out.blob")));
}

TEST(InlineImage, KeepsEveryPixelAndAlphaOfAnRgbaPicture) {
    expect_exact_conversion(noise(Kind::rgba, 37, 23));
}

TEST(InlineImage, MakesAnRgbPictureOpaque) {
    expect_exact_conversion(noise(Kind::rgb, 19, 31));
}

TEST(InlineImage, LooksUpPaletteColoursAndTheirTransparency) {
    expect_exact_conversion(noise(Kind::palette, 40, 40));
}

TEST(InlineImage, TakesGreyAsEqualChannels) {
    expect_exact_conversion(noise(Kind::grey, 8, 9));
}

TEST(InlineImage, TakesInterlacedPictures) {
    Image image = noise(Kind::rgba, 21, 13);
    image.interlaced = true;
    expect_exact_conversion(image);
}

TEST(InlineImage, TakesASinglePixel) {
    expect_exact_conversion(noise(Kind::rgba, 1, 1));
}

TEST(InlineImage, RefusesAnotherWidth) {
    const Folder folder;
    png_files::write(noise(Kind::rgb, 6, 4), folder.file("a.png"));
    expect_refusal(folder, folder.file("a.png"),
                   "is 6x4 pixels, but must be 5x4; scale or crop the picture to that size");
}

TEST(InlineImage, RefusesAnotherHeight) {
    const Folder folder;
    png_files::write(noise(Kind::rgb, 5, 3), folder.file("a.png"));
    expect_refusal(folder, folder.file("a.png"),
                   "is 5x3 pixels, but must be 5x4; scale or crop the picture to that size");
}

TEST(InlineImage, RefusesSixteenBitsAChannel) {
    const Folder folder;
    Image image = noise(Kind::rgba, 10, 4);
    image.width = 5;
    image.bits = 16;
    png_files::write(image, folder.file("a.png"));
    expect_refusal(folder, folder.file("a.png"),
                   "has 16 bits a channel; save the picture with 8 bits a channel");
}

TEST(InlineImage, NamesAMissingFile) {
    const Folder folder;
    expect_refusal(folder, folder.file("none.png"),
                   "cannot be opened (No such file or directory); put the picture there, or name "
                   "another file");
}

TEST(InlineImage, RefusesAFolder) {
    const Folder folder;
    expect_refusal(folder, folder.file(""),
                   "cannot be read (Is a directory); name a readable PNG file");
}

TEST(InlineImage, RefusesWhatIsNoPng) {
    const Folder folder;
    const std::string advice = "is not a PNG file; save the picture as an 8-bit RGB or RGBA PNG";
    png_files::write_bytes(folder.file("jpeg.png"),
                           {0xff, 0xd8, 0xff, 0xe0, 0, 16, 'J', 'F', 'I', 'F'});
    expect_refusal(folder, folder.file("jpeg.png"), advice);
    png_files::write_bytes(folder.file("empty.png"), {});
    expect_refusal(folder, folder.file("empty.png"), advice);
    png_files::write_bytes(folder.file("short.png"), {0x89, 'P', 'N'});
    expect_refusal(folder, folder.file("short.png"), advice);
}

// Wherever a file is cut off, it is refused in one line; never half a picture.
TEST(InlineImage, RefusesAFileCutOffAnywhere) {
    const Folder folder;
    png_files::write(noise(Kind::rgba, 5, 4), folder.file("whole.png"));
    const Bytes whole = png_files::file_bytes(folder.file("whole.png"));
    for (std::size_t length = 8; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        const std::string cut = folder.file("cut.png");
        png_files::write_bytes(cut,
                               Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
        const Outcome outcome = convert(cut, "5", "4", folder.file("out.blob"));
        EXPECT_EQ(outcome.exit_status, 1);
        EXPECT_EQ(outcome.message.find("inline_image: " + cut + ": is a broken PNG ("), 0U)
            << outcome.message;
        EXPECT_NE(outcome.message.find("); save the picture anew\n"), std::string::npos);
        EXPECT_EQ(std::count(outcome.message.begin(), outcome.message.end(), '\n'), 1);
        EXPECT_FALSE(std::filesystem::exists(folder.file("out.blob")));
    }
}

// A damaged byte is noticed by the file's checksums: refused, never other pixels.
TEST(InlineImage, RefusesADamagedByteAnywhere) {
    const Folder folder;
    png_files::write(noise(Kind::rgba, 5, 4), folder.file("whole.png"));
    const Bytes whole = png_files::file_bytes(folder.file("whole.png"));
    for (std::size_t place = 0; place < whole.size(); ++place) {
        SCOPED_TRACE(place);
        Bytes damaged = whole;
        damaged[place] ^= 0x11;
        png_files::write_bytes(folder.file("damaged.png"), damaged);
        const Outcome outcome =
            convert(folder.file("damaged.png"), "5", "4", folder.file("out.blob"));
        EXPECT_EQ(outcome.exit_status, 1);
        EXPECT_EQ(outcome.message.find("inline_image: " + folder.file("damaged.png") + ": "), 0U);
        EXPECT_EQ(std::count(outcome.message.begin(), outcome.message.end(), '\n'), 1);
    }
}

TEST(InlineImage, SaysWhenTheOutputCannotBeMade) {
    const Folder folder;
    png_files::write(noise(Kind::rgba, 5, 4), folder.file("a.png"));
    const std::string blob = folder.file("no/such/folder/a.blob");
    const Outcome outcome = convert(folder.file("a.png"), "5", "4", blob);
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.message, "inline_image: " + blob +
                                   ": cannot be written (No such file or directory); make room or "
                                   "name another file\n");
}

// A limit on the length of files stands for a full disk: the blob passes it, the message does not.
TEST(InlineImage, LeavesNoHalfWrittenOutput) {
    const Folder folder;
    png_files::write(noise(Kind::rgba, 40, 40), folder.file("a.png"));
    const std::string blob = folder.file("a.blob");
    const Outcome outcome = run({"sh", "-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\"", "sh",
                                 INLINE_IMAGE_TOOL, folder.file("a.png"), "40", "40", blob});
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_EQ(outcome.message, "inline_image: " + blob +
                                   ": cannot be written (File too large); make room or name "
                                   "another file\n");
    EXPECT_FALSE(std::filesystem::exists(blob));
}

TEST(InlineImage, ExplainsItsArguments) {
    const Folder folder;
    png_files::write(noise(Kind::rgba, 5, 4), folder.file("a.png"));
    const Outcome none = run({INLINE_IMAGE_TOOL});
    EXPECT_EQ(none.exit_status, 1);
    EXPECT_EQ(none.message,
              "inline_image: usage: inline_image PICTURE.png WIDTH HEIGHT OUTPUT.blob\n");
    for (const std::string side : {"0", "-5", "5x", "", "16385", "99999999999"}) {
        const Outcome outcome = convert(folder.file("a.png"), "5", side, folder.file("out.blob"));
        EXPECT_EQ(outcome.exit_status, 1);
        EXPECT_EQ(outcome.message, "inline_image: 5 " + side +
                                       " is no size in pixels; give a width and a height from 1 to "
                                       "16384\n");
    }
}

} // namespace
