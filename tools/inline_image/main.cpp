// main.cpp: inline_image, which turns a PNG file into a picture that the program can carry.
#include "inline_image_blob.h"
#include "picture_file.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace {

// More than any screen; keeps the length within the blob's 32-bit words.
constexpr std::uint32_t longest_side = 16384;

int fail(const std::string& message) {
    static_cast<void>(std::fprintf(stderr, "inline_image: %s\n", message.c_str()));
    return 1;
}

// The side's length, 0 when the text is no usable length.
std::uint32_t parse_side(std::string_view text) {
    std::uint32_t side = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), side);
    return error == std::errc() && end == text.data() + text.size() && side <= longest_side ? side
                                                                                            : 0;
}

// A device that was named as output stays.
void remove_regular_file(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path, ignored)) {
        std::filesystem::remove(path, ignored);
    }
}

// Empty when the file was written in full. A half-written file is removed, so that no later build
// step takes it for a picture.
std::string write_file(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    bool written = file != nullptr;
    int reason = errno;
    if (written) {
        written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        reason = errno;
        if (std::fclose(file) != 0 && written) {
            written = false;
            reason = errno;
        }
        if (!written) {
            remove_regular_file(path);
        }
    }
    return written ? ""
                   : path + ": cannot be written (" + std::strerror(reason) +
                         "); make room or name another file";
}

} // namespace

int main(int argument_count, char** arguments) {
    if (argument_count != 5) {
        return fail("usage: inline_image PICTURE.png WIDTH HEIGHT OUTPUT.blob");
    }
    const PictureSize size = {parse_side(arguments[2]), parse_side(arguments[3])};
    if (size.width == 0 || size.height == 0) {
        return fail(std::string(arguments[2]) + " " + arguments[3] +
                    " is no size in pixels; give a width and a height from 1 to " +
                    std::to_string(longest_side));
    }
    const PictureFile picture = read_picture_file(arguments[1], size);
    if (!picture.complaint.empty()) {
        return fail(picture.complaint);
    }
    const std::string complaint = write_file(arguments[4], inline_image_blob(size, picture.pixels));
    return complaint.empty() ? 0 : fail(complaint);
}
