// privileged_plan.h: what root is to do, as data, and the one loop that does it.
//
// A plan is a list of steps, each a command and what its failure means. It is made without any
// process, looked at in tests, and then carried out from the first step to the last, through sudo
// or su alike.
#pragma once

#include "privilege/privileged_command.h"
#include "privilege/privileged_runner.h"

#include <cstddef>
#include <cstdint>

inline constexpr std::size_t plan_steps_most = 12;
inline constexpr std::size_t plan_text_size = 65536; // bytes, with the zeros

// What a failed step means. A command that cannot be made, and one that gets no terminal for su,
// ends the plan in any case.
enum class StepFailure {
    ignored,   // the next step follows whatever became of this one
    ends_plan, // so does anything but exit status 0
};

struct PlanStep {
    const char* words[privileged_words_most + 1] = {}; // null-terminated; borrowed
    bool exact = false;                                // see PrivilegedCommand
    StepFailure failure = StepFailure::ignored;
    bool cancel_wait = false;           // five seconds follow in which a cancel ends the plan
    const char* unless_there = nullptr; // when something is at this path the step is left out
    const char* link_removed = nullptr; // a link at this path is removed first, as the person
    bool keeps_undo = false; // this step's success leaves the plan's undo in force, see below
};

struct PrivilegedPlan {
    PlanStep steps[plan_steps_most];
    std::size_t step_count;
    PlanStep undo;    // words null = nothing to undo
    bool falls_short; // more was to be done but could not be planned: the plan fails at its end
    char text[plan_text_size]; // what is formatted for the steps' words
    std::size_t text_length;
};

// Adds a step; sets falls_short when there is no room.
void plan_add_step(PrivilegedPlan* plan, const PlanStep& step);

// Formats a word that lives as long as the plan. Null when it does not fit.
[[nodiscard, gnu::format(printf, 2, 3)]] const char* plan_text(PrivilegedPlan* plan,
                                                               const char* format, ...);

// What became of a plan.
struct PlanResult {
    std::int32_t status;  // 0 = carried out to its end; 1 = not
    CommandResult ending; // what became of the step that ended it; cancelled = in a wait, perhaps
};

// Carries the plan out by auth_method (AuthMethod, not none). By the person's own rights the
// password is not needed. When it ends right after steps that keep undo in force, undo is carried
// out too, whether or not it was a cancel that ended it. password is borrowed.
[[nodiscard]] PlanResult run_plan(PrivilegedRunner* runner, std::int32_t auth_method,
                                  const PrivilegedPlan& plan, const char* password);
