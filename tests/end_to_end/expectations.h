// What a person expects to read: console lines, and the text lines of the panel to the pixel.

#pragma once

#include "end_to_end/scenario.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace end_to_end {

// The console text of a run in the C locale at 96 dpi: the head with the method's line (none when
// method is empty), then the lines given (each "** INFO ** TITLE: " and the text, or bare when it
// begins with a newline or a star), and the farewell of a run that had a display.
[[nodiscard]] std::string console_text(const std::string& method,
                                       const std::vector<std::string>& lines);

// "** INFO ** QB20-VST V3.0.0 Installer: TEXT" and a line feed.
[[nodiscard]] std::string info(const std::string& text);

// That the panel's line shows a text of that very width, centred, on a picture at scale 1.
[[nodiscard]] testing::AssertionResult line_reads(const support::Picture& picture, int line,
                                                  const std::string& text);

// That the progress bar's caption is that text, to the pixel, whatever the bar shows below it.
[[nodiscard]] testing::AssertionResult caption_reads(const support::Picture& picture,
                                                     const std::string& text);

// That the pixels beside the text are the main picture's own, or half as bright.
[[nodiscard]] testing::AssertionResult shows_background(const support::Picture& picture,
                                                        bool dimmed);

// That the last screen says "Installation Complete", and that OK then ends the run clean, with the
// archive's plug-in in the account's home.
void expect_installed(Scenario& scenario);

// Status 0, and nothing of the installer's left in /tmp.
[[nodiscard]] testing::AssertionResult ended_clean(const support::ChildEnd& end);

} // namespace end_to_end
