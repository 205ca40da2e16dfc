// privileged_plan.cpp: filling a plan, and the loop that carries it out.
#include "privilege/privileged_plan.h"

#include "privilege/auth_method.h"
#include "privilege/own_command.h"
#include "privilege/password_dialogue.h"
#include "privilege/su_command.h"
#include "privilege/sudo_command.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

namespace {

bool is_there(const char* path) {
    struct stat status {};
    return path != nullptr && stat(path, &status) == 0;
}

// Root would follow it wherever it leads.
void remove_link(const char* path) {
    struct stat status {};
    if (path != nullptr && lstat(path, &status) == 0 && S_ISLNK(status.st_mode)) {
        unlink(path);
    }
}

bool ends_plan(const PlanStep& step, std::int32_t auth_method, const CommandResult& result) {
    switch (result.outcome) {
    case CommandOutcome::not_made:
        return true;
    case CommandOutcome::no_terminal:
        return auth_method == auth_method_su || step.failure == StepFailure::ends_plan;
    case CommandOutcome::succeeded: // so is called what a signal has ended, too
        return step.failure == StepFailure::ends_plan && result.exit_status != 0;
    default:
        return step.failure == StepFailure::ends_plan;
    }
}

CommandResult run_step(PrivilegedRunner* runner, std::int32_t auth_method, const PlanStep& step,
                       const char* password) {
    const PrivilegedCommand command{step.words, step.exact};
    switch (auth_method) {
    case auth_method_sudo:
        return sudo_run_fresh(runner, command, password);
    case auth_method_own:
        return own_run(runner, command);
    default:
        return su_run(runner, command, password);
    }
}

} // namespace

void plan_add_step(PrivilegedPlan* plan, const PlanStep& step) {
    if (plan->step_count == plan_steps_most) {
        plan->falls_short = true;
        return;
    }
    plan->steps[plan->step_count++] = step;
}

const char* plan_text(PrivilegedPlan* plan, const char* format, ...) {
    char* text = plan->text + plan->text_length;
    const std::size_t room = plan_text_size - plan->text_length;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, room, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= room) {
        return nullptr;
    }
    plan->text_length += static_cast<std::size_t>(length) + 1;
    return text;
}

PlanResult run_plan(PrivilegedRunner* runner, std::int32_t auth_method, const PrivilegedPlan& plan,
                    const char* password) {
    bool undo = false;
    for (std::size_t i = 0; i < plan.step_count; ++i) {
        const PlanStep& step = plan.steps[i];
        if (is_there(step.unless_there)) {
            continue;
        }
        remove_link(step.link_removed);
        CommandResult result = run_step(runner, auth_method, step, password);
        bool ended = ends_plan(step, auth_method, result);
        undo = ended ? undo : step.keeps_undo;
        if (!ended && step.cancel_wait && wait_for_cancel(runner) != 0) {
            result = {CommandOutcome::cancelled};
            ended = true;
        }
        if (ended) {
            if (undo) {
                static_cast<void>(run_step(runner, auth_method, plan.undo, password));
            }
            return {1, result};
        }
    }
    return {plan.falls_short ? 1 : 0, {CommandOutcome::succeeded}};
}
