// core_benchmark.cpp: how long an event, a damage list, a loop iteration and an idle engine take.
//
// The idle engine is measured beside a plain XPending-and-sleep loop in the same run; main prints
// both and their ratio after the table.
#include "gui/ORX/core/damage_list.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/window_table.h"
#include "support/x_server.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

namespace {

double thread_cpu_seconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double wall_seconds() {
    const MonotonicTime now = monotonic_now();
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void add_random_rectangles(benchmark::State& state) {
    std::mt19937 random(1);
    std::uniform_int_distribution<std::int32_t> edge(0, 1000);
    std::vector<DamageRect> rects(10'000);
    for (DamageRect& rect : rects) {
        rect = {edge(random), edge(random), edge(random), edge(random)};
    }
    for (auto _ : state) {
        DamageList list;
        for (const DamageRect& rect : rects) {
            damage_add(&list, rect.left, rect.top, rect.right, rect.bottom);
        }
        benchmark::DoNotOptimize(damage_count(&list));
        damage_free(&list);
    }
}
BENCHMARK(add_random_rectangles)->Unit(benchmark::kMillisecond)->Repetitions(5);

// Events are handed to the queue of the running loop by the engine's own connection.
constexpr int events_per_run = 2'000;
std::atomic<int> delivered{0};
std::atomic<double> last_delivery{0.0};

void count_message(long, void*, unsigned long) {
    delivered += 1;
    last_delivery = wall_seconds();
}

// Time from an event that lies in the queue to the end of its callback: many events are queued
// before the loop starts, and the first pass drains them all.
void deliver_queued_events(benchmark::State& state) {
    UiEngine* engine = engine_new();
    if (!engine_open_display(engine)) {
        state.SkipWithError("no display");
    }
    for (auto _ : state) {
        const WindowId id = window_create_plain(engine, 0, 0, 10, 10, nullptr, 1.0F);
        window_set_on_client_message(engine, id, count_message);
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.display = engine_display(engine);
        event.xclient.window = window_x_window(engine, id);
        event.xclient.format = 32;
        for (int i = 0; i < events_per_run; ++i) {
            XPutBackEvent(engine_display(engine), &event);
        }
        delivered = 0;
        const double start = wall_seconds();
        std::thread loop([engine] { event_loop_run(engine); });
        while (delivered < events_per_run) {
            std::this_thread::yield();
        }
        state.SetIterationTime((last_delivery - start) / events_per_run);
        event_loop_stop(engine);
        loop.join();
    }
    engine_destroy(engine);
}
BENCHMARK(deliver_queued_events)
    ->UseManualTime()
    ->Unit(benchmark::kNanosecond)
    ->Iterations(20)
    ->Repetitions(5);

// Processor time that the loop uses in so many milliseconds, which are about as many iterations.
double loop_cpu_seconds(UiEngine* engine, int milliseconds) {
    double used = 0.0;
    std::thread loop([&] {
        const double start = thread_cpu_seconds();
        event_loop_run(engine);
        used = thread_cpu_seconds() - start;
    });
    usleep(static_cast<useconds_t>(milliseconds) * 1'000);
    event_loop_stop(engine);
    loop.join();
    return used;
}

void loop_with_idle_windows(benchmark::State& state) {
    UiEngine* engine = engine_new();
    if (!engine_open_display(engine)) {
        state.SkipWithError("no display");
    }
    for (auto _ : state) {
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            benchmark::DoNotOptimize(window_create_plain(engine, 0, 0, 10, 10, nullptr, 1.0F));
        }
        state.SetIterationTime(loop_cpu_seconds(engine, 500) / 500.0);
    }
    engine_destroy(engine);
}
BENCHMARK(loop_with_idle_windows)
    ->Arg(0)
    ->Arg(1)
    ->Arg(255)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(1)
    ->Repetitions(5);

double plain_loop_share(double seconds) {
    Display* display = XOpenDisplay(nullptr);
    const double start = wall_seconds();
    const double cpu_start = thread_cpu_seconds();
    while (wall_seconds() - start < seconds) {
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
        }
        usleep(1'000);
    }
    const double share = (thread_cpu_seconds() - cpu_start) / (wall_seconds() - start);
    XCloseDisplay(display);
    return share;
}

double engine_loop_share(double seconds) {
    UiEngine* engine = engine_new();
    double share = 0.0;
    if (engine_open_display(engine) &&
        window_create_plain(engine, 0, 0, 10, 10, nullptr, 1.0F) != no_window) {
        std::thread loop([&] {
            const double start = wall_seconds();
            const double cpu_start = thread_cpu_seconds();
            event_loop_run(engine);
            share = (thread_cpu_seconds() - cpu_start) / (wall_seconds() - start);
        });
        usleep(static_cast<useconds_t>(seconds * 1e6));
        event_loop_stop(engine);
        loop.join();
    }
    engine_destroy(engine);
    return share;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Taken in turns, so that what else the machine does hits both alike.
void compare_idle_loops() {
    std::vector<double> plain;
    std::vector<double> engine;
    for (int round = 0; round < 9; ++round) {
        plain.push_back(plain_loop_share(2.0));
        engine.push_back(engine_loop_share(2.0));
    }
    std::fprintf(stderr,
                 "idle, share of one core (median of 9): plain loop %.3f %%, engine %.3f %%, "
                 "ratio %.3f\n",
                 100.0 * median(plain), 100.0 * median(engine), median(engine) / median(plain));
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const support::XServer server;
    setenv("DISPLAY", server.display_name().c_str(), 1);
    XInitThreads();
    benchmark::RunSpecifiedBenchmarks();
    compare_idle_loops();
    return 0;
}
