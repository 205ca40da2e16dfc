// The window managers' configurations and commands.

#include "support/window_manager_setup.h"

#include <filesystem>
#include <fstream>

namespace support {

namespace {

// Without random placement twm would wait for a person to place each window by hand.
constexpr const char* twm_configuration = "RandomPlacement\n"
                                          "UsePPosition \"on\"\n"
                                          "NoGrabServer\n"
                                          "BorderWidth 2\n";

constexpr const char* openbox_configuration =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy><center>yes</center></placement>
  <theme><name>Clearlooks</name><titleLayout>NLC</titleLayout></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Middle" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Right" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
    <context name="Titlebar">
      <mousebind button="Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="Close">
      <mousebind button="Left" action="Click"><action name="Close"/></mousebind>
    </context>
  </mouse>
</openbox_config>
)";

// Newer ones keep windows on the screen.
constexpr const char* icewm_configuration = "ShowTaskBar=0\n"
                                            "LimitPosition=0\n"
                                            "EdgeResistance=0\n";
// With a style that it comes with, fluxbox looks for a program that paints the background, and
// complains in a window. A configuration without a version it takes for an old one, and replaces.
constexpr const char* fluxbox_configuration = "session.configVersion: 13\nsession.styleFile: ";
constexpr const char* fluxbox_style = "background: solid\nbackground.color: black\n";
constexpr const char* i3_configuration = "# i3 config file (v4)\n"
                                         "font fixed\n"
                                         "floating_modifier Mod4\n";

} // namespace

const char* window_manager_name(WindowManagerKind kind) {
    switch (kind) {
    case WindowManagerKind::none:
        return "none";
    case WindowManagerKind::twm:
        return "twm";
    case WindowManagerKind::openbox:
        return "openbox";
    case WindowManagerKind::xfwm4:
        return "xfwm4";
    case WindowManagerKind::icewm:
        return "icewm";
    case WindowManagerKind::fluxbox:
        return "fluxbox";
    case WindowManagerKind::i3:
        return "i3";
    }
    return "";
}

WindowManagerSetup set_up_window_manager(WindowManagerKind kind, const std::string& folder) {
    const std::string file = folder + "/configuration";
    const auto with = [&](const char* text, const std::vector<std::string>& command) {
        std::ofstream(file) << text;
        return WindowManagerSetup{command};
    };
    switch (kind) {
    case WindowManagerKind::none:
        return {};
    case WindowManagerKind::twm:
        return with(twm_configuration, {"twm", "-f", file});
    case WindowManagerKind::openbox:
        return with(openbox_configuration, {"openbox", "--sm-disable", "--config-file", file});
    case WindowManagerKind::xfwm4:
        return {{"xfwm4", "--compositor=off", "--sm-client-disable"}, true};
    case WindowManagerKind::icewm:
        return with(icewm_configuration, {"icewm", "--config=" + file});
    case WindowManagerKind::fluxbox:
        std::filesystem::create_directories(folder + "/.fluxbox");
        std::ofstream(folder + "/.fluxbox/init") << fluxbox_configuration << folder << "/style\n";
        std::ofstream(folder + "/style") << fluxbox_style;
        return {{"fluxbox"}};
    case WindowManagerKind::i3:
        return with(i3_configuration, {"i3", "-a", "-c", file});
    }
    return {};
}

} // namespace support
