// Images that are compiled in: what is taken from a blob and what is refused.
#include "gui/ORX/imaging/inline_image.h"
#include "gui/ORX/imaging/pixbuf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const std::string refusal = "orx_pixbuf_new_from_inline - pixbuf is not a pixbuf test failed\n";

void put_word(std::vector<unsigned char>& blob, std::uint32_t word) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        blob.push_back(static_cast<unsigned char>(word >> shift));
    }
}

std::vector<unsigned char> make_blob(std::uint32_t type, std::uint32_t width,
                                     std::uint32_t height) {
    std::vector<unsigned char> blob = {'G', 'd', 'k', 'P'};
    put_word(blob, 24 + width * height * 4);
    put_word(blob, type);
    put_word(blob, width * 4);
    put_word(blob, width);
    put_word(blob, height);
    for (std::uint32_t i = 0; i < width * height * 4; ++i) {
        blob.push_back(static_cast<unsigned char>(i));
    }
    return blob;
}

TEST(InlineImage, SharesTheBlobsPixelsAndLeavesTheBlobAlone) {
    const std::vector<unsigned char> blob = make_blob(0x01010002, 5, 3);
    const std::vector<unsigned char> before = blob;
    Pixbuf* pixbuf = orx_pixbuf_new_from_inline(nullptr, blob.data());
    ASSERT_NE(pixbuf, nullptr);
    EXPECT_EQ(pixbuf->width, 5U);
    EXPECT_EQ(pixbuf->height, 3U);
    EXPECT_EQ(pixbuf->rowstride, 20U);
    EXPECT_EQ(pixbuf->n_channels, 4U);
    EXPECT_EQ(pixbuf->pixels, blob.data() + 24);
    orx_pixbuf_free_inline(nullptr, pixbuf);
    EXPECT_EQ(blob, before);
    orx_pixbuf_free_inline(nullptr, nullptr);
}

TEST(InlineImage, WithoutTheMagicIsRefusedWithOneLine) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
        std::vector<unsigned char> blob = make_blob(0x01010002, 2, 2);
        blob[byte] = 'Q';
        testing::internal::CaptureStdout();
        EXPECT_EQ(orx_pixbuf_new_from_inline(nullptr, blob.data()), nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), refusal);
    }
    testing::internal::CaptureStdout();
    EXPECT_EQ(orx_pixbuf_new_from_inline(nullptr, nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), refusal);
}

TEST(InlineImage, LengthAndTypeAreNotLookedAt) {
    std::vector<unsigned char> blob = make_blob(0x02010002, 2, 2); // run-length encoded, it says
    blob[4] = blob[5] = blob[6] = blob[7] = 0xFF;
    testing::internal::CaptureStdout();
    Pixbuf* pixbuf = orx_pixbuf_new_from_inline(nullptr, blob.data());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    ASSERT_NE(pixbuf, nullptr);
    EXPECT_EQ(pixbuf->pixels[0], 0);
    EXPECT_EQ(pixbuf->pixels[15], 15);
    orx_pixbuf_free_inline(nullptr, pixbuf);
}

TEST(InlineImage, OfNoSizeDrawsNothing) {
    for (const auto& [width, height] : {std::pair{0U, 4U}, std::pair{4U, 0U}, std::pair{0U, 0U}}) {
        const std::vector<unsigned char> blob = make_blob(0x01010002, width, height);
        Pixbuf* pixbuf = orx_pixbuf_new_from_inline(nullptr, blob.data());
        ASSERT_NE(pixbuf, nullptr);
        Pixbuf* ground = orx_pixbuf_new(nullptr, 4, 4);
        orx_pixbuf_composite(nullptr, pixbuf, ground, 0, 0, 0, 0, 4, 4);
        orx_pixbuf_copy_area(nullptr, pixbuf, ground, 0, 0, 0, 0, 4, 4);
        EXPECT_EQ(ground->pixels[0], 0);
        orx_pixbuf_free(nullptr, ground);
        orx_pixbuf_free_inline(nullptr, pixbuf);
    }
}

} // namespace
