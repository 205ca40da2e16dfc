// An installer some of whose allocations fail.

#pragma once

#include "end_to_end/scenario.h"

#include <string>
#include <vector>

namespace no_memory {

// Lets the scenario's next start go without memory as the variable says, which is one of those at
// the head of no_memory.c.
void prepare(const end_to_end::Scenario& scenario, const std::string& variable);

// Which requests were refused, and how many there have been.
[[nodiscard]] std::string log();

// Requests to refuse, "AT=7" that one alone, "EVERY=3" each third: a few, or, where the environment
// names a range such as ZEPH_NO_MEMORY_AT=1-300, each of that.
[[nodiscard]] std::vector<std::string> requests(const std::vector<std::string>& few);

// "AT7"
[[nodiscard]] std::string name_of(const std::string& request);

} // namespace no_memory
