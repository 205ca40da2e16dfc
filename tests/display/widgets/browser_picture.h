// browser_picture.h: what the browser must look like, pixel by pixel, worked out from its rules
// without its code: the whole dialog and the whole list are drawn and scaled plainly.
#pragma once

#include "support/picture.h"

#include <string>
#include <vector>

struct TextRenderer;
class BrowserDesk;

struct ExpectedRow {
    std::string name;
    bool folder = false;
    bool selected = false;
};

struct ExpectedBrowser {
    std::string path;
    std::vector<ExpectedRow> rows;
    bool list = true;   // false: a folder that cannot be read
    int offset = 0;     // device pixels
    int thumb_top = -1; // design pixels; -1: where the offset puts it
    bool dragging = false;
    bool ok_lit = false;
    bool ok_refused = false; // pressed in vain: repainted, at rest again
    bool cancel_lit = false;
};

// The folder's visible entries in the browser's order.
[[nodiscard]] std::vector<ExpectedRow> rows_of(const std::string& folder);

[[nodiscard]] support::Picture expected_picture(const TextRenderer* text, float scale,
                                                const std::string& title,
                                                const ExpectedBrowser& expected);

// Waits until the browser looks so. On time-out the test fails, with both pictures saved.
void expect_look(BrowserDesk& desk, const ExpectedBrowser& expected);

// The same for a folder shown from its top.
void expect_folder(BrowserDesk& desk, const std::string& folder);
