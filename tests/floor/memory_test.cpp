// memory_test.cpp: what the program has in place of the C++ library: its new and delete give back
// what they take, and a lock that fails ends it.
#include <gtest/gtest.h>

#include <malloc.h>

#include <csignal>
#include <cstddef>
#include <new>
#include <system_error>

// Not every compiler declares these without being asked.
void operator delete(void* memory, std::size_t size) noexcept;
void operator delete[](void* memory, std::size_t size) noexcept;

namespace {

constexpr std::size_t large = 1 << 20;

std::size_t bytes_in_use() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

TEST(ProgramMemory, IsGivenBackHoweverItIsDeleted) {
    const std::size_t before = bytes_in_use();
    for (int way = 0; way < 2; ++way) {
        // volatile: the compiler may leave out what it sees given back at once.
        void* volatile one = operator new(large, std::nothrow);
        void* volatile many = operator new[](large, std::nothrow);
        ASSERT_NE(one, nullptr);
        ASSERT_NE(many, nullptr);
        EXPECT_GE(bytes_in_use(), before + 2 * large);
        if (way == 0) {
            operator delete(one);
            operator delete[](many);
        } else {
            operator delete(one, large);
            operator delete[](many, large);
        }
        EXPECT_LT(bytes_in_use(), before + large) << "the program's memory grows, way " << way;
    }
}

TEST(ProgramMemory, OfNoSizeIsThereToo) {
    void* volatile nothing = operator new(0, std::nothrow);
    EXPECT_NE(nothing, nullptr);
    operator delete(nothing);
}

TEST(ProgramLocks, ThatCannotBeTakenEndTheProgram) {
    EXPECT_EXIT(std::__throw_system_error(1), testing::KilledBySignal(SIGABRT), "");
}

} // namespace
