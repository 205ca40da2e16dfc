// sudo_command.cpp: the entries of the sudo method.
#include "privilege/sudo_command.h"

#include "privilege/command_words.h"
#include "privilege/password_dialogue.h"

namespace {

constexpr std::size_t fixed_words = 4; // sudo -S -p password

bool start(PrivilegedRunner* runner, Dialogue* dialogue, const char* const* arguments,
           DialoguePurpose purpose) {
    if (dialogue_start(dialogue, runner, arguments, PromptRule::named, purpose)) {
        return true;
    }
    runner->log("** ERROR ** %s: failed to fork pty for sudo\n", runner->title);
    return false;
}

std::int32_t finish(Dialogue* dialogue) {
    const bool succeeded = dialogue_finish(dialogue);
    pty_child_hang_up(&dialogue->child);
    return succeeded ? 1 : 0;
}

std::int32_t run_without_answer(PrivilegedRunner* runner, const char* const* arguments,
                                DialoguePurpose purpose) {
    Dialogue dialogue;
    if (!start(runner, &dialogue, arguments, purpose)) {
        return 0;
    }
    return finish(&dialogue);
}

std::int32_t run_with_password(PrivilegedRunner* runner, const char* const* arguments,
                               const char* password, DialoguePurpose purpose) {
    Dialogue dialogue;
    if (!start(runner, &dialogue, arguments, purpose)) {
        return 0;
    }
    if (dialogue_await_prompt(&dialogue)) {
        dialogue_answer(&dialogue, password);
    }
    return finish(&dialogue);
}

std::int32_t run_line(PrivilegedRunner* runner, const char* command_line, const char* password,
                      DialoguePurpose purpose) {
    CommandWords words;
    split_command(&words, command_line);
    const char* arguments[fixed_words + command_words_most + 1] = {runner->sudo_path, "-S", "-p",
                                                                   "password"};
    for (std::size_t i = 0; i < words.count; ++i) {
        arguments[fixed_words + i] = words.text[i];
    }
    return run_with_password(runner, arguments, password, purpose);
}

std::int32_t run_tar_exactly(PrivilegedRunner* runner, const char* action, const char* folder,
                             const char* password) {
    const char* const arguments[] = {runner->sudo_path,  "-S", "-p",   "password", "tar", action,
                                     extraction_archive, "-C", folder, nullptr};
    return run_with_password(runner, arguments, password, DialoguePurpose::command);
}

} // namespace

std::int32_t sudo_forget(PrivilegedRunner* runner) {
    const char* const arguments[] = {runner->sudo_path, "-k", nullptr};
    return run_without_answer(runner, arguments, DialoguePurpose::command);
}

std::int32_t sudo_run(PrivilegedRunner* runner, const char* command_line, const char* password) {
    return run_line(runner, command_line, password, DialoguePurpose::command);
}

bool sudo_check_password(PrivilegedRunner* runner, const char* password) {
    static_cast<void>(sudo_forget(runner));
    return run_line(runner, "echo", password, DialoguePurpose::check) == 1;
}

std::int32_t sudo_run_fresh(PrivilegedRunner* runner, const char* command, const char* password) {
    static_cast<void>(sudo_forget(runner));
    static_cast<void>(sudo_run(runner, command, password));
    return 0;
}

std::int32_t sudo_extract(PrivilegedRunner* runner, const char* folder, const char* password) {
    char command[command_line_size];
    if (!runner->exact_folder_names && !extraction_command(command, folder)) {
        return 1;
    }
    static_cast<void>(sudo_forget(runner));
    if (runner->exact_folder_names) {
        static_cast<void>(run_tar_exactly(runner, "-xf", folder, password));
    } else {
        static_cast<void>(sudo_run(runner, command, password));
    }
    return wait_for_cancel(runner);
}

bool sudo_verify(PrivilegedRunner* runner, const char* folder, const char* password) {
    char command[command_line_size];
    if (!runner->exact_folder_names && !comparison_command(command, folder)) {
        return false;
    }
    static_cast<void>(sudo_forget(runner));
    return (runner->exact_folder_names ? run_tar_exactly(runner, "-df", folder, password)
                                       : sudo_run(runner, command, password)) == 1;
}

std::int32_t sudo_probe(PrivilegedRunner* runner, const char* user) {
    const char* const arguments[] = {runner->sudo_path, "-u", user, "echo", nullptr};
    return run_without_answer(runner, arguments, DialoguePurpose::check);
}
