// Somebody who does what each screen asks for, whichever comes, in whatever state: a window without
// a title, a password that was not taken. For runs in which anything may go wrong at any moment.

#pragma once

#include "end_to_end/scenario.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

class UndauntedPerson {
public:
    UndauntedPerson(end_to_end::Scenario& scenario, std::string password)
        : scenario_(scenario), password_(std::move(password)) {}

    // Starts the installer and goes on to its end. A run that nothing else ends is ended by a
    // signal; throws when that does not end it either.
    void play();

    // Nothing but the signal has ended the run.
    [[nodiscard]] bool interrupted() const { return interrupted_; }
    // Where copies of the password were at the last screen.
    [[nodiscard]] const std::vector<std::string>& copies() const { return copies_; }

private:
    void act();
    void act_in_main_window(support::XWindow window);
    [[nodiscard]] std::optional<support::XWindow> browser() const;

    end_to_end::Scenario& scenario_;
    std::string password_;
    std::optional<std::chrono::steady_clock::time_point> typed_;
    bool interrupted_ = false;
    std::vector<std::string> copies_;
};
