/* stop_at_exit.c: preloaded, it stops the program in the middle of exit(), or before _exit(), so
   that a test can look at what the program leaves. */
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

__attribute__((destructor)) static void stop(void) {
    raise(SIGSTOP);
}

void _exit(int status) {
    stop();
    for (;;) {
        syscall(SYS_exit_group, status);
    }
}
