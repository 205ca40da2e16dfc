// oldest_c_library.c: what the program needs of the C library, bound to symbols that every glibc
// since 2.17 has. See README.md.
//
// Each function here is hidden: the program's own code and its libraries call it, and libX11 goes
// on to call the C library's. What the program does not use, the linker throws away.
#include <fcntl.h>
#include <math.h>
#include <pthread.h>
#include <pty.h>
#include <signal.h>
#include <stddef.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// The version that a processor's symbols had when glibc first ran on it; it never goes away.
#if defined(__x86_64__)
#define FIRST_VERSION "GLIBC_2.2.5"
#elif defined(__aarch64__)
#define FIRST_VERSION "GLIBC_2.17"
#else
#error "The first version of this processor's symbols has to be added here"
#endif

// Calls to oldest_NAME go to the C library's NAME of that version.
#define OLDEST(name) __asm__(".symver oldest_" #name ", " #name "@" FIRST_VERSION)

// Threads and terminals: in libpthread and libutil until 2.34.

OLDEST(pthread_create);
int oldest_pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_create(pthread_t* restrict thread, const pthread_attr_t* restrict attributes,
                   void* (*body)(void*), void* restrict argument) {
    return oldest_pthread_create(thread, attributes, body, argument);
}

OLDEST(pthread_join);
int oldest_pthread_join(pthread_t, void**);
int pthread_join(pthread_t thread, void** result) {
    return oldest_pthread_join(thread, result);
}

OLDEST(pthread_sigmask);
int oldest_pthread_sigmask(int, const sigset_t*, sigset_t*);
int pthread_sigmask(int how, const sigset_t* restrict set, sigset_t* restrict old_set) {
    return oldest_pthread_sigmask(how, set, old_set);
}

OLDEST(pthread_mutexattr_init);
int oldest_pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_init(pthread_mutexattr_t* attributes) {
    return oldest_pthread_mutexattr_init(attributes);
}

OLDEST(pthread_mutexattr_settype);
int oldest_pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_mutexattr_settype(pthread_mutexattr_t* attributes, int type) {
    return oldest_pthread_mutexattr_settype(attributes, type);
}

OLDEST(pthread_mutexattr_destroy);
int oldest_pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_mutexattr_destroy(pthread_mutexattr_t* attributes) {
    return oldest_pthread_mutexattr_destroy(attributes);
}

OLDEST(pthread_mutex_trylock);
int oldest_pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t* mutex) {
    return oldest_pthread_mutex_trylock(mutex);
}

OLDEST(forkpty);
int oldest_forkpty(int*, char*, const struct termios*, const struct winsize*);
int forkpty(int* master, char* name, const struct termios* settings, const struct winsize* size) {
    return oldest_forkpty(master, name, settings, size);
}

// Files: functions of the C library since 2.33, of the kernel since long. On these processors both
// mean the same struct stat.

int fstatat(int folder, const char* restrict path, struct stat* restrict status, int flags) {
    return (int)syscall(SYS_newfstatat, folder, path, status, flags);
}

int stat(const char* restrict path, struct stat* restrict status) {
    return fstatat(AT_FDCWD, path, status, 0);
}

int fstat(int descriptor, struct stat* status) {
    return (int)syscall(SYS_fstat, descriptor, status);
}

int lstat(const char* restrict path, struct stat* restrict status) {
    return fstatat(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}

// Wiping: in the C library since 2.25. The compiler is told that the bytes are looked at, and so
// cannot leave the writing out.

void explicit_bzero(void* bytes, size_t count) {
    memset(bytes, 0, count);
    __asm__ volatile("" : : "r"(bytes) : "memory");
}

// What it is called as where the compiler knows how large the bytes' place is.
void __explicit_bzero_chk(void* bytes, size_t count, size_t place) {
    if (count > place) {
        abort();
    }
    explicit_bzero(bytes, count);
}

// Numbers. Newer versions differ in what they do to errno; the results are the same.

OLDEST(powf);
float oldest_powf(float, float);
float powf(float base, float exponent) {
    return oldest_powf(base, exponent);
}

OLDEST(sqrtf);
float oldest_sqrtf(float);
float sqrtf(float value) {
    return oldest_sqrtf(value);
}

// What newer headers make of strtol: it also knows binary digits, which nothing here asks for.
OLDEST(strtol);
long oldest_strtol(const char*, char**, int);
long __isoc23_strtol(const char* text, char** end, int base) {
    return oldest_strtol(text, end, base);
}

// The start. Start files made for glibc 2.34 or newer leave it to the C library to run the
// program's constructors; an older one takes a function that does it, and every newer one takes
// that function from programs that ask for the first version.

typedef void Constructor(int, char**, char**);
typedef int Main(int, char**, char**);

extern Constructor* __init_array_start[] __attribute__((visibility("hidden")));
extern Constructor* __init_array_end[] __attribute__((visibility("hidden")));

static void run_constructors(int count, char** arguments, char** environment) {
    for (Constructor** constructor = __init_array_start; constructor != __init_array_end;
         ++constructor) {
        (*constructor)(count, arguments, environment);
    }
}

OLDEST(__libc_start_main);
int oldest___libc_start_main(Main*, int, char**, Constructor*, void (*)(void), void (*)(void),
                             void*);
int __libc_start_main(Main* program, int count, char** arguments, Constructor* constructors,
                      void (*destructors)(void), void (*loader_end)(void), void* stack_end) {
    (void)constructors; // those of old start files do the same
    return oldest___libc_start_main(program, count, arguments, run_constructors, destructors,
                                    loader_end, stack_end);
}
