// browser_picture.cpp: the browser's rules, drawn the slow way.

#include "display/widgets/browser_picture.h"

#include "display/widgets/browser_desk.h"
#include "gui/ORX/imaging/scaler_weights.h"
#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "support/wait_until.h"
#include "unit/widgets/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <vector>

namespace {

constexpr Pixel panel{56, 56, 56};
constexpr Pixel frame{64, 64, 64};
constexpr Pixel black{0, 0, 0};

int rounded(float value, float scale) {
    return static_cast<int>(value * scale + 0.5F);
}

const TapRow& taps_at(int position) {
    return scaler_weights[static_cast<std::size_t>(position >> 8 & 255)];
}

int clamped_sum(int sum) {
    return sum < 0 ? 0 : (sum > 65280 ? 255 : sum >> 8);
}

// One row of an image, enlarged across: three colours for each device column.
std::vector<int> enlarged_row(const Canvas& image, int y, int step, int width) {
    std::vector<int> row;
    row.reserve(static_cast<std::size_t>(width) * 3);
    for (int column = 0; column < width; ++column) {
        const TapRow& across = taps_at(column * step);
        int line[3] = {0, 0, 0};
        for (int i = 0; i < 4; ++i) {
            const int x = std::clamp((column * step >> 16) + i - 1, 0, image.width() - 1);
            const Pixel p = image.at(x, y);
            line[0] += across[static_cast<std::size_t>(i)] * p.r;
            line[1] += across[static_cast<std::size_t>(i)] * p.g;
            line[2] += across[static_cast<std::size_t>(i)] * p.b;
        }
        for (const int sum : line) {
            row.push_back(clamped_sum(sum));
        }
    }
    return row;
}

// Device rows first to first + rows of an image enlarged.
support::Picture enlarged(const Canvas& image, float scale, int width, int first, int rows) {
    const int step = static_cast<int>((1 / scale) * 65536);
    support::Picture picture{width, rows, {}};
    picture.rgb.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(rows) * 3);
    std::vector<std::vector<int>> across(static_cast<std::size_t>(image.height()));
    for (int row = first; row < first + rows; ++row) {
        const TapRow& down = taps_at(row * step);
        std::array<const int*, 4> lines{};
        for (int j = 0; j < 4; ++j) {
            const int y = std::clamp((row * step >> 16) + j - 1, 0, image.height() - 1);
            std::vector<int>& line = across[static_cast<std::size_t>(y)];
            if (line.empty()) {
                line = enlarged_row(image, y, step, width);
            }
            lines[static_cast<std::size_t>(j)] = line.data();
        }
        for (int value = 0; value < width * 3; ++value) {
            int sum = 0;
            for (std::size_t j = 0; j < lines.size(); ++j) {
                sum += down[j] * lines[j][value];
            }
            picture.rgb.push_back(static_cast<std::uint8_t>(clamped_sum(sum)));
        }
    }
    return picture;
}

void draw_title(const TextRenderer* text, Canvas& canvas, const std::string& title) {
    const int tw = text_width(text, title.c_str());
    const int th = text_height(text, title.c_str());
    const int bx = (580 - tw) / 2 + 16;
    const int top = 24 - (th + 8) / 2;
    canvas.row(bx, bx + tw + 27, top - 1, panel);
    canvas.column(bx - 1, top, top + th + 7, panel);
    canvas.row(bx, bx + tw + 27, top + th + 8, panel);
    canvas.column(bx + tw + 28, top, top + th + 7, panel);
    canvas.fill(bx, top, tw + 28, th + 8, panel);
    draw_text(text, canvas.image(), title.c_str(), (588 - tw) / 2 + 26, th / 2 + 22, 255, 255, 255,
              255);
}

void draw_frame(Canvas& canvas, int top, int bottom) {
    canvas.row(17, 623, top, frame);
    canvas.row(17, 623, bottom, frame);
    canvas.column(16, top + 1, bottom - 1, frame);
    canvas.column(624, top + 1, bottom - 1, frame);
}

void draw_path(const TextRenderer* text, Canvas& canvas, const std::string& path) {
    canvas.fill(17, 49, 608, 15, panel);
    draw_text(text, canvas.image(), "Folder: ", 19, 61, 218, 120, 4, 100);
    canvas.column(64, 48, 64, frame);
    canvas.fill(65, 49, 559, 15, panel);
    const int right = std::min(text_width(text, path.c_str()) + 67, 624);
    draw_text_right_clipped(text, canvas.image(), path.c_str(), right, 61, 48, 64, 64, 624, 255,
                            255, 255, 1024);
}

void draw_scroll_bar(Canvas& canvas, int length, int top, bool dragging) {
    canvas.fill(616, 80, 8, 272, panel);
    canvas.column(616, 80, 352, frame);
    canvas.row(616, 623, 80, frame);
    canvas.column(624, 81, 351, frame);
    canvas.row(616, 623, 352, frame);
    const Pixel colour = dragging ? Pixel{160, 32, 160} : Pixel{144, 144, 144};
    for (int k = 0; k <= length - 2; ++k) {
        canvas.row(618, 622, top + 1 + k, colour);
    }
}

void draw_button(const TextRenderer* text, Canvas& canvas, int x, const char* label, Pixel fill,
                 Pixel ink, bool repainted) {
    if (repainted) {
        canvas.fill(x + 1, 369, 63, 15, panel);
    }
    canvas.border(x, 368, 64, 16, panel);
    for (int column = x + 1; column < x + 64; ++column) {
        canvas.column(column, 369, 383, fill);
    }
    draw_text(text, canvas.image(), label, x + 32 - text_width(text, label) / 2,
              368 + 8 + text_height(text, label) / 2, ink.r, ink.g, ink.b, 175);
}

Canvas* new_list(const TextRenderer* text, const std::vector<ExpectedRow>& rows) {
    const int height = std::max(static_cast<int>(rows.size()) * 16 + 2, 268);
    auto* canvas = new Canvas(608, height, black);
    int y = 16;
    for (const ExpectedRow& row : rows) {
        Pixel colour{144, 144, 144};
        if (row.folder) {
            for (int k = 0; k < 4; ++k) {
                canvas->column(26 - k, y - 13 + 8 - k, y - 13 + 8 + k, {255, 176, 0}, 175);
            }
            colour = row.selected ? Pixel{218, 120, 4} : Pixel{255, 255, 255};
        }
        draw_text_clipped(text, canvas->image(), row.name.c_str(), 32, y, -1, height, -1, 608,
                          colour.r, colour.g, colour.b, 80);
        y += 16;
    }
    return canvas;
}

// Where a repainted rectangle meets what was not repainted, the scaler's filter has seen the
// neighbours as they were before: a faint seam of two device pixels at most, at other scales
// than 1.
bool on_seam(int x, int y, float scale) {
    constexpr int reach = 2;
    const support::Place repainted[] = {
        {16, 48, 608, 16}, {616, 80, 8, 272}, {16, 368, 64, 16}, {96, 368, 64, 16}};
    return std::any_of(std::begin(repainted), std::end(repainted), [&](const support::Place& r) {
        const int left = static_cast<int>(static_cast<float>(r.x) * scale);
        const int top = static_cast<int>(static_cast<float>(r.y) * scale);
        const int right = rounded(static_cast<float>(r.x + r.width), scale);
        const int bottom = rounded(static_cast<float>(r.y + r.height), scale);
        const bool near =
            x >= left - reach && x < right + reach && y >= top - reach && y < bottom + reach;
        const bool inside = x >= left && x < right && y >= top && y < bottom;
        return near && !inside;
    });
}

int wrong_pixels(const support::Picture& is, const support::Picture& should, float scale) {
    constexpr int faint = 48;
    int count = support::count_differences(is, should);
    if (count == 0 || scale == 1.0F || is.width != should.width || is.height != should.height) {
        return count;
    }
    for (int y = 0; y < is.height; ++y) {
        for (int x = 0; x < is.width; ++x) {
            const bool differs = !(is.at(x, y) == should.at(x, y));
            if (differs && on_seam(x, y, scale) &&
                support::near_colour(is.at(x, y), should.at(x, y), faint)) {
                --count;
            }
        }
    }
    return count;
}

} // namespace

std::vector<ExpectedRow> rows_of(const std::string& folder) {
    std::vector<ExpectedRow> rows = {{".", true}, {"..", true}};
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
        const std::string name = entry.path().filename();
        const bool is_folder = entry.is_directory(ignored);
        if (is_folder || name[0] != '.' || name[1] == '.') {
            rows.push_back({name, is_folder});
        }
    }
    std::stable_sort(rows.begin(), rows.end(), [](const ExpectedRow& a, const ExpectedRow& b) {
        return a.folder != b.folder ? a.folder
                                    : orx_natural_compare(a.name.c_str(), b.name.c_str()) < 0;
    });
    return rows;
}

support::Picture expected_picture(const TextRenderer* text, float scale, const std::string& title,
                                  const ExpectedBrowser& expected) {
    Canvas canvas(640, 432, black);
    draw_title(text, canvas, title);
    draw_frame(canvas, 48, 64);
    draw_frame(canvas, 80, 352);
    draw_path(text, canvas, expected.path);
    draw_button(text, canvas, 16, "OK", expected.ok_lit ? Pixel{255, 47, 255} : panel,
                {255, 255, 255}, expected.ok_lit || expected.ok_refused);
    draw_button(text, canvas, 96, "CANCEL", expected.cancel_lit ? Pixel{96, 96, 96} : panel,
                expected.cancel_lit ? Pixel{255, 255, 255} : Pixel{128, 128, 128},
                expected.cancel_lit);

    const std::unique_ptr<Canvas> list(new_list(text, expected.rows));
    const int list_height = std::min(rounded(static_cast<float>(list->height()), scale), 32767);
    const int x = static_cast<int>(18 * scale);
    const int y = static_cast<int>(82 * scale);
    const int view_width = rounded(614, scale) - x;
    const int view_height = rounded(350, scale) - y;
    const float percent =
        expected.list
            ? std::min(100.0F, 272.0F / (static_cast<float>(list_height) / scale) * 100.0F)
            : 100.0F;
    const int length = std::max(static_cast<int>(270.0F * percent / 100.0F), 16);
    const int range = list_height - view_height;
    const float fraction =
        range > 0 ? static_cast<float>(expected.offset) / static_cast<float>(range) : 0.0F;
    const int lowest = 351 - length;
    const int top = static_cast<int>(static_cast<float>(lowest - 81) * fraction + 0.5F + 81.0F);
    draw_scroll_bar(canvas, length, expected.thumb_top < 0 ? top : expected.thumb_top,
                    expected.dragging);

    support::Picture picture = enlarged(canvas, scale, rounded(640, scale), 0, rounded(432, scale));
    if (expected.list) {
        const int rows = std::min(view_height, list_height - expected.offset);
        const support::Picture shown = enlarged(*list, scale, view_width, expected.offset, rows);
        for (int row = 0; row < rows; ++row) {
            std::copy_n(shown.rgb.begin() + row * view_width * 3, view_width * 3,
                        picture.rgb.begin() + ((y + row) * picture.width + x) * 3);
        }
    }
    return picture;
}

void expect_look(BrowserDesk& desk, const ExpectedBrowser& expected) {
    const support::Picture should =
        expected_picture(desk.text, desk.scale, browser_title, expected);
    support::Picture is;
    const bool same = support::wait_until([&] {
        is = desk.picture();
        return wrong_pixels(is, should, desk.scale) == 0;
    });
    if (!same) {
        std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
        std::replace(name.begin(), name.end(), '/', '-');
        const std::string stem = testing::TempDir() + "browser-" + name;
        if (is.width > 0) {
            support::save_png(is, stem + "-is.png");
        }
        support::save_png(should, stem + "-should.png");
        ADD_FAILURE() << wrong_pixels(is, should, desk.scale) << " pixels differ at scale "
                      << desk.scale << "; pictures: " << stem << "-is.png, -should.png";
    }
}

void expect_folder(BrowserDesk& desk, const std::string& folder) {
    expect_look(desk, {.path = folder, .rows = rows_of(folder)});
}
