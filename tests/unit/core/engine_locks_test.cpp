// engine_locks_test.cpp: the order of the locks is enforced where it is checked.
#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"

#include <memory>
#include <thread>

namespace {

using EnginePointer = std::unique_ptr<UiEngine, decltype(&engine_destroy)>;

struct EngineLocks : testing::Test {
    EnginePointer engine{engine_new(), engine_destroy};
};

TEST_F(EngineLocks, MayBeTakenInTheirOrderAndTheTableTwice) {
    const LoopLockGuard loop(engine.get());
    const TableLockGuard table(engine.get());
    const TableLockGuard table_again(engine.get());
    const XLockGuard x(engine.get());
}

TEST_F(EngineLocks, XLockIsTheOneThatTheGetterNames) {
    const XLockGuard x(engine.get());
    std::thread other([this] { EXPECT_NE(pthread_mutex_trylock(engine_lock(engine.get())), 0); });
    other.join();
}

#ifndef NDEBUG
struct EngineLocksDeathTest : EngineLocks {};

TEST_F(EngineLocksDeathTest, TableAfterXAborts) {
    EXPECT_DEATH(
        {
            const XLockGuard x(engine.get());
            const TableLockGuard table(engine.get());
        },
        "table_lock taken out of order");
}

TEST_F(EngineLocksDeathTest, XTwiceAborts) {
    EXPECT_DEATH(
        {
            const XLockGuard x(engine.get());
            const XLockGuard again(engine.get());
        },
        "x_lock taken out of order");
}

TEST_F(EngineLocksDeathTest, LoopAfterTableAborts) {
    EXPECT_DEATH(
        {
            const TableLockGuard table(engine.get());
            const LoopLockGuard loop(engine.get());
        },
        "loop_lock taken out of order");
}

TEST_F(EngineLocksDeathTest, LoopAfterXAborts) {
    EXPECT_DEATH(
        {
            const XLockGuard x(engine.get());
            const LoopLockGuard loop(engine.get());
        },
        "loop_lock taken out of order");
}

TEST_F(EngineLocksDeathTest, LoopAfterTableAndXAborts) {
    EXPECT_DEATH(
        {
            const TableLockGuard table(engine.get());
            const XLockGuard x(engine.get());
            const LoopLockGuard loop(engine.get());
        },
        "loop_lock taken out of order");
}
#endif

} // namespace
