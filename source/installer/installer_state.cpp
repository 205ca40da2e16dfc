// installer_state.cpp: the one record.
#include "installer/installer_state.h"

#include "installer/secret.h"

InstallerState installer;

void forget_password() {
    const WorkLock lock(installer.work_lock);
    secret_free(&installer.password);
}
