// program_on_the_floor.c: a program that stands on the floor as the installer does, and prints what
// is not as the C library would have it. Run with one argument: a file of seven bytes.
#include <fcntl.h>
#include <math.h>
#include <pthread.h>
#include <pty.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

static int constructor_count;
static char constructor_argument[4096];

__attribute__((constructor)) static void count_constructor(int count, char** arguments,
                                                           char** environment) {
    constructor_count += 1;
    if (count == 2 && environment != NULL) {
        strncpy(constructor_argument, arguments[1], sizeof constructor_argument - 1);
    }
}

static void expect(int met, const char* what) {
    if (!met) {
        printf("not met: %s\n", what);
    }
}

static void expect_files(const char* file) {
    struct stat status;
    memset(&status, 0, sizeof status);
    expect(stat(file, &status) == 0 && status.st_size == 7, "stat tells a file's size");
    char link[4096];
    snprintf(link, sizeof link, "%s-link", file);
    expect(symlink(file, link) == 0, "a link can be made");
    expect(stat(link, &status) == 0 && S_ISREG(status.st_mode), "stat follows a link");
    expect(lstat(link, &status) == 0 && S_ISLNK(status.st_mode), "lstat does not");
    expect(stat("/nowhere", &status) == -1, "stat fails where there is nothing");
    const int descriptor = open(link, O_RDONLY);
    memset(&status, 0, sizeof status);
    expect(fstat(descriptor, &status) == 0 && status.st_size == 7, "fstat tells a file's size");
    close(descriptor);
    expect(fstat(descriptor, &status) == -1, "fstat fails once the file is closed");
    unlink(link);
}

static void* lock_again(void* lock) {
    return pthread_mutex_trylock(lock) == 0 ? lock : NULL;
}

static void expect_threads(void) {
    pthread_mutexattr_t recursive;
    pthread_mutex_t lock;
    expect(pthread_mutexattr_init(&recursive) == 0, "a mutex's attributes are made");
    expect(pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE) == 0, "and set");
    pthread_mutex_init(&lock, &recursive);
    expect(pthread_mutexattr_destroy(&recursive) == 0, "and given back");
    expect(pthread_mutex_trylock(&lock) == 0 && pthread_mutex_trylock(&lock) == 0,
           "a recursive mutex is locked twice by its thread");
    pthread_t thread;
    void* result = &lock;
    expect(pthread_create(&thread, NULL, lock_again, &lock) == 0, "a thread begins");
    expect(pthread_join(thread, &result) == 0 && result == NULL, "another thread cannot lock it");

    sigset_t wanted;
    sigset_t found;
    sigemptyset(&wanted);
    sigaddset(&wanted, SIGUSR1);
    expect(pthread_sigmask(SIG_BLOCK, &wanted, NULL) == 0, "a signal is blocked");
    expect(pthread_sigmask(SIG_BLOCK, NULL, &found) == 0 && sigismember(&found, SIGUSR1) == 1,
           "and told");
}

static void expect_terminal(void) {
    int master = -1;
    const int child = forkpty(&master, NULL, NULL, NULL);
    if (child == 0) {
        _exit(isatty(STDIN_FILENO) ? 5 : 6);
    }
    int status = 0;
    expect(child > 0 && waitpid(child, &status, 0) == child && WEXITSTATUS(status) == 5,
           "a child has a terminal");
    expect(isatty(master), "and so has its parent");
}

void __explicit_bzero_chk(void* bytes, size_t count, size_t place);

static void expect_wiping(void) {
    char secret[8] = "secret";
    const char zeros[8] = "";
    explicit_bzero(secret, 3);
    expect(memcmp(secret, "\0\0\0ret", 6) == 0, "what is to be wiped is wiped, and no more");
    __explicit_bzero_chk(secret, sizeof secret, sizeof secret);
    expect(memcmp(secret, zeros, sizeof secret) == 0, "a whole place is wiped");
    fflush(stdout);
    const int child = fork();
    if (child == 0) {
        __explicit_bzero_chk(secret, 2, 1);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    expect(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT,
           "wiping more than the place ends the program");
}

static void expect_numbers(void) {
    volatile float nine = 9.0F;
    volatile float half = 0.5F;
    expect(sqrtf(nine) == 3.0F, "the root of 9 is 3");
    expect(powf(nine, half) == 3.0F && powf(half, 2.0F) == 0.25F, "powers are powers");
    char* end = NULL;
    expect(strtol("-144x", &end, 10) == -144 && *end == 'x', "a number ends where its digits do");
    expect(strtol("1f", NULL, 16) == 31, "a number has the base that is asked for");
}

int main(int count, char** arguments) {
    expect(constructor_count == 1, "constructors run, once");
    expect(count == 2 && strcmp(constructor_argument, arguments[1]) == 0,
           "constructors are given the program's arguments");
    expect_files(arguments[1]);
    expect_threads();
    expect_terminal();
    expect_wiping();
    expect_numbers();
    return 0;
}
