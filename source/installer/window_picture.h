// window_picture.h: a window's picture, drawn at design size and shown in device pixels.
#pragma once

#include "installer/installer_state.h"

#include <cstdint>

// Every screen is laid out at this size, in design pixels.
inline constexpr std::int32_t design_width = 600;
inline constexpr std::int32_t design_height = 400;

// Makes the surface (design size) and the image (device size). false when either cannot be made;
// what was made is freed by window_picture_free.
[[nodiscard]] bool window_picture_new(WindowPicture* picture, std::int32_t device_width,
                                      std::int32_t device_height);
void window_picture_free(WindowPicture* picture);

// Scales the rectangle, in device pixels, out of the surface and puts it on the window.
void window_picture_show(const WindowPicture& picture, WindowId id, std::int32_t x, std::int32_t y,
                         std::int32_t width, std::int32_t height);
