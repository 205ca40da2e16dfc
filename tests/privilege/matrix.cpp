// Running and judging the rows of a matrix.

#include "privilege/matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace support {

namespace {

constexpr std::size_t rows_at_once = 8;

std::string expected_descriptors(const MatrixRow& row) {
    return row.call.entry.starts_with("su_") && row.expected == 1 ? "/dev/ptmx" : "none";
}

void judge(const MatrixRow& row, const RunnerOutcome& outcome) {
    SCOPED_TRACE(row.tool + ", " + row.password + ", " + row.locale + "\n" + outcome.text);
    ASSERT_TRUE(outcome.ended) << "it hangs";
    EXPECT_EQ(outcome.result, row.expected);
    EXPECT_LE(outcome.time_ms, 3 * row.longest_ms); // a busy machine takes its time
    EXPECT_EQ(outcome.children, "none");
    if (row.call.password != "password") { // which is also a word of the program's own
        EXPECT_EQ(outcome.copies, 0);
    }
    if (row.expected == 1) {
        EXPECT_EQ(outcome.descriptors, expected_descriptors(row));
    } else if (outcome.descriptors != "/dev/ptmx") { // su that ended by itself leaves one open
        EXPECT_EQ(outcome.descriptors, "none");
    }
}

} // namespace

void run_matrix(const std::string& title, const std::vector<MatrixRow>& rows) {
    std::vector<RunnerOutcome> outcomes;
    for (std::size_t first = 0; first < rows.size(); first += rows_at_once) {
        std::vector<RunningCall> running;
        const std::size_t end = std::min(rows.size(), first + rows_at_once);
        for (std::size_t i = first; i < end; ++i) {
            running.emplace_back(rows[i].account, rows[i].call);
        }
        for (RunningCall& call : running) {
            outcomes.push_back(call.outcome(std::chrono::seconds(120)));
        }
    }
    std::printf("%s\n%-44s %-22s %-6s %-9s %8s\n", title.c_str(), "tool", "password", "locale",
                "outcome", "time");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::printf("%-44s %-22s %-6s %-9s %5d ms\n", rows[i].tool.c_str(),
                    rows[i].password.c_str(), rows[i].locale.c_str(),
                    outcomes[i].result == 1   ? "accepted"
                    : outcomes[i].result == 0 ? "refused"
                                              : "hangs",
                    outcomes[i].time_ms);
    }
    std::fflush(stdout);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        judge(rows[i], outcomes[i]);
    }
}

} // namespace support
