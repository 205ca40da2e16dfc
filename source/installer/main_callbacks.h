// main_callbacks.h: what the main window and the folder browser do with events.
#pragma once

// Registers the callbacks of the main window, but for its field, and those of the browser.
void main_callbacks_register();

// Registers the callbacks for keys, and for the clipboard's text: before that nobody fetches it.
void main_callbacks_register_field();
