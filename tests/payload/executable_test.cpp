// executable_test.cpp: the built program carries the archive and the icon, one behind the other.
#include "scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace {

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(Executable, CarriesTheArchiveWithTheIconRightBehindIt) {
    const std::string program = bytes_of(ZEPH_INSTALLER);
    const std::string archive = bytes_of(payload_archive);
    const std::string icon = bytes_of("resources/artwork/desktop_icon.png");
    ASSERT_EQ(archive.size(), 1058756U);
    ASSERT_EQ(icon.size(), 304U);
    EXPECT_NE(program.find(archive + icon), std::string::npos);
}

TEST(Executable, DoesNotLetThePayloadBeWritten) {
    // Relocated once, then read-only: the archive lies inside the segment that the loader protects.
    const std::string symbols = support::output_of({"nm", ZEPH_INSTALLER});
    const auto address = [](const std::string& text, std::size_t at) {
        return std::stoul(text.substr(at), nullptr, 16);
    };
    const std::size_t symbol = symbols.find(" zeph_payload_archive\n");
    ASSERT_NE(symbol, std::string::npos);
    const unsigned long archive = address(symbols, symbols.rfind('\n', symbol) + 1);

    const std::string segments =
        support::output_of({"readelf", "--wide", "--segments", ZEPH_INSTALLER});
    const std::size_t relro = segments.find("GNU_RELRO");
    ASSERT_NE(relro, std::string::npos);
    // Columns: type, offset, virtual address, physical address, file size, memory size.
    std::istringstream line(segments.substr(relro));
    std::string type;
    std::string column[5];
    line >> type;
    for (std::string& text : column) {
        line >> text;
    }
    const unsigned long begin = address(column[1], 0);
    const unsigned long length = address(column[4], 0);
    EXPECT_GE(archive, begin);
    EXPECT_LE(archive + 1058756 + 304, begin + length);
}
