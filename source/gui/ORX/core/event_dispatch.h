// event_dispatch.h: from an X event to the callback of the window it belongs to. For the event
// loop.
//
// Everything here runs on the event thread and is called with no lock held.
#pragma once

#include "gui/ORX/core/window_slot.h"

// Delivers one event. Events of other types and of windows that are not in the table are dropped.
void dispatch_event(UiEngine* engine, XEvent* event);

// Delivers what the person does: keys, pointer buttons and motion (input_events.cpp).
void dispatch_key_press(UiEngine* engine, XKeyEvent* event);
void dispatch_key_release(UiEngine* engine, XKeyEvent* event);
// The keyboard's symbols have changed, as they do when a program types for the person.
void dispatch_keyboard_change(UiEngine* engine, XMappingEvent* event);
void dispatch_button_press(UiEngine* engine, const XButtonEvent& event);
void dispatch_button_release(UiEngine* engine, const XButtonEvent& event);
void dispatch_motion(UiEngine* engine, const XMotionEvent& event);

// Delivers messages of other clients (message_events.cpp).
void dispatch_selection(UiEngine* engine, const XSelectionEvent& event);
void dispatch_property_change(UiEngine* engine, const XPropertyEvent& event);
void dispatch_client_message(UiEngine* engine, const XClientMessageEvent& event);
