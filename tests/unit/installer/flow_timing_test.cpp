// flow_timing_test.cpp: the flow's waits last as long as they say and end when cancelled.
#include "installer/flow_timing.h"

#include "gui/ORX/core/elapsed_time.h"
#include "installer/installer_state.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <thread>

namespace {

class FlowTiming : public testing::Test {
protected:
    void TearDown() override { installer.cancel_requested = 0; }
};

TEST_F(FlowTiming, ATickIsAtLeastAMillisecond) {
    EXPECT_GE(measure_tick(), 1);
}

TEST_F(FlowTiming, ACancelEndsAWait) {
    installer.tick_ms = 1;
    std::thread canceller([] {
        usleep(50000);
        installer.cancel_requested = 1;
    });
    const MonotonicTime start = monotonic_now();
    wait_seconds(30);
    EXPECT_LT(elapsed_seconds(start, monotonic_now()), 20.0F);
    canceller.join();
}

TEST_F(FlowTiming, ASlowTickMakesFewerRounds) {
    installer.tick_ms = 1000; // one round of 1 ms for each second asked for
    const MonotonicTime start = monotonic_now();
    wait_seconds(30);
    EXPECT_LT(elapsed_seconds(start, monotonic_now()), 20.0F);
}

TEST_F(FlowTiming, ASleepOutlastsSignals) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, nullptr);
    const pthread_t self = pthread_self();
    std::thread interrupter([self] {
        for (int i = 0; i < 5; ++i) {
            usleep(10000);
            pthread_kill(self, SIGUSR1);
        }
    });
    const MonotonicTime start = monotonic_now();
    sleep_milliseconds(200);
    EXPECT_GE(elapsed_seconds(start, monotonic_now()), 0.199F);
    interrupter.join();
}

} // namespace
