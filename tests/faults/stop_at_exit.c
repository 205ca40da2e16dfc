/* stop_at_exit.c: preloaded, it stops the program in the middle of exit(), so that a test can look
   at what the program leaves. */
#include <signal.h>

__attribute__((destructor)) static void stop(void) {
    raise(SIGSTOP);
}
