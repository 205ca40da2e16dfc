// Windows that the server makes, but for which there are no pictures.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/window_table.h"
#include "gui/ORX/text/text_renderer.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/splash_window.h"

#include <cstdio>

namespace {

// A window may be as large, a picture of that size would take more than three gigabytes.
constexpr std::int32_t oversized = 30'000;

struct OversizedWindows : testing::Test {
    EngineDesk desk{{.run = false}};

    OversizedWindows() {
        (void)std::snprintf(installer.title, sizeof installer.title, "Product");
        installer.engine = desk.engine;
        installer.text = text_renderer_new(desk.engine);
        installer.scale = 1.0F;
        installer.splash_w = installer.splash_h = oversized;
        installer.main_w = installer.main_h = oversized;
    }
    ~OversizedWindows() override {
        main_window_destroy();
        text_renderer_destroy(installer.text);
        installer.text = nullptr;
        installer.engine = nullptr;
    }
};

TEST_F(OversizedWindows, ASplashWithoutMemoryIsSaidAndTakenAway) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(show_splash());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ERROR ** Product: Unable to allocate memory for splash screen GUI objects\n");
    EXPECT_TRUE(window_table_empty(desk.engine));
    EXPECT_EQ(installer.splash_window, no_window);
}

TEST_F(OversizedWindows, AMainWindowWithoutMemoryIsSaidAndNeverShown) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(main_window_create());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ERROR ** Product: Unable to allocate memory for GUI objects\n");
    EXPECT_FALSE(desk.view.viewable(desk.x_window(installer.main_window)));
}

} // namespace
