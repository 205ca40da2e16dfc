// main_callbacks.h: what the main window and the folder browser do with events.
#pragma once

// Registers the callbacks of the main window, but for its keys, and those of the browser.
void main_callbacks_register();

// Registers the callbacks for keys and for pasted text.
void main_callbacks_register_keys();
