// The lock itself, taken by several processes within the same microseconds.

#include "installer/lock_file.h"
#include "support/worlds/private_world.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <new>

namespace faults {
namespace {

constexpr int rounds = 150;
constexpr int takers = 8;

// Comes out of the barrier together with the others; ends with what the lock check says.
[[noreturn]] void take_lock(std::atomic<int>* ready) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
        _exit(2);
    }
    ready->fetch_add(1);
    while (ready->load() < takers) {
        sched_yield();
    }
    _exit(check_lock_file());
}

TEST(LockFile, IsTakenByExactlyOneOfEightAtTheSameMoment) {
    const support::PrivateWorld world;
    void* page = mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    for (int round = 0; round < rounds; ++round) {
        auto* ready = new (page) std::atomic<int>(0);
        remove_lock_file();
        for (int taker = 0; taker < takers; ++taker) {
            const pid_t process = fork();
            ASSERT_GE(process, 0);
            if (process == 0) {
                take_lock(ready);
            }
        }
        int taken = 0;
        for (int taker = 0; taker < takers; ++taker) {
            int status = 0;
            ASSERT_GT(wait(&status), 0);
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1);
            taken += WEXITSTATUS(status) == 0 ? 1 : 0;
        }
        ASSERT_EQ(taken, 1) << "in round " << round;
    }
    munmap(page, sizeof(std::atomic<int>));
}

} // namespace
} // namespace faults
