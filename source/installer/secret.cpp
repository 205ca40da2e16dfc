// secret.cpp: copies of a password, each on pages of its own.
#include "installer/secret.h"

#include <sys/mman.h>

#include <cstring>

char* secret_copy(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        return nullptr;
    }
    // Before anything is written there. A limit that forbids it leaves a copy as any other.
    static_cast<void>(mlock(pages, size));
    std::memcpy(pages, text, size);
    return static_cast<char*>(pages);
}

void secret_free(char** secret) {
    if (*secret != nullptr) {
        const std::size_t length = std::strlen(*secret);
        explicit_bzero(*secret, length);
        munmap(*secret, length + 1);
        *secret = nullptr;
    }
}
