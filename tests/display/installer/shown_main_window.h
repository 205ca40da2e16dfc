// The installer's main window on a screen of its own, without the flow round it.

#pragma once

#include "display/core/engine_desk.h"

#include "gui/ORX/text/text_renderer.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/window_picture.h"
#include "support/picture.h"

struct ShownMainWindow : testing::Test {
    EngineDesk desk;

    ShownMainWindow() {
        installer.engine = desk.engine;
        installer.text = text_renderer_new(desk.engine);
        installer.scale = 1.0F;
        installer.main_w = design_width;
        installer.main_h = design_height;
    }

    // Ends with nothing left to paint.
    void SetUp() override {
        ASSERT_TRUE(main_window_create());
        main_window_open();
        ASSERT_TRUE(support::wait_until([this] { return desk.view.viewable(window()); }));
        ASSERT_TRUE(support::wait_until([] { return installer.ui_dirty == 0; }));
    }

    ~ShownMainWindow() override {
        desk.end_loop();
        main_window_destroy();
        text_renderer_destroy(installer.text);
        installer.text = nullptr;
        installer.engine = nullptr;
    }

    [[nodiscard]] support::XWindow window() const { return desk.x_window(installer.main_window); }

    [[nodiscard]] support::Picture picture(const support::Place& part) const {
        return support::take_picture(desk.view, window(), part);
    }
};
