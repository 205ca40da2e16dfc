// password_dialogue.h: a conversation with sudo or su, from the first prompt to the child's end.
//
// The child is listened to all the time, a few milliseconds at once, so that it never blocks on a
// full terminal and every change is noticed: a prompt, a refusal, its end, the wish to cancel.
//
// When is a password asked for? When the prompt stands at the end of the text and the terminal has
// stopped echoing: what is typed earlier may be flushed away, or shown. However late it comes and
// however much is said before it, it is waited for. A prompt that stands for three seconds in a
// terminal that goes on echoing is answered all the same.
//
// When is it refused? When sudo complains, or when a password is asked for a second time (which
// needs no language), or when a question that is not understood stands for ten seconds in a
// terminal that hides the answer: nobody will ever give one. While nothing has come since the
// answer but the rest of its line, it may not have been read yet, and a minute is waited.
//
// sudo-rs asks for the password even of a person who wants to be nobody else. Where nothing is to
// be typed, that it asks is all there is to know, and it is hung up on.
//
// A refusal hangs up on the child. Cancelling hangs up too, once the dialogue's grace is over: at
// once while a password is only being checked, after thirty seconds while a command is at work, so
// that an extraction under way is not cut in half. Until then everything goes its ordinary way,
// also for a command that is started when cancelling has long been asked for.
//
// A child that survives the hang-up is given two seconds, then killed where that is permitted, then
// waited for until it ends or cancelling is asked for. In all other cases no zombie is left.
#pragma once

#include "privilege/privileged_command.h"
#include "privilege/privileged_runner.h"
#include "privilege/prompt_text.h"
#include "privilege/pty_child.h"

#include <cstddef>
#include <cstdint>

enum class DialogueState {
    open,      // the child is at work, or asking
    ended,     // it has ended by itself
    refused,   // it does not accept the password
    cancelled, // the person gave up, and the grace is over
    asked,     // sudo-rs asks, and nothing is to be typed
};

// What counts as a first prompt, and whether words can refuse.
enum class PromptRule {
    named, // sudo: the word "password" in whatever text; a complaint refuses
    any,   // su: anything that hides what is typed; a complaint other than that of sudo-rs's su is
           // only followed by su's end
};

// What the dialogue is for.
enum class DialoguePurpose {
    check,   // nothing is lost when it is broken off
    command, // changes the system
};

struct Dialogue {
    PtyChild child;
    PromptText text;
    const std::atomic<std::int32_t>* cancel_requested; // borrowed
    DialoguePurpose purpose;
    PromptRule rule;
    DialogueState state;
    bool answered;                  // a password has been typed
    std::int64_t last_output_at;    // monotonic milliseconds
    std::int64_t cancel_noticed_at; // the same; 0 = not yet
};

// The pause after a child's start and after typing, in milliseconds.
inline constexpr std::int32_t answering_pause_ms = 250;

// Bytes of a line's buffer, with the zero.
inline constexpr std::size_t pty_line_size = 255;

// Starts the child and pauses. false when there is no pseudo-terminal: nothing is to be undone.
[[nodiscard]] bool dialogue_start(Dialogue* dialogue, const PrivilegedRunner* runner,
                                  const char* const* arguments, PromptRule rule,
                                  DialoguePurpose purpose);

// Waits for the first prompt. true = it is there; false = the state is no longer open.
[[nodiscard]] bool dialogue_await_prompt(Dialogue* dialogue);

// Listens without typing until the state is no longer open. true = sudo-rs asks for a password, and
// the state is asked.
[[nodiscard]] bool dialogue_await_sudo_rs(Dialogue* dialogue);

// Types the password with its terminating zero, then a line feed, and pauses.
void dialogue_answer(Dialogue* dialogue, const char* password);

// Reads one line into line: its line feed becomes a zero, and after 254 bytes without one the line
// is cut. A byte that cannot be read, because the state is no longer open, counts as a zero byte.
void read_pty_line(Dialogue* dialogue, char (&line)[pty_line_size]);

// Waits until the state is no longer open, and for the child. It has succeeded when it has ended by
// itself with exit status 0 (or by a signal, which leaves that status 0; the result tells). The
// master is closed when the child was hung up on; otherwise it stays open.
[[nodiscard]] CommandResult dialogue_finish(Dialogue* dialogue);

// The wait after an extraction: 5,000 rounds of a millisecond. 1 as soon as cancelling is asked
// for, 0 when that did not happen.
[[nodiscard]] std::int32_t wait_for_cancel(const PrivilegedRunner* runner);
