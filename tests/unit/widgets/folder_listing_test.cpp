// folder_listing_test.cpp: reading real folders, hiding, sorting and finding entries.

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"
#include "gui/ORX/widgets/folder_listing.h"
#include "unit/widgets/test_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t a_file = S_IFREG | 0644;
constexpr std::uint32_t a_folder = S_IFDIR | 0755;

// A table as the dialog has one.
class Table {
public:
    Table() : rows_(new DirEntry[folder_listing_capacity]{}) {}
    ~Table() { folder_listing_clear(rows_.get()); }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    [[nodiscard]] DirEntry* rows() { return rows_.get(); }
    [[nodiscard]] bool read(const std::string& path) {
        return folder_listing_read(rows_.get(), path.c_str(), &visible);
    }
    void put(int row, const std::string& name, std::uint32_t mode, bool hidden = false) {
        rows_.get()[row].name = strdup(name.c_str());
        rows_.get()[row].mode = mode;
        rows_.get()[row].hidden = hidden ? 1 : 0;
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (int row = 0; row < folder_listing_capacity && rows_.get()[row].name != nullptr;
             ++row) {
            all.emplace_back(rows_.get()[row].name);
        }
        return all;
    }
    [[nodiscard]] std::vector<std::string> shown_names() const {
        std::vector<std::string> all;
        for (int row = 0; row < folder_listing_capacity && rows_.get()[row].name != nullptr;
             ++row) {
            if (rows_.get()[row].hidden == 0) {
                all.emplace_back(rows_.get()[row].name);
            }
        }
        return all;
    }
    [[nodiscard]] const DirEntry* find(const std::string& name) const {
        for (int row = 0; row < folder_listing_capacity && rows_.get()[row].name != nullptr;
             ++row) {
            if (name == rows_.get()[row].name) {
                return &rows_.get()[row];
            }
        }
        return nullptr;
    }

    std::int32_t visible = -1;

private:
    std::unique_ptr<DirEntry[]> rows_;
};

// The order by its plainest rule: neighbours are swapped until none is out of order.
void bubble_sort(DirEntry* rows) {
    const auto out_of_order = [](const DirEntry& previous, const DirEntry& current) {
        if (previous.name == nullptr || current.name == nullptr) {
            return false;
        }
        const bool previous_folder = S_ISDIR(previous.mode);
        const bool current_folder = S_ISDIR(current.mode);
        if (previous_folder == current_folder) {
            return strnatcmp0(previous.name, current.name, 0) > 0;
        }
        return current_folder;
    };
    int bound = folder_listing_capacity;
    while (bound > 1) {
        int last_swap = 0;
        for (int i = 1; i < bound; ++i) {
            if (out_of_order(rows[i - 1], rows[i])) {
                std::swap(rows[i - 1].mode, rows[i].mode);
                std::swap(rows[i - 1].name, rows[i].name);
                std::swap(rows[i - 1].hidden, rows[i].hidden);
                last_swap = i;
            }
        }
        bound = last_swap;
    }
}

std::int32_t ten_pixels_a_byte(const void* /*context*/, const char* name) {
    return static_cast<std::int32_t>(strlen(name)) * 10;
}

TEST(FolderReading, ListsEveryEntryOnceWithDotAndDotDot) {
    const TestFolder folder;
    folder.add_file("a");
    folder.add_folder("b");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    const auto names = table.names();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
              (std::set<std::string>{".", "..", "a", "b"}));
    EXPECT_EQ(table.visible, 4);
    EXPECT_TRUE(folder_entry_is_directory(table.find("b")));
    EXPECT_FALSE(folder_entry_is_directory(table.find("a")));
}

TEST(FolderReading, LeavesOutHiddenFilesButNotHiddenFolders) {
    const TestFolder folder;
    for (const char* name : {".profile", ".a", "..twodots", "..."}) {
        folder.add_file(name);
    }
    folder.add_folder(".vst");
    folder.add_folder("..folder");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    folder_listing_sort(table.rows());
    EXPECT_EQ(table.names().size(), 8U); // hidden ones keep a row
    EXPECT_EQ(table.shown_names(),
              (std::vector<std::string>{".", "..", "..folder", ".vst", "...", "..twodots"}));
    EXPECT_EQ(table.visible, 6);
}

TEST(FolderReading, TellsHiddenByTheSecondCharacter) {
    EXPECT_TRUE(folder_entry_is_hidden(".a", a_file));
    EXPECT_TRUE(folder_entry_is_hidden(".\n", a_file));
    EXPECT_FALSE(folder_entry_is_hidden(".", a_file));
    EXPECT_FALSE(folder_entry_is_hidden("..", a_file));
    EXPECT_FALSE(folder_entry_is_hidden("..a", a_file));
    EXPECT_FALSE(folder_entry_is_hidden("a.", a_file));
    EXPECT_FALSE(folder_entry_is_hidden(".a", a_folder));
}

TEST(FolderReading, FollowsLinks) {
    const TestFolder folder;
    folder.add_folder("real");
    folder.add_file("file");
    folder.add_link("to_folder", "real");
    folder.add_link("to_file", "file");
    folder.add_link(".hidden_to_folder", "real");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    EXPECT_TRUE(folder_entry_is_directory(table.find("to_folder")));
    EXPECT_FALSE(folder_entry_is_directory(table.find("to_file")));
    EXPECT_EQ(table.find(".hidden_to_folder")->hidden, 0);
}

TEST(FolderReading, AnEntryWithoutStatusKeepsTheModeOfTheOneBefore) {
    const TestFolder folder;
    folder.add_folder("real");
    folder.add_link("dangling", "nowhere");
    folder.add_link("circle", "circle");
    folder.add_file("plain");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    std::uint32_t before = 0;
    for (const DirEntry* row = table.rows(); row->name != nullptr; ++row) {
        struct stat status {};
        if (stat(folder.path_of(row->name).c_str(), &status) == 0) {
            before = status.st_mode;
        }
        EXPECT_EQ(row->mode & S_IFMT, before & S_IFMT) << row->name;
    }
}

TEST(FolderReading, ListsPipesSocketsAndDevicesWithoutOpeningThem) {
    const TestFolder folder;
    folder.add_pipe("pipe");
    folder.add_socket("socket");
    folder.add_link("device", "/dev/null");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    for (const char* name : {"pipe", "socket", "device"}) {
        ASSERT_NE(table.find(name), nullptr);
        EXPECT_FALSE(folder_entry_is_directory(table.find(name)));
    }
}

TEST(FolderReading, KeepsNamesByteForByte) {
    const TestFolder folder;
    const std::vector<std::string> names = {
        "two words",
        "it's \"quoted\"",
        "new\nline",
        "\x1B[31mred\x1B[0m",
        "\xC3\xA4\xE2\x82\xAC",
        "\xFF\xFE\x80",
        std::string(255, 'W'),
        "-rf",
        "%s%n",
    };
    for (const std::string& name : names) {
        folder.add_file(name);
    }
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    for (const std::string& name : names) {
        EXPECT_NE(table.find(name), nullptr) << name;
    }
}

TEST(FolderReading, TakesAnyNumberOfEntriesAndDropsThosePastTheTable) {
    for (const int entries : {0, 1, 4093, 4094, 4095, 4998}) { // "." and ".." besides
        const TestFolder folder;
        folder.add_files(entries, "file");
        Table table;
        ASSERT_TRUE(table.read(folder.path()));
        const int listed = std::min(entries + 2, folder_listing_capacity);
        EXPECT_EQ(table.names().size(), static_cast<std::size_t>(listed)) << entries;
        EXPECT_EQ(table.visible, listed) << entries;
    }
}

TEST(FolderReading, EntriesMayVanishWhileItReads) {
    const TestFolder folder;
    folder.add_files(200, "stays");
    std::atomic<bool> stop{false};
    std::thread other([&] {
        while (!stop) {
            folder.add_files(50, "goes");
            for (int i = 0; i < 50; ++i) {
                unlink(folder.path_of("goes" + std::to_string(i)).c_str());
            }
        }
    });
    for (int round = 0; round < 100; ++round) {
        Table table;
        EXPECT_TRUE(table.read(folder.path()));
        EXPECT_GE(table.visible, 202);
        EXPECT_NE(table.find("stays199"), nullptr);
    }
    stop = true;
    other.join();
}

TEST(FolderReading, CountsHiddenEntriesInTheTable) {
    const TestFolder folder;
    folder.add_files(folder_listing_capacity + 10, ".hidden");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    EXPECT_EQ(table.names().size(), static_cast<std::size_t>(folder_listing_capacity));
    EXPECT_LE(table.visible, 2);
}

TEST(FolderReading, AFolderThatCannotBeOpenedGivesAnEmptyTable) {
    const TestFolder folder;
    folder.add_file("a");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    EXPECT_FALSE(table.read(folder.path_of("gone")));
    EXPECT_EQ(table.visible, 0);
    EXPECT_TRUE(table.names().empty());
    EXPECT_FALSE(table.read(folder.path_of("a")));
}

TEST(FolderReading, AFolderDeletedWhileItIsShownIsEmpty) {
    const WorkingDirectory working_directory;
    const TestFolder folder;
    folder.add_folder("doomed");
    working_directory.enter(folder.path_of("doomed"));
    ASSERT_EQ(rmdir(folder.path_of("doomed").c_str()), 0);
    Table table;
    (void)table.read("./");
    EXPECT_EQ(table.visible, 0);
    EXPECT_TRUE(table.names().empty());
}

TEST(FolderReading, ReadingAgainStartsFromNothing) {
    const TestFolder folder;
    folder.add_files(3, "file");
    Table table;
    ASSERT_TRUE(table.read(folder.path()));
    folder_listing_place(table.rows(), ten_pixels_a_byte, nullptr);
    table.rows()[0].selected = 1;
    ASSERT_TRUE(table.read(folder.path()));
    EXPECT_EQ(table.visible, 5);
    for (int row = 0; row < folder_listing_capacity; ++row) {
        ASSERT_EQ(table.rows()[row].selected, 0);
        ASSERT_EQ(table.rows()[row].y, 0);
    }
}

TEST(FolderSorting, PutsFoldersFirstAndEachGroupInNaturalOrder) {
    Table table;
    table.put(0, "file10", a_file);
    table.put(1, "zoo", a_folder);
    table.put(2, "file2", a_file);
    table.put(3, "a10", a_folder);
    table.put(4, "a9", a_folder);
    table.put(5, "..", a_folder);
    table.put(6, ".", a_folder);
    folder_listing_sort(table.rows());
    EXPECT_EQ(table.names(),
              (std::vector<std::string>{".", "..", "a9", "a10", "zoo", "file2", "file10"}));
}

TEST(FolderSorting, MovesModeAndHiddenWithTheName) {
    Table table;
    table.put(0, "b", a_file);
    table.put(1, ".a", S_IFIFO | 0600, true);
    folder_listing_sort(table.rows());
    EXPECT_EQ(table.names(), (std::vector<std::string>{".a", "b"}));
    EXPECT_EQ(table.rows()[0].hidden, 1);
    EXPECT_EQ(table.rows()[0].mode, static_cast<std::uint32_t>(S_IFIFO | 0600));
    EXPECT_EQ(table.rows()[1].hidden, 0);
}

TEST(FolderSorting, GivesExactlyTheOrderOfABubbleSort) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string alphabet = "001 aAbB\t.\x80\xC3\xFF";
    for (const int count : {0, 1, 2, 3, 17, 100, 1000, 1000, 4096}) {
        Table fast;
        Table plain;
        for (int row = 0; row < count; ++row) {
            std::string name(1 + random() % 5, '\0');
            for (char& c : name) {
                c = alphabet[random() % alphabet.size()];
            }
            // The mode tells rows with equal names apart.
            const std::uint32_t mode = (random() % 3 == 0 ? S_IFDIR : S_IFREG) | (random() % 4096);
            const bool hidden = random() % 5 == 0;
            fast.put(row, name, mode, hidden);
            plain.put(row, name, mode, hidden);
        }
        folder_listing_sort(fast.rows());
        bubble_sort(plain.rows());
        for (int row = 0; row < count; ++row) {
            ASSERT_STREQ(fast.rows()[row].name, plain.rows()[row].name) << row << " of " << count;
            ASSERT_EQ(fast.rows()[row].mode, plain.rows()[row].mode) << row << " of " << count;
            ASSERT_EQ(fast.rows()[row].hidden, plain.rows()[row].hidden) << row;
        }
        for (int row = count; row < folder_listing_capacity; ++row) {
            ASSERT_EQ(fast.rows()[row].name, nullptr);
        }
    }
}

TEST(FolderRows, ArePlacedSixteenApartAndHiddenOnesTakeNoPlace) {
    Table table;
    table.put(0, "a", a_folder);
    table.put(1, ".h", a_file, true);
    table.put(2, "bcd", a_file);
    folder_listing_place(table.rows(), ten_pixels_a_byte, nullptr);
    EXPECT_EQ(table.rows()[0].x, 32);
    EXPECT_EQ(table.rows()[0].y, 16);
    EXPECT_EQ(table.rows()[0].text_width, 10);
    EXPECT_EQ(table.rows()[2].y, 32);
    EXPECT_EQ(table.rows()[2].text_width, 30);
}

TEST(FolderRows, AreHitOnMarkNameAndMarginButNotBehindTheName) {
    Table table;
    table.put(0, "a", a_folder);
    table.put(1, ".h", a_file, true);
    table.put(2, "bcd", a_file);
    folder_listing_place(table.rows(), ten_pixels_a_byte, nullptr);
    DirEntry* const first = &table.rows()[0];
    DirEntry* const second = &table.rows()[2];
    EXPECT_EQ(folder_listing_at(table.rows(), 41, 8), first);
    EXPECT_EQ(folder_listing_at(table.rows(), 42, 8), nullptr);
    EXPECT_EQ(folder_listing_at(table.rows(), 20, 8), first); // folder mark
    EXPECT_EQ(folder_listing_at(table.rows(), 0, 8), first);  // margin
    EXPECT_EQ(folder_listing_at(table.rows(), -5, 8), first);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 0), first);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 16), first); // the edge is the upper row's
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 17), second);
    EXPECT_EQ(folder_listing_at(table.rows(), 61, 32), second);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 33), nullptr);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, -1), nullptr);
}

TEST(FolderRows, OfAFullTableAreAllFound) {
    Table table;
    for (int row = 0; row < folder_listing_capacity; ++row) {
        table.put(row, "x", a_file);
    }
    folder_listing_place(table.rows(), ten_pixels_a_byte, nullptr);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 16 * 4096 - 1), &table.rows()[4095]);
    EXPECT_EQ(folder_listing_at(table.rows(), 33, 16 * 4096 + 1), nullptr);
}

TEST(FolderRows, LoseTheirSelection) {
    Table table;
    table.put(0, "a", a_folder);
    EXPECT_FALSE(folder_listing_clear_selection(table.rows()));
    table.rows()[0].selected = 1;
    EXPECT_TRUE(folder_listing_clear_selection(table.rows()));
    EXPECT_EQ(table.rows()[0].selected, 0);
}

TEST(FolderListSize, IsAtLeastTheViewAndGrowsBySixteenARow) {
    EXPECT_EQ(folder_list_height(0), 268);
    EXPECT_EQ(folder_list_height(3), 268);
    EXPECT_EQ(folder_list_height(16), 268);
    EXPECT_EQ(folder_list_height(17), 274);
    EXPECT_EQ(folder_list_height(100), 1602);
}

TEST(FolderListSize, IsCutAtWhatAPixmapHolds) {
    EXPECT_EQ(folder_list_device_height(100, 1.0F), 1602);
    EXPECT_EQ(folder_list_device_height(100, 1.5F), 2403);
    EXPECT_EQ(folder_list_device_height(2047, 1.0F), 32754);
    EXPECT_EQ(folder_list_device_height(2048, 1.0F), 32767);
    EXPECT_EQ(folder_list_device_height(4096, 2.0F), 32767);
}

TEST(FolderListSize, TellsTheThumbOfTheScrollBar) {
    EXPECT_FLOAT_EQ(folder_list_thumb_percent(268, 1.0F), 100.0F);
    EXPECT_NEAR(folder_list_thumb_percent(1602, 1.0F), 16.98, 0.005);
    EXPECT_NEAR(folder_list_thumb_percent(2403, 1.5F), 16.98, 0.005);
    EXPECT_FLOAT_EQ(folder_list_thumb_percent(0, 1.0F), 100.0F);
}

} // namespace
