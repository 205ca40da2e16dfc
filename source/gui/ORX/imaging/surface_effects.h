// surface_effects.h: passing effects on a surface, and a surface with a patterned edge.
//
// The effects change the surface, send it to the window and then give every pixel its old value
// back, so that the window shows the effect and the surface does not keep it. Device pixels; every
// operation takes x_lock. The installer does not call them.
#pragma once

#include "gui/ORX/imaging/image_surface.h"

#include <cstdint>

// Shows the surface in grey, with every other row of design pixels an eighth darker: the bands are
// as high as scale makes one design pixel. Nothing for a null surface, a scale that is not above 0,
// a free slot or a closed display.
void orx_image_show_greyed(UiEngine* engine, WindowId id, ImageSurface* surface, float scale);

// Shows the surface with every channel halved. Nothing for a null surface, a free slot or a closed
// display.
void orx_image_show_dimmed(UiEngine* engine, WindowId id, ImageSurface* surface);

// A new surface, black but for a band of that many pixels along its four edges, which is filled
// with diagonal stripes: stripes of the colour and of half its brightness take turns, each as wide
// as the band. Null where orx_image_new gives null; a band below 1 draws none. The caller frees it
// with orx_image_free.
[[nodiscard]] ImageSurface* orx_image_new_with_edge(UiEngine* engine, std::int32_t width,
                                                    std::int32_t height, std::int32_t band,
                                                    std::int32_t r, std::int32_t g, std::int32_t b);
