// flow_timing_test.cpp: the flow's waits last as long as they say and end when cancelled.
#include "installer/flow_timing.h"

#include "gui/ORX/core/elapsed_time.h"
#include "installer/installer_state.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <ctime>
#include <thread>

namespace {

// How much longer than asked for a sleep of this program takes, as on a machine with slow timers.
std::atomic<unsigned> slowness{1};

} // namespace

// Takes the place of the library's.
extern "C" int usleep(useconds_t microseconds) {
    const long long all = 1000LL * microseconds * slowness;
    const timespec rest{static_cast<time_t>(all / 1'000'000'000), all % 1'000'000'000};
    return nanosleep(&rest, nullptr);
}

namespace {

class FlowTiming : public testing::Test {
protected:
    void TearDown() override {
        installer.cancel_requested = 0;
        slowness = 1;
    }
};

TEST_F(FlowTiming, ATickIsAtLeastAMillisecond) {
    EXPECT_GE(measure_tick(), 1);
}

// Nothing about the measurement is certain when it took a second or more, of which it ignores whole
// ones.
TEST_F(FlowTiming, ATickIsAsLongAsASleepTakesHere) {
    constexpr int sleeps = 50;
    for (const unsigned milliseconds : {2U, 5U}) {
        slowness = milliseconds;
        int tick = 0;
        float time = 1.0F;
        for (int attempt = 0; attempt < 20 && time >= 1.0F; ++attempt) {
            const MonotonicTime start = monotonic_now();
            tick = measure_tick();
            time = elapsed_seconds(start, monotonic_now());
        }
        ASSERT_LT(time, 1.0F);
        EXPECT_GE(tick, static_cast<int>(milliseconds));
        EXPECT_LE(static_cast<float>(tick), 1000.0F * time / sleeps);
    }
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
