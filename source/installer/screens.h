// screens.h: what each screen of the main window says, as data. Pure, no display.
#pragma once

#include <cstddef>
#include <cstdint>

// How a line stands on the message panel.
enum class LineMode : std::uint32_t { centred = 0, left_block = 1 };

struct ScreenLine {     // NOLINT(clang-analyzer-optin.performance.Padding)
    std::int32_t index; // 0 to 11
    const char* text;
    LineMode mode = LineMode::centred;
};

inline constexpr std::int32_t reason_line = 5;

// A screen's lines below the subtitle, which is always line 0.
struct ScreenText {
    const ScreenLine* lines;
    std::size_t line_count;
    bool dimmed;                  // error screens stand apart by a darkened picture
    const char* reason = nullptr; // what is said at reason_line, if anything
};

extern const ScreenText recipient_screen;
extern const ScreenText sudo_password_screen;
extern const ScreenText su_password_screen;
extern const ScreenText no_auth_method_screen;
extern const ScreenText another_instance_screen;
extern const ScreenText incorrect_password_screen;
extern const ScreenText installing_screen;
extern const ScreenText unpack_failed_screen;
extern const ScreenText copy_failed_screen;
extern const ScreenText cancelled_screen;
extern const ScreenText complete_screen;

// The screen that asks for the password, says that there is no way to, or that none is needed, by
// AuthMethod.
[[nodiscard]] const ScreenText& authentication_screen(std::int32_t auth_method);
