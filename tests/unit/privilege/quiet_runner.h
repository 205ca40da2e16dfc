// A runner that writes no lines and knows neither sudo nor su, for dialogues with other children.
#pragma once

#include "privilege/privileged_runner.h"

#include <atomic>
#include <cstdint>

struct QuietRunner {
    std::atomic<std::int32_t> cancel_requested{0};
    PrivilegedRunner runner{.title = "",
                            .cancel_requested = &cancel_requested,
                            .log = nullptr,
                            .sudo_path = {},
                            .su_path = {}};
};
