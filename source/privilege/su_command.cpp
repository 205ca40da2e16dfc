// su_command.cpp: the entries of the su method.
#include "privilege/su_command.h"

#include "privilege/command_words.h"
#include "privilege/password_dialogue.h"

#include <cstdlib>
#include <cstring>

namespace {

enum class SuResult { no_terminal, failed, succeeded };

// The echo of the typed line, and the line after it.
void discard_two_lines(Dialogue* dialogue) {
    char line[pty_line_size];
    read_pty_line(dialogue, line);
    read_pty_line(dialogue, line);
    explicit_bzero(line, sizeof line);
}

SuResult run(PrivilegedRunner* runner, const char* command, const char* password,
             DialoguePurpose purpose) {
    const char* const arguments[] = {runner->su_path, "-c", command, nullptr};
    Dialogue dialogue;
    if (!dialogue_start(&dialogue, runner, arguments, PromptRule::any, purpose)) {
        runner->log("** ERROR ** %s: failed to fork pty for su\n", runner->title);
        return SuResult::no_terminal;
    }
    if (dialogue_await_prompt(&dialogue)) {
        dialogue_answer(&dialogue, password);
        discard_two_lines(&dialogue);
    }
    // The master is left open on purpose; see the header.
    return dialogue_finish(&dialogue) ? SuResult::succeeded : SuResult::failed;
}

struct FolderCommand {
    bool (*plain)(char (&command)[command_line_size], const char* folder);
    char* (*quoted)(const char* folder);
};

// false when the command cannot be made for that folder; then nothing was run.
bool run_on_folder(PrivilegedRunner* runner, const FolderCommand& make, const char* folder,
                   const char* password, SuResult* result) {
    if (!runner->exact_folder_names) {
        char command[command_line_size];
        if (!make.plain(command, folder)) {
            return false;
        }
        *result = run(runner, command, password, DialoguePurpose::command);
        return true;
    }
    char* command = make.quoted(folder);
    if (command == nullptr) {
        return false;
    }
    *result = run(runner, command, password, DialoguePurpose::command);
    std::free(command);
    return true;
}

} // namespace

bool su_check_password(PrivilegedRunner* runner, const char* password) {
    return run(runner, "echo", password, DialoguePurpose::check) == SuResult::succeeded;
}

std::int32_t su_run(PrivilegedRunner* runner, const char* command, const char* password) {
    const SuResult result = run(runner, command, password, DialoguePurpose::command);
    return result == SuResult::no_terminal ? 1 : 0;
}

std::int32_t su_extract(PrivilegedRunner* runner, const char* folder, const char* password) {
    SuResult result = SuResult::no_terminal;
    if (!run_on_folder(runner, {extraction_command, quoted_extraction_command}, folder, password,
                       &result) ||
        result == SuResult::no_terminal) {
        return 1;
    }
    return wait_for_cancel(runner);
}

bool su_verify(PrivilegedRunner* runner, const char* folder, const char* password) {
    SuResult result = SuResult::no_terminal;
    return run_on_folder(runner, {comparison_command, quoted_comparison_command}, folder, password,
                         &result) &&
           result == SuResult::succeeded;
}
