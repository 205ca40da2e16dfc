// pointer_tracking.cpp: how far the pointer moved since it was last looked at.
#include "gui/ORX/core/pointer_tracking.h"

#include "gui/ORX/core/engine.h"

void pointer_set_origin(UiEngine* engine, double x, double y) {
    engine->last_pointer_x = x;
    engine->last_pointer_y = y;
}

void pointer_get_origin(const UiEngine* engine, double* x, double* y) {
    *x = engine->last_pointer_x;
    *y = engine->last_pointer_y;
}

float pointer_delta_x(UiEngine* engine, double x) {
    const auto delta = static_cast<float>(x - engine->last_pointer_x);
    engine->last_pointer_x = x;
    return delta;
}

float pointer_delta_y(UiEngine* engine, double y) {
    const auto delta = static_cast<float>(engine->last_pointer_y - y);
    engine->last_pointer_y = y;
    return delta;
}

std::int32_t pointer_delta_x_int(UiEngine* engine, std::int32_t x) {
    return static_cast<std::int32_t>(pointer_delta_x(engine, static_cast<double>(x)));
}

std::int32_t pointer_delta_y_int(UiEngine* engine, std::int32_t y) {
    return static_cast<std::int32_t>(pointer_delta_y(engine, static_cast<double>(y)));
}
