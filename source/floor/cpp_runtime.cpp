// cpp_runtime.cpp: the few things that the program needs of the C++ library at run time. See
// README.md.
#include <cstdlib>
#include <new>
#include <system_error>

// Nothing here throws, and nothing in the program calls the kind of new that would have to.

const std::nothrow_t std::nothrow{};

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

// A mutex that cannot be locked.
void std::__throw_system_error(int /*error*/) {
    std::abort();
}
