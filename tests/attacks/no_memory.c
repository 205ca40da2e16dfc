// Preloaded: memory that is not to be had. NO_MEMORY_FROM: no allocation works from that one on,
// whoever asks. NO_MEMORY_AT, NO_MEMORY_EVERY: of the program's own requests, which are counted
// apart, that one alone, or every so many, are refused. NO_MEMORY_LOG names a file that is told
// which were, and at the end how many there have been.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <link.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

static atomic_long calls;
static atomic_long own_calls;
static uintptr_t program_begin;
static uintptr_t program_end;

static long number_of(const char* name) {
    const char* text = getenv(name);
    return text == NULL ? 0 : atol(text);
}

static void tell(const char* what, long number, uintptr_t place) {
    const char* path = getenv("NO_MEMORY_LOG");
    char line[128];
    if (path != NULL) {
        const int length =
            snprintf(line, sizeof line, "%s %ld %#lx\n", what, number, (unsigned long)place);
        const int file = open(path, O_WRONLY | O_APPEND | O_CLOEXEC);
        if (file >= 0) {
            (void)!write(file, line, (size_t)length);
            close(file);
        }
    }
}

// The first one is the program itself.
static int measure(struct dl_phdr_info* object, size_t size, void* unused) {
    (void)size;
    (void)unused;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const uintptr_t end = object->dlpi_phdr[i].p_vaddr + object->dlpi_phdr[i].p_memsz;
        if (object->dlpi_phdr[i].p_type == PT_LOAD && object->dlpi_addr + end > program_end) {
            program_end = object->dlpi_addr + end;
        }
    }
    program_begin = object->dlpi_addr;
    return 1;
}

__attribute__((constructor)) static void begin(void) {
    dl_iterate_phdr(measure, NULL);
}

__attribute__((destructor)) static void end(void) {
    tell("asked", own_calls, 0);
}

static int refused(const void* caller) {
    const long call = ++calls;
    const long from = number_of("NO_MEMORY_FROM");
    int no = from > 0 && call >= from;
    const uintptr_t place = (uintptr_t)caller;
    if (place >= program_begin && place < program_end) {
        const long own = ++own_calls;
        const long every = number_of("NO_MEMORY_EVERY");
        no = no || own == number_of("NO_MEMORY_AT") || (every > 0 && own % every == 0);
        if (no) {
            tell("refused", own, place - program_begin);
        }
    }
    if (no) {
        errno = ENOMEM;
    }
    return no;
}

#define REFUSED refused(__builtin_return_address(0))
#define NEXT(function) ((__typeof__(&function))dlsym(RTLD_NEXT, #function))

void* malloc(size_t size) {
    return REFUSED ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    return REFUSED ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
    return REFUSED ? NULL : __libc_realloc(memory, size);
}

// What takes memory for whoever calls it.

void* aligned_alloc(size_t alignment, size_t size) {
    return REFUSED ? NULL : NEXT(aligned_alloc)(alignment, size);
}

char* strdup(const char* text) {
    return REFUSED ? NULL : NEXT(strdup)(text);
}

FILE* fdopen(int file, const char* mode) {
    return REFUSED ? NULL : NEXT(fdopen)(file, mode);
}

void* opendir(const char* path) {
    return REFUSED ? NULL : ((void* (*)(const char*))dlsym(RTLD_NEXT, "opendir"))(path);
}

void* mmap(void* place, size_t size, int rights, int kind, int file, off_t offset) {
    return REFUSED ? MAP_FAILED : NEXT(mmap)(place, size, rights, kind, file, offset);
}

void* XAllocWMHints(void) {
    return REFUSED ? NULL : ((void* (*)(void))dlsym(RTLD_NEXT, "XAllocWMHints"))();
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) {
    return REFUSED ? EAGAIN : NEXT(pthread_create)(thread, attributes, body, argument);
}
