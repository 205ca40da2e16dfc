// hang_watch.h: a cancel that ends the process although something hangs.
//
// A file system whose server has gone, a console that nobody reads: whoever waits for one of these
// sees no flag any more. So a thread of its own, which waits for nothing, takes the signals and
// watches the main thread after a cancel: when it does not come on for a second, and
// no command is running as root, everything is tidied up here and the process ends. A command that
// runs as root has its own limit and is not cut off.
#pragma once

// Starts the watch, which takes the signals from then on; to be called after the other threads have
// been made with signals kept off (take_signals_here). Without a thread to be had the calling one
// takes the signals, and nobody watches.
void start_hang_watch();
