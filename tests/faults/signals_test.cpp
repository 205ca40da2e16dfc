// Signals in every wait, once and again, while sudo or su works, stopped and continued, and started
// with signals ignored or blocked.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>
#include <tuple>

namespace faults {
namespace {

using namespace end_to_end;

constexpr const char* at_work = "/tmp/tool-at-work";

// A tool that takes its time before it does what it is asked for, when its arguments match.
void make_slow(const std::string& tool, const std::string& pattern) {
    support::install_program("/usr/bin/" + tool + ".real", "/usr/bin/" + tool, 04755);
    support::install_script("/usr/bin/" + tool,
                            "#!/bin/bash\ncase \"$*\" in " + pattern + ") touch " + at_work +
                                "; sleep 3;; esac\nexec /usr/bin/" + tool + ".real \"$@\"\n");
}

void wait_for_tool(Scenario& scenario) {
    scenario.wait_for("the tool at work", [] { return std::filesystem::exists(at_work); });
}

std::string caught(int signal) {
    return info(signal == SIGINT    ? "Caught SIGINT"
                : signal == SIGTERM ? "Caught SIGTERM"
                                    : "Caught SIGHUP");
}

const char* signal_name(int signal) {
    return signal == SIGINT ? "Sigint" : signal == SIGTERM ? "Sigterm" : "Sighup";
}

void expect_nothing_left(Scenario& scenario) {
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

class SignalTwice : public testing::TestWithParam<std::tuple<int, Stage>> {};

INSTANTIATE_TEST_SUITE_P(At, SignalTwice,
                         testing::Combine(testing::Values(SIGINT, SIGTERM),
                                          testing::Values(Stage::password, Stage::unpacking,
                                                          Stage::copying, Stage::complete)),
                         [](const auto& parameters) {
                             return std::string(signal_name(std::get<0>(parameters.param))) +
                                    stage_name(std::get<1>(parameters.param));
                         });

TEST_P(SignalTwice, EndsTheRunAsOneDoes) {
    const auto [signal, stage] = GetParam();
    Scenario scenario;
    reach(scenario, stage);
    scenario.installer().send_signal(signal);
    scenario.wait_for("the first answer", [&, number = signal] {
        return scenario.console().find(caught(number)) != std::string::npos;
    });
    scenario.installer().send_signal(signal);
    // In the moment between the farewell and the end the signal is nobody's any more and may be
    // what ends the process; nothing is left to be done then.
    support::ChildEnd end = scenario.finish();
    if (end.signal == signal) {
        end.signal.reset();
        end.exit_status = 0;
    }
    EXPECT_TRUE(ended_clean(end));
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
    EXPECT_TRUE(scenario.console().ends_with(info("Exiting") + "\n"));
}

class HangUp : public testing::TestWithParam<Stage> {};

INSTANTIATE_TEST_SUITE_P(At, HangUp,
                         testing::Values(Stage::password, Stage::unpacking, Stage::copying,
                                         Stage::complete),
                         [](const auto& stage) { return stage_name(stage.param); });

TEST_P(HangUp, EndsTheRunAndLeavesNothing) {
    Scenario scenario;
    reach(scenario, GetParam());
    scenario.installer().send_signal(SIGHUP);
    expect_nothing_left(scenario);
    EXPECT_NE(scenario.console().find(caught(SIGHUP)), std::string::npos);
}

struct Work {
    const char* name;
    Rights rights;
    const char* tool;
    const char* pattern;
    bool extraction;
};

constexpr Work works[] = {
    {"SudoCheck", Rights::sudo, "sudo", "*echo*", false},
    {"SudoExtraction", Rights::sudo, "sudo", "*tar*", true},
    {"SuCheck", Rights::only_su, "su", "*echo*", false},
    {"SuExtraction", Rights::only_su, "su", "*tar*", true},
};

class AtWork : public testing::TestWithParam<std::tuple<Work, int>> {
protected:
    void reach_work() {
        const Work work = std::get<0>(GetParam());
        scenario_ = std::make_unique<Scenario>(ScenarioOptions{.rights = work.rights});
        make_slow(work.tool, work.pattern);
        scenario_->reach_password_screen();
        // The probe of the method has already called the tool.
        std::filesystem::remove(at_work);
        scenario_->give_password(password());
        if (work.extraction) {
            scenario_->reach_folder_browser();
            scenario_->accept_folder();
        }
        wait_for_tool(*scenario_);
    }

    static const char* password() {
        return std::get<0>(GetParam()).rights == Rights::sudo ? user_password : root_password;
    }

    std::unique_ptr<Scenario> scenario_;
};

INSTANTIATE_TEST_SUITE_P(Tool, AtWork,
                         testing::Combine(testing::ValuesIn(works),
                                          testing::Values(SIGINT, SIGTERM)),
                         [](const auto& parameters) {
                             return std::string(std::get<0>(parameters.param).name) +
                                    signal_name(std::get<1>(parameters.param));
                         });

TEST_P(AtWork, ASignalEndsTheRunWithoutASurvivor) {
    reach_work();
    scenario_->installer().send_signal(std::get<1>(GetParam()));
    scenario_->installer().send_signal(std::get<1>(GetParam()));
    expect_nothing_left(*scenario_);
    EXPECT_NE(scenario_->console().find(caught(std::get<1>(GetParam()))), std::string::npos);
    // A started extraction is let finish: no half-written file stays behind.
    if (std::get<0>(GetParam()).extraction) {
        EXPECT_EQ(plugin_in(scenario_->account().home), plugin_of_archive());
    } else {
        EXPECT_EQ(scenario_->console().find("Password OK"), std::string::npos);
    }
}

void stop_for_a_while(Scenario& scenario) {
    const pid_t process = scenario.installer().process_id();
    scenario.installer().send_signal(SIGSTOP);
    scenario.wait_for("the stop", [&] { return state_of(process) == 'T'; });
    EXPECT_TRUE(support::holds_for([&] { return state_of(process) == 'T'; },
                                   std::chrono::milliseconds{1500}));
    scenario.installer().send_signal(SIGCONT);
}

TEST(StoppedAndContinued, InEveryWaitTheInstallationGoesOn) {
    Scenario scenario;
    scenario.reach_splash();
    stop_for_a_while(scenario);
    scenario.reach_main_window_from_splash();
    scenario.reach_password_screen_from_main_window();
    stop_for_a_while(scenario);
    scenario.give_password(user_password);
    stop_for_a_while(scenario);
    scenario.reach_unpacking();
    stop_for_a_while(scenario);
    scenario.reach_folder_browser();
    stop_for_a_while(scenario);
    scenario.accept_folder();
    scenario.reach_copying();
    stop_for_a_while(scenario);
    scenario.wait_for("the end of copying", [&] {
        return scenario.console().find("Removing Temporary Files\n") != std::string::npos;
    });
    stop_for_a_while(scenario);
    scenario.reach_last_screen();
    stop_for_a_while(scenario);
    scenario.press_ok();
    expect_nothing_left(scenario);
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

TEST(StoppedAndContinued, WhileSuWorksTheInstallationGoesOn) {
    Scenario scenario({.rights = Rights::only_su});
    make_slow("su", "*echo*");
    scenario.reach_password_screen();
    scenario.give_password(root_password);
    wait_for_tool(scenario);
    stop_for_a_while(scenario);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
    scenario.press_ok();
    expect_nothing_left(scenario);
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

struct Inheritance {
    const char* name;
    const char* wrap;
};

constexpr Inheritance inheritances[] = {
    {"Ignored", "env --ignore-signal=INT,TERM,HUP,CHLD,PIPE,USR1"},
    {"Blocked", "env --block-signal=INT,TERM,HUP,CHLD,PIPE,ALRM"},
};

class InheritedSignals : public testing::TestWithParam<Inheritance> {};

INSTANTIATE_TEST_SUITE_P(Are, InheritedSignals, testing::ValuesIn(inheritances),
                         [](const auto& inheritance) { return inheritance.param.name; });

TEST_P(InheritedSignals, DoNotKeepAnInstallationFromItsEnd) {
    Scenario scenario;
    start_through_shell(scenario, "", GetParam().wrap);
    scenario.reach_password_screen();
    scenario.give_password("not it");
    scenario.reach_wrong_password_screen();
    install_from_password_screen(scenario, user_password);
    EXPECT_EQ(children_of(scenario.installer().process_id()), std::vector<pid_t>{});
    scenario.press_ok();
    expect_nothing_left(scenario);
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
}

TEST_P(InheritedSignals, DoNotKeepAnInterruptFromEndingTheRun) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Scenario scenario;
        start_through_shell(scenario, "", GetParam().wrap);
        scenario.reach_password_screen();
        scenario.installer().send_signal(signal);
        expect_nothing_left(scenario);
        EXPECT_NE(scenario.console().find(caught(signal)), std::string::npos);
    }
}

} // namespace
} // namespace faults
