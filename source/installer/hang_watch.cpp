// hang_watch.cpp: counting how long nothing has come on.
#include "installer/hang_watch.h"

#include "installer/installer_state.h"
#include "installer/signals.h"
#include "installer/sudden_end.h"
#include "privilege/pty_child.h"

#include <unistd.h>

namespace {

constexpr useconds_t pause_microseconds = 50'000;
constexpr int patience = 20; // pauses: on a busy machine they last as long as everything else

[[noreturn]] void* watch(void* /*unused*/) {
    take_signals_here(true);
    std::uint32_t seen = 0;
    int still = 0;
    for (;;) {
        usleep(pause_microseconds);
        const std::uint32_t steps = installer.steps;
        const bool waits = installer.cancel_requested != 0 && !installer.farewell_said &&
                           !pty_child_at_work() && steps == seen;
        seen = steps;
        still = waits ? still + 1 : 0;
        if (still == patience) {
            end_without_main_thread();
        }
    }
}

} // namespace

void start_hang_watch() {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread{};
    if (pthread_create(&thread, &attributes, watch, nullptr) != 0) {
        take_signals_here(true);
    }
    pthread_attr_destroy(&attributes);
}
