// signals.h: a signal asks the flow to unwind; none ends the process by itself.
#pragma once

// Installs the handlers, keeping the actions that were in force. SIGTERM, SIGINT and SIGHUP say so
// on the console and set cancel_requested. SIGPIPE is ignored: a console that is gone must not
// stop the clean-up.
void install_signal_handlers();

// Puts the old actions back.
void restore_signal_handlers();
