// What a tour leaves for its reader: numbered pictures with a line for each, in a folder that
// belongs to whoever owns the place where it is.

#pragma once

#include "end_to_end/scenario.h"

#include <string>

namespace end_to_end {

class Album {
public:
    explicit Album(std::string folder) : folder_(std::move(folder)) {}

    // Saves the window's picture as NUMBER-NAME.png and says so.
    void keep(Scenario& scenario, support::XWindow window, const char* name, const char* caption);

private:
    std::string folder_;
    int count_ = 0;
};

// How every tour begins: the splash, which is clicked away; and then, where there is one, the
// question for the password, and a wrong answer.
void keep_splash(Scenario& scenario, Album& album);
void keep_wrong_password(Scenario& scenario, Album& album);

// A line of the tour's report, at once.
void say(const std::string& text);

// Gives the folder, and what is in it, to the owner of the folder above; files of the name kept,
// and what is below a folder of that name, stay as they are.
void hand_over(const std::string& folder, const std::string& kept);

} // namespace end_to_end
