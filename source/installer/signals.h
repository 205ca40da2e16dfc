// signals.h: a signal asks the flow to unwind; none ends the process by itself.
#pragma once

// A console that is gone, or a file that may not grow, makes a write fail and does not end the
// process: until its end, the farewell included.
void ignore_failed_writes();

// Installs the handlers, keeping the actions that were in force. SIGTERM, SIGINT and SIGHUP say so
// set cancel_requested and say so on the console, unless that would have to wait; they are taken
// even when the parent has blocked them.
void install_signal_handlers();

// Whether the calling thread, and those that it makes from then on, take the three. One that may be
// kept waiting by a file system should not: its handlers would wait, too.
void take_signals_here(bool here);

// Waits until no handler is at work on any other thread. Handlers wait for nobody.
void wait_for_handlers();

// Puts the old actions of the three back.
void restore_signal_handlers();
