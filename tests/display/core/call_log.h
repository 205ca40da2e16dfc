// What the engine's callbacks were told, as lines of text, and what a test does inside them.
//
// A log is the user_data of its windows. Lines are written on the event thread and read by the
// test: "configure HEIGHT WIDTH ID", "paint LEFT TOP WIDTH HEIGHT ID", "press X Y BUTTON ID",
// "release ...", "double ...", "motion X Y ID", "reparent X Y WINDOW", "message DATA WINDOW",
// "create HEIGHT WIDTH ID", "close X Y ID", "key [TEXT] KEYSYM STATE ID",
// "keyup [TEXT] KEYSYM STATE ID" (null text as "-"), "selection [TEXT] ID" (null as "-"), "tick".

#pragma once

#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/engine.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

class CallLog {
public:
    // Called inside every callback whose line begins with the kind, after the line is written.
    std::map<std::string, std::function<void()>> actions;
    // What on_tick returns.
    std::atomic<bool> keep_ticking{true};

    void write(const std::string& line);
    [[nodiscard]] std::vector<std::string> lines() const;
    // Lines that begin with this text.
    [[nodiscard]] std::vector<std::string> lines_of(const std::string& beginning) const;
    [[nodiscard]] bool has(const std::string& line) const;
    [[nodiscard]] int count(const std::string& beginning) const;
    // Waits for a line; on time-out all lines are printed.
    [[nodiscard]] bool wait_for(const std::string& line) const;
    [[nodiscard]] bool wait_for_count(const std::string& beginning, int count) const;
    [[nodiscard]] std::string text() const;
    void clear();

private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

// Sets all fifteen callbacks of a window whose user_data is a log.
void record_calls(UiEngine* engine, WindowId id);
