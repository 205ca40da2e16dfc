// A folder is sorted where there is no memory for it, too.

#include "gui/ORX/widgets/folder_listing.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr int rows = 60;

// Every third one is a folder; the numbers run down.
void fill(DirEntry* table) {
    for (int row = 0; row < rows; ++row) {
        table[row].name = strdup(("entry " + std::to_string(rows - row)).c_str());
        table[row].mode = row % 3 == 0 ? S_IFDIR | 0755 : S_IFREG | 0644;
    }
}

bool in_order(const DirEntry* table) {
    for (int row = 1; row < rows; ++row) {
        const bool folder_before = folder_entry_is_directory(&table[row - 1]);
        const bool folder = folder_entry_is_directory(&table[row]);
        const int before = std::atoi(table[row - 1].name + std::strlen("entry "));
        const int number = std::atoi(table[row].name + std::strlen("entry "));
        if (folder_before == folder ? before >= number : folder) {
            return false;
        }
    }
    return true;
}

// Exits with 0 when the order is right; 2 when there was memory after all.
[[noreturn]] void sort_without_memory(DirEntry* table) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_AS, &none);
    for (std::size_t size = 1 << 20; size >= 16; size /= 2) {
        while (std::malloc(size) != nullptr) {
        }
    }
    if (std::malloc(16) != nullptr) {
        std::_Exit(2);
    }
    folder_listing_sort(table);
    std::_Exit(in_order(table) ? 0 : 1);
}

TEST(NoMemorySortingDeathTest, KeepsTheOrder) {
    const auto table = std::make_unique<DirEntry[]>(folder_listing_capacity);
    fill(table.get());
    EXPECT_EXIT(sort_without_memory(table.get()), testing::ExitedWithCode(0), "")
        << "a folder is shown in a mess";
    folder_listing_clear(table.get());
}

} // namespace
