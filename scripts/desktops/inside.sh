#!/usr/bin/env bash
# Inside a root: starts one desktop and visits it, or tries one way of giving the password there.
# Called by scripts/desktops.sh.
#
#   inside.sh DESKTOP            prints one line: "well", or what was amiss
#   inside.sh input WAY DETAIL   prints one line: "accepted", or "not accepted"
set -u
export LC_ALL=C.UTF-8
account=musician
password=Marlow-7
results=/srv/results
mkdir -p "$results" /usr/lib/lv2 /tmp/.X11-unix /var/lib/dbus
chmod 1777 /tmp/.X11-unix
useradd --create-home --shell /bin/bash "$account" 2> /dev/null
echo "$account ALL=(ALL:ALL) ALL" > /etc/sudoers.d/musician
echo "$account:$password" | chpasswd
[ -s /etc/machine-id ] || dbus-uuidgen > /etc/machine-id
mkdir -p "/run/user/$(id -u "$account")" /run/dbus
chown "$account:" "/run/user/$(id -u "$account")"
chmod 700 "/run/user/$(id -u "$account")"
runtime=/run/user/$(id -u "$account")

# as_person COMMAND...: runs it as the account, in its session.
as_person() {
    runuser -u "$account" -- env -i HOME="/home/$account" \
        USER="$account" LOGNAME="$account" SHELL=/bin/bash PATH=/usr/local/bin:/usr/bin:/bin:/usr/games \
        XDG_RUNTIME_DIR="$runtime" LC_ALL="$LC_ALL" LIBGL_ALWAYS_SOFTWARE=1 ${DISPLAY:+DISPLAY=$DISPLAY} \
        ${XMODIFIERS:+XMODIFIERS=$XMODIFIERS} "${session[@]}" "$@" >> "$results/desktop.log" 2>&1
}
session=()
mkdir -p /run/dbus && dbus-daemon --system --fork # a shell asks there for power and network

# until_true SECONDS COMMAND...: polls; fails after that time.
until_true() {
    local end=$((SECONDS + $1))
    shift
    until "$@" > /dev/null 2>&1; do
        [ "$SECONDS" -lt "$end" ] || return 1
        sleep 0.2
    done
}

display_answers() { xdpyinfo; }
manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

screen() {
    export DISPLAY=:9
    Xvfb :9 -screen 0 1400x1000x24 -noreset -nolisten tcp -ac > "$results/server.log" 2>&1 &
    until_true 20 display_answers
}

# Windows of a desktop of X: COMMAND manages them.
x_desktop() {
    screen
    as_person dbus-run-session -- "$@" &
    until_true 60 manager_runs || return 1
    sleep 5 # it announces itself before it manages windows, and a shell puts up its panels
}

# A compositor of Wayland, which brings an X server for programs of X along.
wayland_desktop() {
    unset DISPLAY
    as_person dbus-run-session -- "$@" &
    until_true 60 compgen -G '/tmp/.X11-unix/X*' || return 1
    DISPLAY=:$(basename "$(compgen -G '/tmp/.X11-unix/X*' | head -n 1)" | cut -c 2-)
    export DISPLAY
    local cookie
    until_true 10 pgrep -x Xwayland
    cookie=$(tr '\0' '\n' < "/proc/$(pgrep -n Xwayland || echo self)/cmdline" 2> /dev/null | grep -A 1 -x -- -auth | tail -n 1)
    as_person xhost + # the visitor is root
    [ -z "$cookie" ] || { cp "$cookie" /srv/cookie && chmod 644 /srv/cookie && export XAUTHORITY=/srv/cookie; }
    until_true 30 display_answers
}

# Other X servers, with a small window manager.
x_server() {
    "$@" > "$results/server.log" 2>&1 &
    export DISPLAY=:8
    until_true 30 display_answers || return 1
    as_person openbox --sm-disable &
    until_true 20 manager_runs && sleep 5 # it announces itself before it manages windows
}

# A program of its own in the session: GNOME begins with an overview of all windows, in which none has
# the keyboard, and a person leaves it first.
gnome() {
    cat > /usr/local/bin/gnome << 'END'
#!/bin/bash
gnome-shell "$@" &
for attempt in {1..60}; do
    sleep 1
    dbus-send --session --print-reply --dest=org.gnome.Shell /org/gnome/Shell \
        org.freedesktop.DBus.Properties.Set string:org.gnome.Shell string:OverviewActive \
        variant:boolean:false && break
done
wait
END
    chmod +x /usr/local/bin/gnome
}

dummy_screen() {
    cat > /srv/xorg.conf << 'END'
Section "Device"
    Identifier "dummy"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
    Modeline "1400x1000" 108 1400 1440 1552 1800 1000 1001 1004 1030
EndSection
Section "Screen"
    Identifier "screen"
    Device "dummy"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "1400x1000"
    EndSubSection
EndSection
END
}

start_desktop() {
    case $1 in
    none) screen ;;
    xfwm4) x_desktop xfwm4 --compositor=off ;;
    mutter-x11) x_desktop mutter --x11 ;;
    gnome-x11) gnome && x_desktop gnome --x11 && sleep 5 ;;
    kwin_x11) x_desktop kwin_x11 ;;
    i3) mkdir -p /home/musician/.config/i3 && echo "font fixed" > /home/musician/.config/i3/config &&
        x_desktop i3 ;;
    icewm | fluxbox | openbox | marco | muffin | metacity | fvwm3) x_desktop "$1" ;;
    mutter-wayland) wayland_desktop mutter --wayland --headless --virtual-monitor 1400x1000 ;;
    gnome-wayland) gnome && wayland_desktop gnome --headless --virtual-monitor 1400x1000 && sleep 5 ;;
    kwin_wayland)
        # It carries a right that no container gives; a copy does not.
        cp /usr/bin/kwin_wayland /usr/local/bin/kwin_wayland
        wayland_desktop kwin_wayland --virtual --width 1400 --height 1000 --xwayland
        ;;
    sway)
        session=(WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1)
        printf 'output HEADLESS-1 resolution 1400x1000\nxwayland force\n' > /srv/sway.conf
        wayland_desktop sway -c /srv/sway.conf
        ;;
    xvnc) x_server Xvnc :8 -geometry 1400x1000 -depth 24 -SecurityTypes None -ac ;;
    xephyr) screen && x_server Xephyr :8 -screen 1400x1000 -ac ;;
    xorg) dummy_screen && x_server Xorg :8 -config /srv/xorg.conf -noreset -ac -logfile /srv/results/xorg.log ;;
    *) return 1 ;;
    esac
}

visit() {
    case $1 in
    i3 | sway) export ZEPH_NO_MINIMISE=1 ZEPH_OWNER_ABOVE=1 ;;
    icewm | fluxbox) sleep 2 ;; # they come up in several steps
    none) export ZEPH_NO_MINIMISE=1 ;;
    esac
    if [ "$1" = sway ]; then
        export ZEPH_LOOK="env XDG_RUNTIME_DIR=$runtime WAYLAND_DISPLAY=wayland-1 grim"
    fi
    timeout 280 /srv/visit /srv/installer "$account" "$password" "$results"
}

# A session with that input method, on the keyboard that people with accents have.
input_method() {
    case $1 in
    ibus)
        export XMODIFIERS=@im=ibus
        as_person dbus-run-session -- ibus-daemon --xim --panel disable &
        ;;
    fcitx5)
        export XMODIFIERS=@im=fcitx
        as_person dbus-run-session -- fcitx5 --disable dbusfrontend &
        ;;
    *)
        export XMODIFIERS=@im=none
        return
        ;;
    esac
    until_true 20 xprop -root XIM_SERVERS
    sleep 2 # it is announced before it serves
}

# Types keysyms, each by its key.
keys() {
    local key
    for key in "$@"; do
        xdotool key --clearmodifiers --delay 40 "$key"
        sleep 0.1
    done
}

own_clipboard() {
    printf '%s\n' "$password" > /srv/clipboard.txt
    case $1 in
    xclip) as_person xclip -selection clipboard -quiet -i /srv/clipboard.txt & ;;
    xsel) as_person bash -c 'xsel -b -n -i < /srv/clipboard.txt' & ;;
    gtk) as_person dbus-run-session -- python3 /srv/gtk_owner.py /srv/clipboard.txt & ;;
    esac
    sleep 3
}

# input WAY: gives a password of uncommon characters to the installer in that way.
input() {
    local way=$1 output=$results/installer.txt
    localedef -i en_US -f UTF-8 en_US.UTF-8 # input methods serve no locale without a language
    export LC_ALL=en_US.UTF-8
    screen && { as_person openbox --sm-disable & } && until_true 20 manager_runs || return 1
    case $way in
    xclip | xsel | gtk) password='é ß € â x' ;;
    *) password=$(case $way in *dead-keys) echo 'éâx' ;; *) echo 'ß€âéx' ;; esac) ;;
    esac
    echo "$account:$password" | chpasswd
    input_method "${way%%-*}"
    case $way in # dead keys in the one layout, Compose on a key of the other; ibus has its own idea
    ibus-dead-keys) as_person ibus engine xkb:us:intl:eng ;;
    ibus-compose) as_person ibus engine xkb:us::eng ;;
    esac
    case $way in
    *dead-keys) setxkbmap us -variant intl ;;
    *) setxkbmap us -option compose:menu ;;
    esac
    cp /srv/installer /home/$account/installer
    chown "$account:" /home/$account/installer
    runuser -u "$account" -- env -i HOME="/home/$account" USER="$account" LOGNAME="$account" \
        PATH=/usr/bin:/bin LC_ALL="$LC_ALL" DISPLAY="$DISPLAY" XMODIFIERS="$XMODIFIERS" ORXDPI=96 \
        "/home/$account/installer" > "$output" 2>&1 &
    until_true 60 test -e /tmp/zeph-installer-lock || return 1 # the splash goes by itself
    sleep 2
    case $way in
    *dead-keys) keys dead_acute e dead_circumflex a x ;;
    *compose) keys Multi_key s s Multi_key equal c Multi_key asciicircum a Multi_key apostrophe e x ;;
    *)
        own_clipboard "$way"
        xdotool key ctrl+v
        sleep 1
        ;;
    esac
    xdotool key Return
    until_true 20 grep -q 'Password OK' "$output"
}

if [ "$1" = input ]; then
    input "$2" && echo accepted || echo "not accepted"
    exit
fi
if ! start_desktop "$1"; then
    echo "does not start"
    exit 2
fi
visit "$1"
