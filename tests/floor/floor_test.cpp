// floor_test.cpp: the installer starts on old distributions, because it asks for nothing that they
// do not have.
#include "payload/scratch_folder.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>

namespace {

struct Verdict {
    int status;
    std::string symbols; // one on a line
};

Verdict symbols_above_floor(const std::string& executable) {
    support::ChildProcess check(
        {.command = {"python3", "-B", "tools/make_installer/floor.py", executable}});
    const auto end = check.wait_for_end();
    EXPECT_EQ(check.error_output(), "");
    return {end && end->exit_status ? *end->exit_status : -1, check.output()};
}

// A library that uses what the text declares and calls, linked as the machine's compiler does.
std::string library_that_calls(const ScratchFolder& folder, const std::string& text) {
    std::ofstream(folder.file("library.c")) << text;
    std::string library = folder.file("library.so");
    support::ChildProcess compiler({.command = {TEST_C_COMPILER, "-w", "-fPIC", "-shared", "-o",
                                                library, folder.file("library.c")}});
    EXPECT_TRUE(compiler.wait_for_end().has_value());
    EXPECT_EQ(compiler.error_output(), "");
    return library;
}

} // namespace

TEST(Floor, InstallerNeedsNoSymbolAboveIt) {
    const Verdict verdict = symbols_above_floor(ZEPH_INSTALLER);
    EXPECT_EQ(verdict.symbols, "");
    EXPECT_EQ(verdict.status, 0);
}

TEST(Floor, InstallerNeedsOnlyTheseLibraries) {
    const std::string dynamic =
        support::output_of({"readelf", "--wide", "--dynamic", ZEPH_INSTALLER});
    std::set<std::string> needed;
    const std::regex entry("\\(NEEDED\\).*\\[(.*)\\]");
    for (std::sregex_iterator at(dynamic.begin(), dynamic.end(), entry), end; at != end; ++at) {
        needed.insert((*at)[1]);
    }
    std::erase_if(needed, [](const std::string& name) { return name.starts_with("ld-linux-"); });
    EXPECT_EQ(needed, (std::set<std::string>{"libX11.so.6", "libc.so.6", "libm.so.6",
                                             "libpthread.so.0", "libutil.so.1"}));
}

TEST(Floor, GivesAProgramWhatTheCLibraryWould) {
    const ScratchFolder folder;
    std::ofstream(folder.file("seven")) << "7 bytes";
    support::ChildProcess program({.command = {PROGRAM_ON_THE_FLOOR, folder.file("seven")}});
    const auto end = program.wait_for_end();
    EXPECT_EQ(program.output(), "");
    EXPECT_EQ(program.error_output(), "");
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->exit_status, 0);
}

TEST(Floor, CheckNamesEachSymbolAboveIt) {
    const ScratchFolder folder;
    const std::string library = library_that_calls(
        folder, "int explicit_bzero(), XFreeThreads(), XPending(), close();"
                "int use() { return explicit_bzero() + XFreeThreads() + XPending() + close(); }");
    const Verdict verdict = symbols_above_floor(library);
    EXPECT_EQ(verdict.status, 1);
    EXPECT_EQ(verdict.symbols, "XFreeThreads, libX11 1.8.3\nexplicit_bzero@GLIBC_2.25\n");
}

TEST(Floor, CheckLetsAProgramAskWhetherASymbolIsThere) {
    const ScratchFolder folder;
    const std::string library =
        library_that_calls(folder, "int XSetIOErrorExitHandler() __attribute__((weak));"
                                   "int use() { return XSetIOErrorExitHandler != 0; }");
    const Verdict verdict = symbols_above_floor(library);
    EXPECT_EQ(verdict.symbols, "");
    EXPECT_EQ(verdict.status, 0);
}
