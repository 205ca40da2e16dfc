// product_folder.h: a product folder of a test's own, and ./make-installer run on it.
#pragma once

#include "payload/scratch_folder.h"

#include <chrono>
#include <string>
#include <vector>

struct Outcome {
    int status = -1; // -1: it did not end in time
    std::string said;
    std::string complained;
};

// Long enough for a whole build on a busy machine.
inline constexpr std::chrono::minutes build_patience{12};

[[nodiscard]] Outcome make_installer(const std::vector<std::string>& arguments);

// What --new lays out, with a small plug-in put in, so that it is right until a test breaks it.
class ProductFolder {
public:
    ProductFolder();

    [[nodiscard]] std::string path() const { return scratch_.file("product"); }
    [[nodiscard]] std::string file(const std::string& name) const { return path() + "/" + name; }
    [[nodiscard]] std::string build() const { return scratch_.file("build"); }

    // Gives the setting another value, as it is written in the file: quotes and all.
    void set(const std::string& setting, const std::string& written) const;
    void remove(const std::string& setting) const;
    void write(const std::string& name, const std::string& content) const;
    [[nodiscard]] std::string read(const std::string& name) const;

    // Runs ./make-installer on it. What it says of a wrong product is on standard error.
    [[nodiscard]] Outcome make() const;

    // Expects that nothing is built and that one complaint has all of these words.
    void expect_refused(const std::vector<std::string>& words) const;

private:
    ScratchFolder scratch_;
};
