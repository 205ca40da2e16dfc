// install_steps.h: the steps of a careful installation, which a shell carries out.
//
// zeph_install_steps is the text of resources/steps/install.sh, which tells how it is called and
// what its steps do; zeph_uninstaller is that of uninstall.sh beside it. A step ends with one of
// these when it could not be done.
#pragma once

enum InstallStepStatus {
    step_no_room = 71,
    step_read_only = 72,
    step_in_the_way = 73,
    step_not_whole = 74,
    step_no_folder = 75,
    step_not_allowed = 76,
    step_interrupted = 77,
};

extern "C" {
#pragma GCC visibility push(hidden)
extern const char zeph_install_steps[];
extern const char zeph_uninstaller[];
#pragma GCC visibility pop
}
