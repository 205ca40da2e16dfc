// Many calls of the runner at once, each with what it has to come to, and a table of how it went.

#pragma once

#include "privilege/runner_call.h"

#include <string>
#include <vector>

namespace support {

struct MatrixRow {
    std::string tool;     // what is driven, for the table
    std::string password; // what is typed, for the table
    std::string locale;   // of the runner, for the table
    Account account;
    RunnerCall call;
    int expected;
    int longest_ms; // that it may take where nothing else is to be done
};

// Runs all rows, a few at a time, prints the table, and fails the test for each row with another
// result, too long a time, a zombie, an open descriptor that is not a terminal of su's, or a copy
// of the password in memory.
void run_matrix(const std::string& title, const std::vector<MatrixRow>& rows);

} // namespace support
