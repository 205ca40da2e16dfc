// folder_list_image.cpp: rows, folder marks and bands.

#include "gui/ORX/widgets/folder_list_image.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/imaging/window_pixels.h"
#include "gui/ORX/widgets/folder_dialog.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <sys/mman.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr std::int32_t list_width = 608;
constexpr std::int32_t name_glyph_limit = 80;
constexpr WidgetColour folder_colour{255, 255, 255};
constexpr WidgetColour selected_folder_colour{218, 120, 4};
constexpr WidgetColour other_colour{144, 144, 144};
constexpr WidgetColour mark_colour{255, 176, 0};
constexpr std::int32_t mark_alpha = 175;
constexpr std::int32_t mark_x = 16;

// Design rows that a device row's filter may reach beyond its own, and that a row of text may reach
// beyond its baseline, on either side; generous.
constexpr std::int32_t reach = 32;

// A list image of full size of which only the touched rows take memory: untouched ones read as
// black. Drawing a band in an image of its own would shift the scaler's phases, and the pixels.
Pixbuf reserve_list_image(std::int32_t height, std::size_t* bytes) {
    constexpr std::uint32_t rowstride = list_width * 4;
    *bytes = std::size_t{rowstride} * static_cast<std::size_t>(height);
    void* pixels = mmap(nullptr, *bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return Pixbuf{list_width, static_cast<std::uint32_t>(height), rowstride, 4,
                  pixels == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(pixels)};
}

void paint_folder_mark(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y) {
    for (std::int32_t k = 0; k < 4; ++k) {
        const std::int32_t column = x + 10 - k;
        orx_pixbuf_vline(engine, image, column, y + 8 - k, column, y + 8 + k, mark_colour.r,
                         mark_colour.g, mark_colour.b, mark_alpha);
    }
}

void paint_entry(const FolderDialog* dialog, Pixbuf* image, const DirEntry& entry) {
    const bool directory = folder_entry_is_directory(&entry);
    if (directory) {
        paint_folder_mark(dialog->engine, image, mark_x, entry.y - 13);
    }
    const WidgetColour& directory_colour =
        entry.selected != 0 ? selected_folder_colour : folder_colour;
    widget_draw_text(dialog->text, image, entry.name, entry.x, entry.y,
                     directory ? directory_colour : other_colour, name_glyph_limit);
}

void paint_entries(const FolderDialog* dialog, Pixbuf* image, std::int32_t top,
                   std::int32_t bottom) {
    for (const DirEntry& entry : dialog->entries) {
        if (entry.name == nullptr) {
            break;
        }
        if (entry.hidden == 0 && top <= entry.y && entry.y <= bottom) {
            paint_entry(dialog, image, entry);
        }
    }
}

// Draws device rows top to bottom into the pixmap. Without memory for the list's own picture they
// become black, like a list without entries, rather than whatever the pixmap held; false without
// memory even for that.
bool draw_rows(const FolderDialog* dialog, std::int32_t top, std::int32_t bottom) {
    UiEngine* engine = dialog->engine;
    const std::int32_t width = dialog->list_device_width;
    ImageSurface* surface = orx_image_new(engine, width, bottom - top);
    if (surface == nullptr) {
        return false;
    }
    std::size_t bytes = 0;
    Pixbuf image = reserve_list_image(folder_list_height(dialog->visible_count), &bytes);
    if (image.pixels != nullptr) {
        const auto first = truncate_to_int(static_cast<float>(top) / dialog->scale) - reach;
        const auto last = truncate_to_int(static_cast<float>(bottom) / dialog->scale) + reach;
        paint_entries(dialog, &image, first, last);
        orx_image_scale_from_pixbuf(engine, &image, surface, 0, 0, width, bottom - top, 0, -top,
                                    dialog->scale);
        munmap(image.pixels, bytes);
    }
    orx_pixmap_put(engine, dialog->list_pixmap, surface, 0, 0, 0, top, width, bottom - top);
    orx_image_free(engine, surface);
    return true;
}

} // namespace

void folder_list_image_make(FolderDialog* dialog) {
    const std::int32_t width = scale_rounded(list_width, dialog->scale);
    std::int32_t height = folder_list_device_height(dialog->visible_count, dialog->scale);
    const std::int32_t shortest = std::min(height, dialog->scroll_view.view_height);
    folder_list_image_invalidate(dialog);
    dialog->list_pixmap = orx_pixmap_new(dialog->engine, dialog->window, width, height);
    while (dialog->list_pixmap == 0 && height > shortest) {
        height = std::max(height / 2, shortest);
        dialog->list_pixmap = orx_pixmap_new(dialog->engine, dialog->window, width, height);
    }
    const bool made = dialog->list_pixmap != 0;
    dialog->list_device_width = made ? width : 0;
    dialog->list_device_height = made ? height : 0;
}

void folder_list_image_free(FolderDialog* dialog) {
    if (dialog->list_pixmap != 0) {
        orx_pixmap_free(dialog->engine, dialog->list_pixmap);
    }
    dialog->list_pixmap = 0;
    dialog->list_device_width = 0;
    dialog->list_device_height = 0;
    scroll_view_set_pixmap(&dialog->scroll_view, 0);
}

void folder_list_image_draw(FolderDialog* dialog, std::int32_t first, std::int32_t rows) {
    const std::int32_t top = std::max(first, 0);
    const std::int32_t bottom = std::min(first + rows, dialog->list_device_height);
    std::int32_t band = top / folder_list_band_height;
    while (dialog->list_pixmap != 0 && band * folder_list_band_height < bottom) {
        const std::int32_t run_start = band;
        while (band * folder_list_band_height < bottom && !dialog->list_band_drawn[band]) {
            ++band;
        }
        if (band == run_start) {
            ++band;
            continue;
        }
        const bool drawn =
            draw_rows(dialog, run_start * folder_list_band_height,
                      std::min(band * folder_list_band_height, dialog->list_device_height));
        std::fill(dialog->list_band_drawn + run_start, dialog->list_band_drawn + band, drawn);
    }
}

void folder_list_image_invalidate(FolderDialog* dialog) {
    std::fill(std::begin(dialog->list_band_drawn), std::end(dialog->list_band_drawn), false);
}
