// A console that nobody reads: a pipe, and once it is full, whoever writes there waits.

#pragma once

#include "end_to_end/scenario.h"

#include <string>

class UnreadConsole {
public:
    // Lets the scenario's next start write there, by `exec WRAP PROGRAM`.
    explicit UnreadConsole(const end_to_end::Scenario& scenario, const std::string& wrap = {});
    ~UnreadConsole();
    UnreadConsole(const UnreadConsole&) = delete;
    UnreadConsole& operator=(const UnreadConsole&) = delete;

    void fill() const;

private:
    int pipe_ = -1;
};
