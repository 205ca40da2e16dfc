// splash_window.h: the picture that is shown first.
#pragma once

// Shows the splash in the middle of the screen for six seconds, or until it is clicked or the
// installation is cancelled, and takes it away again. false when it could not be made (said on the
// console). Main thread.
[[nodiscard]] bool show_splash();
