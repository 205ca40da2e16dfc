// What a program that plays installations is told on its command line: NAME=VALUE..., with every
// name that it asks for. "~/" at a folder's beginning stands for the home of the person who is
// played.

#pragma once

#include "support/worlds/accounts.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace end_to_end {

using Words = std::map<std::string, std::string>;

// Runs play with the words and gives the program's exit status: 2 when a word is missing, 1 when
// play throws or the machine allows no private worlds.
int play_with_words(int count, char** arguments, const std::vector<const char*>& names,
                    const std::function<void(const Words&)>& play);

// A folder of the words as that account has it.
[[nodiscard]] std::string place_of(const std::string& folder, const support::Account& account);

// A topmost member of an archive, and where it goes.
struct Item {
    std::string name;
    std::string folder;
};

// The items of a text with a line NAME/FOLDER for each; chosen takes the place of an empty FOLDER.
[[nodiscard]] std::vector<Item> items_of(const std::string& text, const std::string& chosen,
                                         const support::Account& account);

} // namespace end_to_end
