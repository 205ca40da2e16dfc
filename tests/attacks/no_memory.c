// Preloaded: allocations that fail, at every NO_MEMORY_EVERY-th call or from NO_MEMORY_FROM on.
#define _GNU_SOURCE
#include <errno.h>
#include <stdatomic.h>
#include <stddef.h>
#include <stdlib.h>

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

static atomic_long calls;

static long number_of(const char* name) {
    const char* text = getenv(name);
    return text == NULL ? 0 : atol(text);
}

static int refused(void) {
    const long call = ++calls;
    const long every = number_of("NO_MEMORY_EVERY");
    const long from = number_of("NO_MEMORY_FROM");
    if ((every > 0 && call % every == 0) || (from > 0 && call >= from)) {
        errno = ENOMEM;
        return 1;
    }
    return 0;
}

void* malloc(size_t size) {
    return refused() ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    return refused() ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
    return refused() ? NULL : __libc_realloc(memory, size);
}
