// own_command.cpp: a child that is asked nothing.
#include "privilege/own_command.h"

#include "privilege/password_dialogue.h"

CommandResult own_run(PrivilegedRunner* runner, const PrivilegedCommand& command) {
    // env looks the program up; its first word is no NAME=VALUE.
    const char* arguments[privileged_words_most + 2] = {"/usr/bin/env"};
    std::size_t count = 1;
    for (const char* const* word = command.words; *word != nullptr; ++word) {
        if (count == privileged_words_most + 1) {
            return {CommandOutcome::not_made};
        }
        arguments[count++] = *word;
    }
    Dialogue dialogue;
    if (!dialogue_start(&dialogue, runner, arguments, PromptRule::named,
                        DialoguePurpose::command)) {
        runner->log("** ERROR ** %s: failed to fork pty for a command\n", runner->title);
        return {CommandOutcome::no_terminal};
    }
    const CommandResult result = dialogue_finish(&dialogue);
    pty_child_hang_up(&dialogue.child);
    return result;
}
