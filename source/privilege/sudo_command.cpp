// sudo_command.cpp: the entries of the sudo method.
#include "privilege/sudo_command.h"

#include "privilege/command_words.h"
#include "privilege/password_dialogue.h"

namespace {

constexpr std::size_t fixed_words = 4; // sudo -S -p password

struct SudoArguments {
    const char* list[fixed_words + privileged_words_most + 1]; // null-terminated
    CommandWords split;                                        // what a plain command's point into
};

// false when the command is too long.
bool make_arguments(SudoArguments* arguments, const PrivilegedRunner* runner,
                    const PrivilegedCommand& command) {
    *arguments = {{runner->sudo_path, "-S", "-p", "password"}, {}};
    const char** next = arguments->list + fixed_words;
    if (command.exact) {
        for (const char* const* word = command.words; *word != nullptr; ++word) {
            if (next == arguments->list + fixed_words + privileged_words_most) {
                return false;
            }
            *next++ = *word;
        }
        return true;
    }
    char line[command_line_size];
    if (!plain_line(line, command.words)) {
        return false;
    }
    split_command(&arguments->split, line);
    for (std::size_t i = 0; i < arguments->split.count; ++i) {
        *next++ = arguments->split.text[i];
    }
    return true;
}

bool start(Dialogue* dialogue, PrivilegedRunner* runner, const char* const* arguments,
           DialoguePurpose purpose) {
    if (dialogue_start(dialogue, runner, arguments, PromptRule::named, purpose)) {
        return true;
    }
    runner->log("** ERROR ** %s: failed to fork pty for sudo\n", runner->title);
    return false;
}

CommandResult finish(Dialogue* dialogue) {
    const CommandResult result = dialogue_finish(dialogue);
    pty_child_hang_up(&dialogue->child);
    return result;
}

// Without a password nothing is answered, whatever is asked.
CommandResult run(PrivilegedRunner* runner, const char* const* arguments, const char* password,
                  DialoguePurpose purpose) {
    Dialogue dialogue;
    if (!start(&dialogue, runner, arguments, purpose)) {
        return {CommandOutcome::no_terminal};
    }
    if (password != nullptr && dialogue_await_prompt(&dialogue)) {
        dialogue_answer(&dialogue, password);
    }
    return finish(&dialogue);
}

CommandResult forget(PrivilegedRunner* runner, DialoguePurpose purpose) {
    const char* const arguments[] = {runner->sudo_path, "-k", nullptr};
    return run(runner, arguments, nullptr, purpose);
}

CommandResult run_fresh(PrivilegedRunner* runner, const PrivilegedCommand& command,
                        const char* password, DialoguePurpose purpose) {
    SudoArguments arguments;
    if (!make_arguments(&arguments, runner, command)) {
        return {CommandOutcome::not_made};
    }
    static_cast<void>(forget(runner, purpose));
    return run(runner, arguments.list, password, purpose);
}

} // namespace

std::int32_t sudo_forget(PrivilegedRunner* runner) {
    return forget(runner, DialoguePurpose::command).outcome == CommandOutcome::succeeded;
}

bool sudo_check_password(PrivilegedRunner* runner, const char* password) {
    const char* const words[] = {"echo", nullptr};
    return run_fresh(runner, {words, false}, password, DialoguePurpose::check).outcome ==
           CommandOutcome::succeeded;
}

CommandResult sudo_run_fresh(PrivilegedRunner* runner, const PrivilegedCommand& command,
                             const char* password) {
    return run_fresh(runner, command, password, DialoguePurpose::command);
}

std::int32_t sudo_probe(PrivilegedRunner* runner, const char* user) {
    const char* const arguments[] = {runner->sudo_path, "-u", user, "echo", nullptr};
    Dialogue dialogue;
    if (!start(&dialogue, runner, arguments, DialoguePurpose::check)) {
        return 0;
    }
    const bool asks = dialogue_await_sudo_rs(&dialogue);
    return finish(&dialogue).outcome == CommandOutcome::succeeded || asks ? 1 : 0;
}
