#!/usr/bin/env bash
# Of scripts/distributions.sh, inside the root of a distribution, as its root: makes a musician's
# account, configures the machine, and runs /srv/installer as the musician.
#
#   session.sh CONFIGURATION [TOOLS]     TOOLS is sudo-rs to have sudo-rs and su-rs in place of sudo and su
#
# It prints what the player on the other machine waits for, and in the end lines that begin with
# "session: " about what the installer has left.
set -u
configuration=$1
tools=${2:-}
user_password=Marlow-7
root_password=Wheel:42

say() { echo "session: $*"; }

rules() { cat > /etc/sudoers.d/session && chmod 440 /etc/sudoers.d/session; }

# before_passwords LINE: a line of PAM's before the common ones for passwords.
before_passwords() { sed -i "0,/^auth/s|^auth|$1\n&|" /etc/pam.d/common-auth; }

# A link to the other tool, wherever the distribution keeps it.
in_place_of() {
    local tool=$1 other
    other=$(command -v "$tool-rs" || ls "/usr/lib/cargo/bin/$tool" 2> /dev/null) || {
        say "there is no $tool-rs"
        exit 1
    }
    # Not every package of it has given su the right to become root.
    install --mode 4755 "$(readlink -f "$other")" "/usr/bin/$tool"
}

# Every desktop has these folders.
mkdir -p /usr/share/icons /usr/share/applications /usr/lib/lv2
useradd --create-home --shell /bin/bash --groups audio,video,sudo musician
mkdir /home/musician/vst
chown musician: /home/musician/vst
echo "musician:$user_password" | chpasswd
passwd --quiet --lock root
[ "$tools" != sudo-rs ] || { in_place_of sudo && in_place_of su; }

stranger() {
    gpasswd --delete musician sudo > /dev/null
    echo "root:$root_password" | chpasswd
}

case $configuration in
default | noexec-verified) ;;
ubuntu)
    groupadd admin
    usermod -aG admin musician
    rules <<< "Defaults use_pty
%admin ALL=(ALL) ALL"
    ;;
stranger) stranger ;;
no-sudo)
    stranger
    rm -f /usr/bin/sudo
    ;;
pwfeedback | targetpw | rootpw | insults | passwd_tries=1 | log_output | !use_pty)
    rules <<< "Defaults $configuration"
    echo "root:$root_password" | chpasswd
    ;;
lecture=always) rules <<< "Defaults lecture=always" ;;
passprompt)
    # shellcheck disable=SC2016
    rules <<< 'Defaults passprompt="Enter %u'"'"'s secret word to act as %U: ", passprompt_override'
    ;;
noexec) rules <<< "Defaults noexec" ;;
nopasswd) rules <<< "musician ALL=(ALL:ALL) NOPASSWD: ALL" ;;
faildelay) before_passwords "auth optional pam_faildelay.so delay=8000000" ;;
faillock)
    before_passwords "auth required pam_faillock.so preauth deny=3"
    sed -i '/^auth.*pam_unix.so/s|success=1|success=2|
        s|^auth.*pam_deny.so|auth [default=die] pam_faillock.so authfail deny=3\n&|' /etc/pam.d/common-auth
    echo "account required pam_faillock.so" >> /etc/pam.d/common-account
    ;;
wheel)
    gpasswd --delete musician sudo > /dev/null
    groupadd wheel
    usermod -aG wheel musician
    rules <<< "%wheel ALL=(ALL:ALL) ALL"
    ;;
fingerprint)
    printf '#!/bin/sh\necho "Place your finger on the fingerprint reader"\nsleep 5\nexit 1\n' > /usr/local/sbin/reader
    chmod 755 /usr/local/sbin/reader
    before_passwords "auth [success=done default=ignore] pam_exec.so quiet stdout /usr/local/sbin/reader"
    ;;
code | password-and-code)
    printf '%s\n" WINDOW_SIZE 5\n" TOTP_AUTH\n' JBSWY3DPEHPK3PXP > /home/musician/.google_authenticator
    chown musician: /home/musician/.google_authenticator
    chmod 400 /home/musician/.google_authenticator
    if [ "$configuration" = code ]; then
        echo "auth required pam_google_authenticator.so" > /etc/pam.d/sudo
        printf '@include common-account\n@include common-session-noninteractive\n' >> /etc/pam.d/sudo
    else
        sed -i "s|^@include common-auth|&\nauth required pam_google_authenticator.so|" /etc/pam.d/sudo
    fi
    ;;
*)
    say "no such configuration: $configuration"
    exit 1
    ;;
esac
[ "$configuration" != noexec-verified ] || rules <<< "Defaults noexec"
visudo -cq || exit 1

install -o musician -g musician -m 755 /srv/installer /home/musician/installer
mkdir -p /tmp/.X11-unix
mount --bind /srv/x11 /tmp/.X11-unix || exit 1
{
    until [ -e /tmp/zeph-installer-lock ] || [ -e /tmp/over ]; do sleep 0.02; done
    [ -e /tmp/over ] || say locked
} &
say starting
cd /home/musician || exit 1
setpriv --reuid musician --regid musician --init-groups env -i HOME=/home/musician USER=musician \
    LOGNAME=musician SHELL=/bin/bash PATH=/usr/local/bin:/usr/bin:/bin LANG=C.UTF-8 ORXDPI="${ORXDPI:-96}" \
    DISPLAY="$DISPLAY" ./installer
say "status $?"
touch /tmp/over
wait
files=$(find /home/musician/vst /usr/lib/lv2 /usr/local/lib -name '*.so' -printf '%u %s %f ')
say "file ${files:-none}"
say "left in /tmp: $(find /tmp -maxdepth 1 -name 'zeph*' -printf '%f ')"
