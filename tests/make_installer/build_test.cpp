// build_test.cpp: the second product built twice, and what the executable says of itself.
#include "make_installer/product_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using support::output_of;

namespace {

constexpr const char* installer_name = "lantern-tilt-1.2.0-installer";

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

// One test, because a build is long: each claim about what was built stands in a section of its
// own.
TEST(Build, SecondProductIsReproducibleAndTellsTheTruth) {
    const ScratchFolder scratch;
    const std::string build = LANTERN_BUILD "/build"; // made before the tests
    const std::string plain = LANTERN_BUILD "/dist";
    const Outcome first =
        make_installer({"--build", build, "--output", plain, "products/lantern-tilt"});
    ASSERT_EQ(first.status, 0) << first.said << first.complained;
    const std::string installer = plain + "/" + installer_name;
    const std::string bytes = bytes_of(installer);

    {
        SCOPED_TRACE("the summary");
        // Columns are as wide as they must be.
        const std::string said = std::regex_replace(first.said, std::regex(" +"), " ");
        for (const std::string& line :
             {std::string("product Lantern Tilt 1.2.0\n"), std::to_string(bytes.size()) + " bytes",
              std::string("drwxr-xr-x root/root 0 lantern-tilt.lv2\n"),
              std::string("-rwxr-xr-x root/root"), std::string("oldest libc 2.17\n"),
              "sha256 " + output_of({"sha256sum", installer}).substr(0, 64)}) {
            EXPECT_NE(said.find(line), std::string::npos) << line << "\n" << said;
        }
        EXPECT_EQ(first.said.find("NOT "), std::string::npos) << first.said;
    }
    {
        SCOPED_TRACE("what it needs of the person's machine");
        const std::string dynamic = output_of({"readelf", "--wide", "--dynamic", installer});
        std::set<std::string> needed;
        const std::regex entry("\\(NEEDED\\).*\\[(.*)\\]");
        for (std::sregex_iterator at(dynamic.begin(), dynamic.end(), entry), end; at != end; ++at) {
            needed.insert((*at)[1]);
        }
        // The last is the C library's own loader.
        const std::set<std::string> allowed = {"libX11.so.6",  "libc.so.6",
                                               "libm.so.6",    "libpthread.so.0",
                                               "libutil.so.1", "ld-linux-x86-64.so.2"};
        for (const std::string& library : needed) {
            EXPECT_TRUE(allowed.contains(library)) << library;
        }
        const std::string symbols = output_of({"readelf", "--wide", "--dyn-syms", installer});
        EXPECT_EQ(symbols.find(".symtab"), std::string::npos);
    }
    {
        SCOPED_TRACE("the archive inside");
        const std::string archive = bytes_of(build + "/payload.tar.gz");
        EXPECT_NE(bytes.find(archive), std::string::npos);
        EXPECT_NE(bytes.find(bytes_of("products/lantern-tilt/artwork/desktop_icon.png")),
                  std::string::npos);
        const std::string list =
            output_of({"tar", "--list", "--verbose", "-zf", build + "/payload.tar.gz"});
        std::istringstream lines(list);
        std::string last_name;
        for (std::string line; std::getline(lines, line);) {
            EXPECT_NE(line[8], 'w') << line; // writable by everybody
            EXPECT_NE(line.find(" root/root "), std::string::npos) << line;
            const std::string name = line.substr(line.rfind(' ') + 1);
            EXPECT_TRUE(name.starts_with("lantern-tilt.lv2/")) << line;
            EXPECT_LT(last_name, name);
            last_name = name;
        }
    }
    {
        SCOPED_TRACE("the same folder under a name with blanks, elsewhere, at another time");
        const std::string copy = scratch.file("my 'own' $(products)/lantern tilt");
        fs::create_directories(fs::path(copy).parent_path());
        (void)output_of({"cp", "-a", "products/lantern-tilt", copy}); // the times are packed, too
        const Outcome second = make_installer(
            {"--build", scratch.file("a build"), "--output", scratch.file("an output"), copy});
        ASSERT_EQ(second.status, 0) << second.said << second.complained;
        EXPECT_NE(second.said.find("Building: "), std::string::npos) << second.said;
        EXPECT_TRUE(bytes_of(scratch.file("an output/") + installer_name) == bytes);
    }
    {
        SCOPED_TRACE("a second run has nothing to do");
        const Outcome again =
            make_installer({"--build", build, "--output", plain, "products/lantern-tilt"});
        EXPECT_EQ(again.status, 0) << again.complained;
        EXPECT_TRUE(bytes_of(installer) == bytes);
        EXPECT_EQ(again.said.find("Building: "), std::string::npos) << again.said;
    }
    {
        SCOPED_TRACE("a changed picture is built in");
        const std::string copy = scratch.file("my 'own' $(products)/lantern tilt");
        fs::copy_file(copy + "/artwork/window_icon.png", copy + "/artwork/folder_icon.png",
                      fs::copy_options::overwrite_existing);
        const Outcome changed = make_installer(
            {"--build", scratch.file("a build"), "--output", scratch.file("an output"), copy});
        EXPECT_EQ(changed.status, 0) << changed.complained;
        EXPECT_FALSE(bytes_of(scratch.file("an output/") + installer_name) == bytes);
    }
}
