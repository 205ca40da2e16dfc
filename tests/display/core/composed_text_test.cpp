// Text that is composed of several keys and has no key of its own.

#include "display/core/engine_desk.h"

#include "gui/ORX/core/engine.h"
#include "support/person.h"

#include <X11/keysym.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <fstream>

namespace {

const std::string long_text = "a text that has no room beside the others";

// Xlib's own composing, with rules of the test's.
struct ComposedText : testing::Test {
    std::string rules = testing::TempDir() + "compose-" + std::to_string(getpid());
    CallLog log;
    std::unique_ptr<EngineDesk> desk;
    std::unique_ptr<support::Person> person;
    WindowId id = no_window;

    ComposedText() {
        std::ofstream(rules) << "<a> <b> : \"\xC3\xA2\"\n"
                             << "<a> <c> : \"" << long_text << "\"\n"
                             << "<a> <d> : \"\xC3\xA9\" eacute\n";
        setenv("XCOMPOSEFILE", rules.c_str(), 1);
        setenv("XMODIFIERS", "@im=none", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        desk = std::make_unique<EngineDesk>();
        id = desk->show_window(&log);
        person = std::make_unique<support::Person>(desk->server.display_name());
        person->click_at(60, 70);
    }
    ~ComposedText() override {
        person.reset();
        desk.reset();
        unsetenv("LC_ALL");
        unsetenv("XMODIFIERS");
        unsetenv("XCOMPOSEFILE");
        std::remove(rules.c_str());
        std::setlocale(LC_ALL, "C");
    }

    [[nodiscard]] std::string key(const std::string& text, unsigned long keysym) const {
        return "key [" + text + "] " + std::to_string(keysym) + " 0 " + std::to_string(id);
    }
};

TEST_F(ComposedText, ReachesTheWindowWhenItIsSwitchedOn) {
    engine_set_composed_text(desk->engine, true);
    person->type("ab");
    EXPECT_TRUE(log.wait_for(key("\xC3\xA2", 0)));
    person->type("ad");
    EXPECT_TRUE(log.wait_for(key("\xC3\xA9", XK_eacute)));
}

TEST_F(ComposedText, OfAnyLengthReachesTheWindowWhenItIsSwitchedOn) {
    engine_set_composed_text(desk->engine, true);
    person->type("ac");
    EXPECT_TRUE(support::wait_until([&] { return log.count("key [" + long_text + "]") == 1; }))
        << log.text();
}

TEST_F(ComposedText, WithoutAKeysymReachesNobodyOtherwise) {
    person->type("abac");
    person->type("x");
    EXPECT_TRUE(log.wait_for(key("x", XK_x)));
    EXPECT_EQ(log.count("key ["), 1) << log.text();
}

} // namespace
