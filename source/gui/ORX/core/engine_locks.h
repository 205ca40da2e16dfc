// engine_locks.h: scope guards for the engine's locks, with a check of their order in debug builds.
//
// Order: loop_lock, then table_lock, then x_lock. A thread that takes them in another order, or
// x_lock twice, is told so on standard error and the process aborts (debug builds only).
#pragma once

#include "gui/ORX/core/window_id.h"

class XLockGuard {
public:
    explicit XLockGuard(UiEngine* engine);
    ~XLockGuard();
    XLockGuard(const XLockGuard&) = delete;
    XLockGuard& operator=(const XLockGuard&) = delete;

private:
    UiEngine* engine_;
};

class TableLockGuard {
public:
    explicit TableLockGuard(UiEngine* engine);
    ~TableLockGuard();
    TableLockGuard(const TableLockGuard&) = delete;
    TableLockGuard& operator=(const TableLockGuard&) = delete;

private:
    UiEngine* engine_;
};

class LoopLockGuard {
public:
    explicit LoopLockGuard(UiEngine* engine);
    ~LoopLockGuard();
    LoopLockGuard(const LoopLockGuard&) = delete;
    LoopLockGuard& operator=(const LoopLockGuard&) = delete;

private:
    UiEngine* engine_;
};
