// The fixture of all tests that need accounts and sudo rules: each has a private world to itself.

#pragma once

#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <optional>

class WorldTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = support::world_obstacle()) {
            GTEST_SKIP() << "This test " << *obstacle << ".";
        }
        world_.emplace();
    }

    void leave_world() { world_.reset(); }

private:
    std::optional<support::PrivateWorld> world_;
};
