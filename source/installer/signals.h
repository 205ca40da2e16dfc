// signals.h: a signal asks the flow to unwind; none ends the process by itself.
#pragma once

// A console that is gone, or a file that may not grow, makes a write fail and does not end the
// process: until its end, the farewell included.
void ignore_failed_writes();

// Installs the handlers, keeping the actions that were in force. SIGTERM, SIGINT and SIGHUP say so
// on the console and set cancel_requested; they are taken even when the parent has blocked them.
void install_signal_handlers();

// Puts the old actions of the three back.
void restore_signal_handlers();
