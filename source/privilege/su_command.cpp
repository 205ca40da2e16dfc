// su_command.cpp: the entries of the su method.
#include "privilege/su_command.h"

#include "privilege/command_words.h"
#include "privilege/password_dialogue.h"

#include <cstdlib>
#include <cstring>

namespace {

// The echo of the typed line, and the line after it.
void discard_two_lines(Dialogue* dialogue) {
    char line[pty_line_size];
    read_pty_line(dialogue, line);
    read_pty_line(dialogue, line);
    explicit_bzero(line, sizeof line);
}

CommandResult run(PrivilegedRunner* runner, const char* line, const char* password,
                  DialoguePurpose purpose) {
    const char* const arguments[] = {runner->su_path, "-c", line, nullptr};
    Dialogue dialogue;
    if (!dialogue_start(&dialogue, runner, arguments, PromptRule::any, purpose)) {
        runner->log("** ERROR ** %s: failed to fork pty for su\n", runner->title);
        return {CommandOutcome::no_terminal};
    }
    if (dialogue_await_prompt(&dialogue)) {
        dialogue_answer(&dialogue, password);
        discard_two_lines(&dialogue);
    }
    // The master is left open on purpose; see the header.
    return dialogue_finish(&dialogue);
}

} // namespace

bool su_check_password(PrivilegedRunner* runner, const char* password) {
    return run(runner, "echo", password, DialoguePurpose::check).outcome ==
           CommandOutcome::succeeded;
}

CommandResult su_run(PrivilegedRunner* runner, const PrivilegedCommand& command,
                     const char* password) {
    char plain[command_line_size];
    if (!command.exact) {
        return plain_line(plain, command.words)
                   ? run(runner, plain, password, DialoguePurpose::command)
                   : CommandResult{CommandOutcome::not_made};
    }
    char* quoted = quoted_line(command.words);
    if (quoted == nullptr) {
        return {CommandOutcome::not_made};
    }
    const CommandResult result = run(runner, quoted, password, DialoguePurpose::command);
    std::free(quoted);
    return result;
}
