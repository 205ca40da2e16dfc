// Reading words.

#include "end_to_end/trial_words.h"

#include "support/text_lines.h"
#include "support/worlds/private_world.h"

#include <cstdio>
#include <stdexcept>

namespace end_to_end {

int play_with_words(int count, char** arguments, const std::vector<const char*>& names,
                    const std::function<void(const Words&)>& play) {
    Words words;
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        const std::size_t equals = word.find('=');
        words[word.substr(0, equals)] = equals == std::string::npos ? "" : word.substr(equals + 1);
    }
    for (const char* name : names) {
        if (!words.contains(name)) {
            std::fprintf(stderr, "%s: %s=... is missing\n", arguments[0], name);
            return 2;
        }
    }
    if (const auto obstacle = support::world_obstacle()) {
        std::fprintf(stderr, "%s\n", obstacle->c_str());
        return 1;
    }
    try {
        play(words);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "the trial failed: %s\n", error.what());
        return 1;
    }
}

std::string place_of(const std::string& folder, const support::Account& account) {
    return folder.starts_with("~/") ? account.home + folder.substr(1) : folder;
}

std::vector<Item> items_of(const std::string& text, const std::string& chosen,
                           const support::Account& account) {
    std::vector<Item> items;
    for (const std::string& line : support::lines_of(text)) {
        const std::size_t slash = line.find('/');
        const std::string folder =
            line.substr(line.compare(slash, 2, "/~") == 0 ? slash + 1 : slash);
        items.push_back(
            {line.substr(0, slash), folder == "/" ? chosen : place_of(folder, account)});
    }
    return items;
}

} // namespace end_to_end
