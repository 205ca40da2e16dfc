// product_folder.cpp: lays out, edits and runs.
#include "make_installer/product_folder.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

// The line that gives the setting its value, up to a comment behind it.
void replace_line(const ProductFolder& folder, const std::string& setting,
                  const std::string& line) {
    std::istringstream text(folder.read("product.toml"));
    std::string changed;
    bool found = false;
    for (std::string old; std::getline(text, old);) {
        const bool here = old.starts_with(setting + " =");
        found = found || here;
        changed += here ? line : old + "\n";
    }
    if (!found) {
        throw std::runtime_error("no setting " + setting);
    }
    folder.write("product.toml", changed);
}

} // namespace

Outcome make_installer(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"./make-installer"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    support::ChildProcess child({.command = command});
    const auto end = child.wait_for_end(build_patience);
    return {end && end->exit_status ? *end->exit_status : -1, child.output(), child.error_output()};
}

ProductFolder::ProductFolder() {
    const Outcome laid_out = make_installer({"--new", path()});
    if (laid_out.status != 0) {
        throw std::runtime_error(laid_out.complained);
    }
    std::filesystem::create_directory(file("my-plug-in.lv2"));
    write("my-plug-in.lv2/manifest.ttl", "# a plug-in\n");
}

void ProductFolder::set(const std::string& setting, const std::string& written) const {
    replace_line(*this, setting, setting + " = " + written + "\n");
}

void ProductFolder::remove(const std::string& setting) const {
    replace_line(*this, setting, "");
}

void ProductFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream out(file(name), std::ios::binary);
    out << content;
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + name);
    }
}

std::string ProductFolder::read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Outcome ProductFolder::make() const {
    return make_installer({"--build", build(), "--output", path() + "/dist", path()});
}

void ProductFolder::expect_refused(const std::vector<std::string>& words) const {
    const Outcome outcome = make();
    EXPECT_EQ(outcome.status, 1) << outcome.said;
    std::istringstream lines(outcome.complained);
    bool found = false;
    for (std::string line; std::getline(lines, line);) {
        bool all = line.find("product.toml:") != std::string::npos;
        for (const std::string& word : words) {
            all = all && line.find(word) != std::string::npos;
        }
        found = found || all;
    }
    EXPECT_TRUE(found) << "expected \"" << words.front() << "\" in:\n" << outcome.complained;
    EXPECT_EQ(outcome.complained.find("Traceback"), std::string::npos) << outcome.complained;
    EXPECT_FALSE(std::filesystem::exists(build()));
    EXPECT_FALSE(std::filesystem::exists(path() + "/dist"));
}
