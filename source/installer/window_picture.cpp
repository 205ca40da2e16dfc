// window_picture.cpp: from design pixels to the window.
#include "installer/window_picture.h"

#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/scaler.h"

bool window_picture_new(WindowPicture* picture, std::int32_t device_width,
                        std::int32_t device_height) {
    picture->surface = orx_pixbuf_new(installer.engine, design_width, design_height);
    picture->image = orx_image_new(installer.engine, device_width, device_height);
    return picture->surface != nullptr && picture->image != nullptr;
}

void window_picture_free(WindowPicture* picture) {
    orx_image_free(installer.engine, picture->image);
    orx_pixbuf_free(installer.engine, picture->surface);
    *picture = {};
}

void window_picture_show(const WindowPicture& picture, WindowId id, std::int32_t x, std::int32_t y,
                         std::int32_t width, std::int32_t height) {
    orx_image_scale_from_pixbuf(installer.engine, picture.surface, picture.image, x, y, width,
                                height, 0, 0, installer.scale);
    orx_image_put(installer.engine, id, picture.image, x, y, x, y, width, height);
}
