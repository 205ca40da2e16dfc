// early_failures_test.cpp: what is said before there is any window.
#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/engine.h"
#include "installer/installer_flow.h"
#include "installer/installer_state.h"
#include "installer/main_window.h"
#include "installer/splash_window.h"

#include <cstdio>

namespace {

class EarlyFailures : public testing::Test {
protected:
    EarlyFailures() { (void)std::snprintf(installer.title, sizeof installer.title, "Product"); }
    ~EarlyFailures() override {
        engine_destroy(installer.engine);
        installer.engine = nullptr;
    }
};

TEST_F(EarlyFailures, WithoutAnEngineTheFlowSaysSoAndReturns) {
    installer.engine = nullptr;
    testing::internal::CaptureStdout();
    run_installer_flow();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ERROR ** Product: GUI Engine is not running or was not started\n");
}

TEST_F(EarlyFailures, ASplashThatCannotBeMadeIsSaidWithoutALineEnd) {
    installer.engine = engine_new();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(show_splash());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ERROR ** Product: Could not create splash screen windown");
}

TEST_F(EarlyFailures, AMainWindowThatCannotBeMadeIsSaid) {
    installer.engine = engine_new();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(main_window_create());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "** ERROR ** Product: Could not create GUI window\n");
    main_window_destroy();
}

} // namespace
