// copy_failure.cpp: from exit statuses to words.
#include "installer/copy_failure.h"

#include "installer/install_steps.h"
#include "privilege/auth_method.h"

namespace {

// What sudo and su end with when they do not let a command run at all.
constexpr std::int32_t refusal_status = 1;

const char* refusal_text(std::int32_t auth_method) {
    switch (auth_method) {
    case auth_method_own:
        return "It is not allowed";
    case auth_method_su:
        return "su does not allow it";
    default:
        return "sudo does not allow it";
    }
}

const char* status_text(std::int32_t exit_status, std::int32_t auth_method) {
    switch (exit_status) {
    case refusal_status:
    case step_not_allowed:
        return refusal_text(auth_method);
    case step_no_room:
        return no_room_text;
    case step_read_only:
        return "The folder is read-only";
    case step_in_the_way:
        return "Something else of the same name is in the way";
    case step_not_whole:
        return "The files did not arrive whole";
    case step_no_folder:
        return "The folder is not there any more";
    default:
        return "The copying was interrupted";
    }
}

} // namespace

const char* copy_failure_text(const PlanResult& result, std::int32_t auth_method) {
    if (result.status == 0) {
        return nullptr;
    }
    switch (result.ending.outcome) {
    case CommandOutcome::refused:
        return refusal_text(auth_method);
    case CommandOutcome::no_terminal:
        return auth_method == auth_method_own ? "No terminal is left for the commands"
                                              : "No terminal is left for asking the password";
    case CommandOutcome::failed:
        return status_text(result.ending.exit_status, auth_method);
    case CommandOutcome::succeeded: // so is called what a signal has ended
        return result.ending.exit_status != 0 ? status_text(result.ending.exit_status, auth_method)
                                              : nullptr;
    default:
        return nullptr;
    }
}
