// sudden_end.h: what is said and tidied up when the display goes away, also where that ends the
// process at once.
//
// A lost display is a cancel, and the flow unwinds. An old Xlib, though, lets no process go on: it
// ends the process from within whatever call met the loss, on either thread, with the locks held
// that happen to be held there. So whatever may not be cut off there, or has to be found there
// whole, is done under installer.work_lock: a command that runs as root, the making and removing of
// a file in /tmp, the password's change of hands. It is the last in the order of locks, and nothing
// that is done under it may call the engine.
#pragma once

// Says that the display is lost, once, and asks the flow to unwind. Any thread, no lock.
void report_lost_display();

// What is left to be done where the main thread hangs and does not come back to unwind: wipes the
// password, removes the temporary files and the lock file, says farewell if the console takes it at
// once, and ends the process, waiting for nothing. Not while a command runs as root.
[[noreturn]] void end_without_main_thread();

// The last lines on the console, after those of signals.
void say_farewell();

// Does here and now what the flow and the teardown would: waits for a command that runs as root to
// end as after a cancel, wipes the password, removes the temporary files and the lock file, and
// says farewell. Keeps work_lock, so that nothing begins any more; the process has to end after it.
// Either thread, in the middle of an Xlib call.
void end_suddenly();
