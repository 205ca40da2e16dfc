// Looking at what is there, and acting on it.

#include "attacks/undaunted_person.h"

#include "faults/memory_scan.h"

#include <algorithm>
#include <csignal>
#include <stdexcept>

using Clock = std::chrono::steady_clock;
using support::XWindow;

namespace {

constexpr std::chrono::seconds patience{120};
constexpr std::chrono::seconds after_signal{10};
// Longer than a refusal takes.
constexpr std::chrono::seconds before_typing_again{9};

} // namespace

void UndauntedPerson::play() {
    scenario_.start();
    const auto begin = Clock::now();
    while (scenario_.installer().running()) {
        const auto time = Clock::now() - begin;
        if (time > patience && !interrupted_) {
            scenario_.installer().send_signal(SIGTERM);
            interrupted_ = true;
        }
        if (time > patience + after_signal) {
            throw std::runtime_error("the installer does not end\n" + scenario_.report());
        }
        if (!interrupted_) {
            act();
        }
        (void)support::holds_for([&] { return scenario_.installer().running(); },
                                 std::chrono::milliseconds{50});
    }
}

void UndauntedPerson::act() {
    const support::DisplayView& view = scenario_.view();
    if (const auto splash = view.find_class("zeph-inst-splash")) {
        scenario_.click(*splash, 300, 200);
    } else if (const auto dialog = browser()) {
        scenario_.click(*dialog, 16 + 32, 368 + 8);
    } else if (const auto window = view.find_class("zeph-installer")) {
        act_in_main_window(*window);
    }
}

void UndauntedPerson::act_in_main_window(XWindow window) {
    const support::Picture picture = scenario_.picture_of(window);
    if (scenario_.button_shown(picture)) {
        copies_ = faults::copies_in_memory(scenario_.installer().process_id(), password_);
        scenario_.click(window, 268 + 32, 356 + 10);
    } else if (scenario_.field_shown(picture) &&
               (!typed_ || Clock::now() - *typed_ > before_typing_again)) {
        scenario_.click(window, 40, 345);
        scenario_.person().type(password_);
        scenario_.person().press_return();
        typed_ = Clock::now();
    }
}

// By its kind: its title may be missing.
std::optional<XWindow> UndauntedPerson::browser() const {
    const support::DisplayView& view = scenario_.view();
    for (const XWindow frame : view.children(view.root())) {
        std::vector<XWindow> windows = view.children(frame);
        windows.push_back(frame);
        for (const XWindow window : windows) {
            const auto kinds = view.atoms_property(window, "_NET_WM_WINDOW_TYPE");
            if (std::find(kinds.begin(), kinds.end(), "_NET_WM_WINDOW_TYPE_UTILITY") !=
                    kinds.end() &&
                view.viewable(window)) {
                return window;
            }
        }
    }
    return std::nullopt;
}
