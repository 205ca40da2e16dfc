// password_dialogue.cpp: listening to sudo and su, and knowing when to type and when to leave.
#include "privilege/password_dialogue.h"

#include <signal.h>

#include <cstring>

namespace {

constexpr std::int32_t listening_ms = 10; // one turn of listening
constexpr std::int32_t typing_patience_ms = 5000;
constexpr std::int32_t prompt_settled_ms = 50;     // for a prompt that is written in two pieces
constexpr std::int32_t hidden_settled_ms = 250;    // for a prompt that is still to be written
constexpr std::int32_t same_line_prompt_ms = 2000; // for one in the line of the answer
constexpr std::int32_t echoing_prompt_ms = 3000;
constexpr std::int32_t strange_question_ms = 10000;
constexpr std::int32_t unread_answer_ms = 60000; // busy machines have handed one over after 26 s
constexpr std::int32_t command_grace_ms = 30000;
constexpr std::int32_t survivor_patience_ms = 2000;
constexpr std::int32_t last_readings = 256; // of what a child that has ended left behind
constexpr std::int32_t extraction_wait_rounds = 5000;

std::int64_t quiet_ms(const Dialogue* dialogue) {
    return monotonic_ms() - dialogue->last_output_at;
}

// How long a prompt must stand before it counts. One in the line of an answer is a second one,
// unless the answer was typed before the first was to be seen.
std::int32_t settled_ms(const PromptText& text) {
    if (!text.answer_line) {
        return prompt_settled_ms;
    }
    return text.answered_blind ? unread_answer_ms : same_line_prompt_ms;
}

// A prompt stands at the end of the text. Its line must be settled and echo off, so that neither
// the rest of a prompt nor a command's half-written line is taken for another one.
bool asks_by_name(const Dialogue* dialogue) {
    if (!dialogue->text.prompt_is_open || quiet_ms(dialogue) < settled_ms(dialogue->text)) {
        return false;
    }
    const PtyTyping typing = pty_child_typing(&dialogue->child);
    if (typing == PtyTyping::echoed) {
        // After the answer it may as well be the output of a command.
        const bool may_be_output =
            dialogue->answered && dialogue->purpose == DialoguePurpose::command;
        return !may_be_output && quiet_ms(dialogue) >= echoing_prompt_ms;
    }
    return typing == PtyTyping::hidden;
}

// A prompt that does not say so in its last line: echo off is the sign.
bool asks_silently(const Dialogue* dialogue) {
    return (dialogue->rule == PromptRule::any || dialogue->text.prompt_mentioned) &&
           quiet_ms(dialogue) >= hidden_settled_ms &&
           pty_child_typing(&dialogue->child) == PtyTyping::hidden;
}

bool asks_as_sudo_rs(const Dialogue* dialogue) {
    return dialogue->text.sudo_rs_line && quiet_ms(dialogue) >= prompt_settled_ms &&
           pty_child_typing(&dialogue->child) == PtyTyping::hidden;
}

bool asks_what_nobody_answers(const Dialogue* dialogue) {
    const std::int32_t patience =
        dialogue->text.answer_line ? unread_answer_ms : strange_question_ms;
    return dialogue->text.line_is_open && quiet_ms(dialogue) >= patience &&
           pty_child_typing(&dialogue->child) == PtyTyping::hidden;
}

bool cancel_is_due(Dialogue* dialogue) {
    if (dialogue->cancel_requested->load() == 0) {
        return false;
    }
    if (dialogue->cancel_noticed_at == 0) {
        dialogue->cancel_noticed_at = monotonic_ms();
    }
    return dialogue->purpose == DialoguePurpose::check ||
           monotonic_ms() - dialogue->cancel_noticed_at >= command_grace_ms;
}

// Reads once, at most size bytes; the caller wipes the buffer.
std::size_t hear(Dialogue* dialogue, char* buffer, std::size_t size, std::int32_t patience_ms) {
    const std::size_t count = pty_child_read(&dialogue->child, buffer, size, patience_ms);
    if (count > 0) {
        prompt_text_feed(&dialogue->text, buffer, count);
        dialogue->last_output_at = monotonic_ms();
    }
    return count;
}

std::size_t hear_and_forget(Dialogue* dialogue, std::int32_t patience_ms) {
    char reading[reading_length + 1];
    const std::size_t count = hear(dialogue, reading, reading_length, patience_ms);
    explicit_bzero(reading, sizeof reading);
    return count;
}

bool has_complained(const Dialogue* dialogue) {
    const bool by_sudo = dialogue->rule == PromptRule::named && dialogue->text.complained;
    return dialogue->answered && (by_sudo || dialogue->text.failed);
}

bool is_refused(const Dialogue* dialogue) {
    return has_complained(dialogue) || (dialogue->answered && asks_by_name(dialogue)) ||
           asks_what_nobody_answers(dialogue);
}

// What the child's last words, its end or the person's wish make of the dialogue. The words come
// first: a complaint counts, however the child ended after it.
void judge(Dialogue* dialogue) {
    if (pty_child_ended(&dialogue->child)) {
        for (std::int32_t i = 0; i < last_readings && hear_and_forget(dialogue, 0) > 0; ++i) {
        }
        dialogue->state = has_complained(dialogue) ? DialogueState::refused : DialogueState::ended;
    } else if (is_refused(dialogue)) {
        dialogue->state = DialogueState::refused;
    } else if (cancel_is_due(dialogue)) {
        dialogue->state = DialogueState::cancelled;
    }
}

void listen(Dialogue* dialogue) {
    static_cast<void>(hear_and_forget(dialogue, listening_ms));
    judge(dialogue);
}

void await_survivor(Dialogue* dialogue) {
    PtyChild* child = &dialogue->child;
    std::int64_t deadline = monotonic_ms() + survivor_patience_ms;
    while (!pty_child_ended(child) && monotonic_ms() < deadline) {
        pause_ms(listening_ms);
    }
    if (child->process == 0) {
        return;
    }
    kill(child->process, SIGKILL); // not permitted once the child is root
    deadline = monotonic_ms() + survivor_patience_ms;
    while (!pty_child_ended(child) &&
           (monotonic_ms() < deadline || dialogue->cancel_requested->load() == 0)) {
        pause_ms(listening_ms);
    }
}

} // namespace

bool dialogue_start(Dialogue* dialogue, const PrivilegedRunner* runner,
                    const char* const* arguments, PromptRule rule, DialoguePurpose purpose) {
    *dialogue = Dialogue{};
    dialogue->cancel_requested = runner->cancel_requested;
    dialogue->purpose = purpose;
    dialogue->rule = rule;
    dialogue->state = DialogueState::open;
    dialogue->text = prompt_text_start();
    if (!pty_child_start(&dialogue->child, arguments)) {
        return false;
    }
    pause_ms(answering_pause_ms);
    dialogue->last_output_at = monotonic_ms();
    return true;
}

bool dialogue_await_prompt(Dialogue* dialogue) {
    while (dialogue->state == DialogueState::open) {
        static_cast<void>(hear_and_forget(dialogue, listening_ms));
        if (asks_by_name(dialogue) || asks_silently(dialogue)) {
            return true;
        }
        judge(dialogue);
    }
    return false;
}

bool dialogue_await_sudo_rs(Dialogue* dialogue) {
    while (dialogue->state == DialogueState::open) {
        listen(dialogue);
        // Another sudo that has just hidden what is typed may still write its prompt.
        if (dialogue->state == DialogueState::open && asks_as_sudo_rs(dialogue) &&
            hear_and_forget(dialogue, prompt_settled_ms) == 0 && asks_as_sudo_rs(dialogue)) {
            dialogue->state = DialogueState::asked;
        }
    }
    return dialogue->state == DialogueState::asked;
}

void dialogue_answer(Dialogue* dialogue, const char* password) {
    PtyChild* child = &dialogue->child;
    prompt_text_answered(&dialogue->text);
    dialogue->answered = true;
    // The zero byte goes out too, and in front of the line feed: tools stop at either.
    if (pty_child_type(child, password, std::strlen(password) + 1, typing_patience_ms)) {
        static_cast<void>(pty_child_type(child, "\n", 1, typing_patience_ms));
    }
    pause_ms(answering_pause_ms);
    dialogue->last_output_at = monotonic_ms();
}

void read_pty_line(Dialogue* dialogue, char (&line)[pty_line_size]) {
    for (std::size_t i = 0; i < pty_line_size - 1; ++i) {
        line[i] = '\0';
        while (dialogue->state == DialogueState::open &&
               hear(dialogue, &line[i], 1, listening_ms) == 0) {
            judge(dialogue);
        }
        if (line[i] == '\n') {
            line[i] = '\0';
            return;
        }
    }
    line[pty_line_size - 1] = '\0';
}

CommandResult dialogue_finish(Dialogue* dialogue) {
    while (dialogue->state == DialogueState::open) {
        listen(dialogue);
    }
    if (dialogue->state != DialogueState::ended) {
        pty_child_hang_up(&dialogue->child);
        await_survivor(dialogue);
    }
    pty_child_finish(&dialogue->child);
    switch (dialogue->state) {
    case DialogueState::ended:
        return {pty_child_exit_status(&dialogue->child) == 0 ? CommandOutcome::succeeded
                                                             : CommandOutcome::failed,
                pty_child_shell_status(&dialogue->child)};
    case DialogueState::cancelled:
        return {CommandOutcome::cancelled};
    default:
        return {CommandOutcome::refused};
    }
}

std::int32_t wait_for_cancel(const PrivilegedRunner* runner) {
    for (std::int32_t round = 0; round < extraction_wait_rounds; ++round) {
        if (runner->cancel_requested->load() != 0) {
            return 1;
        }
        pause_ms(1);
    }
    return runner->cancel_requested->load() != 0 ? 1 : 0;
}
