// installer_state.cpp: the one record.
#include "installer/installer_state.h"

InstallerState installer;
