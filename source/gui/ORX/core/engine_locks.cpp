// engine_locks.cpp: taking the engine's locks, and the check of their order.
#include "gui/ORX/core/engine_locks.h"

#include "gui/ORX/core/engine.h"

#include <pthread.h>

#ifndef NDEBUG
#include <cstdio>
#include <cstdlib>
#endif

namespace {

#ifndef NDEBUG

struct HeldLocks {
    int loop = 0;
    int table = 0;
    int x = 0;
};

// What a thread holds is known to that thread alone, so that the check itself needs no lock.
thread_local HeldLocks held_locks;

void require_order(bool kept, const char* lock) {
    if (!kept) {
        std::fprintf(stderr, "engine locks: %s taken out of order\n", lock);
        std::abort();
    }
}

void note_loop(int step) {
    require_order(step < 0 || (held_locks.loop + held_locks.table + held_locks.x) == 0,
                  "loop_lock");
    held_locks.loop += step;
}

void note_table(int step) {
    require_order(step < 0 || held_locks.x == 0, "table_lock");
    held_locks.table += step;
}

void note_x(int step) {
    require_order(step < 0 || held_locks.x == 0, "x_lock");
    held_locks.x += step;
}

#else

void note_loop(int) {}
void note_table(int) {}
void note_x(int) {}

#endif

} // namespace

XLockGuard::XLockGuard(UiEngine* engine) : engine_(engine) {
    note_x(1);
    pthread_mutex_lock(&engine_->x_lock);
}

XLockGuard::~XLockGuard() {
    pthread_mutex_unlock(&engine_->x_lock);
    note_x(-1);
}

TableLockGuard::TableLockGuard(UiEngine* engine) : engine_(engine) {
    note_table(1);
    pthread_mutex_lock(&engine_->table_lock);
}

TableLockGuard::~TableLockGuard() {
    pthread_mutex_unlock(&engine_->table_lock);
    note_table(-1);
}

LoopLockGuard::LoopLockGuard(UiEngine* engine) : engine_(engine) {
    note_loop(1);
    pthread_mutex_lock(&engine_->loop_lock);
}

LoopLockGuard::~LoopLockGuard() {
    pthread_mutex_unlock(&engine_->loop_lock);
    note_loop(-1);
}
