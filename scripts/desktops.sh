#!/usr/bin/env bash
# Visits desktops with this machine's executable: the whole installation on each, and passwords with
# uncommon characters by each way of giving them. scripts/desktops/README.md says what is looked at.
#
#   scripts/desktops.sh [NAME...]      all of them, without; "inputs" names the ways of giving passwords
#
# Prints a line for each as soon as it is over; it, pictures and logs stay in build/desktops. Ends with
# status 1 when something is amiss. Needs root and the Debian archive: the desktops are installed
# inside a root of their own (two gigabytes, kept for a week), nothing on this machine. INSTALLER in the
# environment is another executable to take along, RESULTS another folder.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh
. scripts/root_file_system.sh

desktops=(none xfwm4 icewm fluxbox i3 openbox marco metacity muffin mutter-x11 gnome-x11 kwin_x11
    mutter-wayland gnome-wayland kwin_wayland sway fvwm3 xvnc xephyr xorg)
packages=(xfwm4 icewm fluxbox i3-wm openbox marco mate-settings-daemon-common metacity muffin
    cinnamon-settings-daemon mutter gnome-shell kwin-x11 kwin-wayland sway fvwm3
    xwayland xvfb tigervnc-standalone-server xserver-xephyr xserver-xorg-core xserver-xorg-video-dummy
    ibus fcitx5 xclip xsel python3-gi gir1.2-gtk-3.0
    dbus dbus-x11 x11-utils x11-xserver-utils x11-xkb-utils xdotool grim procps sudo passwd locales
    libxtst6 libxcb1 libpng16-16 libgl1-mesa-dri fonts-dejavu-core xfonts-base adwaita-icon-theme)
results=${RESULTS:-$PWD/build/desktops}
installer=${INSTALLER:-$PWD/build/release/zeph-installer}
visitor=$PWD/build/release/tests/desktops/zeph-desktop-visit
[ -x "$visitor" ] || visitor=$(find build/release -name zeph-desktop-visit -type f | head -n 1)
[ -x "$visitor" ] && [ -x "$installer" ] || no_root "Build first: zeph-installer and zeph-desktop-visit."

make_root bookworm "" "${packages[@]}"
amiss=0

# on_a_copy FOLDER PROGRAM ARGUMENT...: runs inside.sh on a fresh copy of the root.
on_a_copy() {
    local folder=$1 program=$2
    shift 2
    mkdir -p "$folder"
    enter_root "$root_folder" --alone --copy "$visitor" /srv/visit --copy "$program" /srv/installer \
        --copy resources/payload/payload.tar.gz "$PWD/resources/payload/payload.tar.gz" \
        --copy scripts/desktops/inside.sh /srv/inside.sh --copy scripts/desktops/gtk_owner.py /srv/gtk_owner.py \
        --fetch /srv/results "$folder" -- bash /srv/inside.sh "$@" 2> /dev/null | tail -n 1
}

# What a visit comes to where a desktop has ways of its own, which the README tells.
wanted_of() {
    case $1 in
    sway | muffin | mutter-wayland | gnome-wayland) echo 'moved half off: *' ;;
    fvwm3) echo 'splash in the middle: *' ;;
    *) echo well ;;
    esac
}

# say NAME LINE PATTERN: tells the line, and counts one that is not as wanted.
say() {
    local name=$1 line=$2 wanted=$3
    printf '%-34s %s\n' "$name" "${line:-nothing}" | tee -a "$results/lines.txt"
    # shellcheck disable=SC2053 # a pattern
    [[ $line == $wanted ]] || amiss=1
}

# Passwords go to a product that takes its input in today's ways.
inputs() {
    local modern name way
    ./make-installer products/lantern-set > "$results/modern.log" 2>&1 ||
        no_root "products/lantern-set cannot be made (the log is $results/modern.log)."
    modern=dist/lantern-set-1.0-installer
    for way in dead-keys compose ibus-dead-keys ibus-compose fcitx5-dead-keys fcitx5-compose \
        xclip xsel gtk; do
        name=input-$way
        say "$name" "$(on_a_copy "$results/$name" "$modern" input "$way")" accepted
    done
}

mkdir -p "$results"
: > "$results/lines.txt"
[ $# -gt 0 ] || set -- "${desktops[@]}" inputs
for name in "$@"; do
    if [ "$name" = inputs ]; then
        inputs
    else
        say "$name" "$(on_a_copy "$results/$name" "$installer" "$name")" "$(wanted_of "$name")"
    fi
done
exit "$amiss"
