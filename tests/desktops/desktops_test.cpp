// The installation under the window managers that people have, from the splash to the file.

#include "desktops/visit.h"

#include "end_to_end/scenario.h"

#include <gtest/gtest.h>

namespace desktops {
namespace {

using end_to_end::Scenario;
using support::WindowManagerKind;

class Desktop : public testing::TestWithParam<WindowManagerKind> {};

INSTANTIATE_TEST_SUITE_P(OfPeople, Desktop,
                         testing::Values(WindowManagerKind::xfwm4, WindowManagerKind::icewm,
                                         WindowManagerKind::fluxbox, WindowManagerKind::i3),
                         [](const auto& kind) { return window_manager_name(kind.param); });

TEST_P(Desktop, IsAPlaceToInstallOn) {
    Scenario scenario({.manager = GetParam()});
    VisitOptions options;
    // i3 minimises nothing, and what has the keyboard is above whatever it owns.
    options.can_minimise = options.keeps_owned_above = GetParam() != WindowManagerKind::i3;
    scenario.start();
    for (const Finding& finding : visit(scenario, scenario.account(), options)) {
        EXPECT_EQ(finding.trouble, "") << finding.thing;
    }
}

TEST_P(Desktop, ClosesTheInstallerByItsFrame) {
    Scenario scenario({.manager = GetParam()});
    scenario.start();
    EXPECT_EQ(visit_and_close(scenario).trouble, "");
}

} // namespace
} // namespace desktops
