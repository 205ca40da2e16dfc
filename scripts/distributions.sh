#!/usr/bin/env bash
# Plays the whole installation with this machine's executable inside real distributions, as an
# ordinary user, with each one's own sudo and su, in the configurations that people have.
#
#   scripts/distributions.sh [SUITE...]       bullseye bookworm trixie sid, without
#
# From trixie on it does so again with sudo-rs and su-rs in their place. Prints a line for each
# installation as soon as it is over and a table in the end; both, the console texts and the pictures
# stay in build/distributions. Ends with status 1 when an outcome is not what it has to be. Needs
# root and the Debian archive. ONLY, a regular expression in the environment, chooses configurations.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh
. scripts/root_file_system.sh

# The player calls this script for what happens inside.
if [ "${1:-}" = --inside ]; then
    enter_root "$2" --alone --copy "$3" /srv/installer --copy scripts/distributions/session.sh /srv/session.sh \
        --share /tmp/.X11-unix /srv/x11 --set "DISPLAY=$DISPLAY" -- bash /srv/session.sh "${@:4}"
    exit
fi

results=$PWD/build/distributions
at_once=4
user=Marlow-7
root=Wheel:42

# configurations SUITE TOOLS: lines of CONFIGURATION, RIGHT PASSWORD, WHAT IT COMES TO with the right,
# a wrong and no password.
configurations() {
    local installed="installed refused refused"
    # tar finds no gzip there, and only a comparison of what was installed notices.
    local noexec="missing refused refused" verified="not-installed refused refused"
    # Its sudo-rs does not know the setting.
    [ "$1 $2" != "trixie sudo-rs" ] || noexec=$installed verified=$installed
    echo "default $user $installed"
    echo "ubuntu $user $installed"
    echo "stranger $root $installed"
    echo "no-sudo $root $installed"
    echo "pwfeedback $user $installed"
    echo "targetpw $root $installed"
    echo "rootpw $root $installed"
    echo "nopasswd $user installed installed installed"
    echo "insults $user $installed"
    echo "lecture=always $user $installed"
    echo "passwd_tries=1 $user $installed"
    echo "passprompt $user $installed"
    echo "!use_pty $user $installed"
    echo "log_output $user $installed"
    echo "noexec $user $noexec"
    echo "noexec-verified $user $verified"
    echo "faildelay $user $installed"
    echo "faillock $user $installed"
    echo "wheel $user $installed"
    echo "fingerprint $user $installed"
    echo "code CODE $installed"
    # Two questions, of which the person knows the answer to one.
    echo "password-and-code $user refused refused refused"
}

# The code that an authenticator shows now, as the account's secret gives it.
code_now() {
    python3 -c '
import base64, hmac, struct, time
digest = hmac.digest(base64.b32decode("JBSWY3DPEHPK3PXP"), struct.pack(">Q", int(time.time()) // 30), "sha1")
start = digest[-1] & 15
print(f"{(int.from_bytes(digest[start : start + 4], chr(98) + chr(105) + chr(103)) & 0x7FFFFFFF) % 1000000:06d}")'
}

# one SUITE TOOLS CONFIGURATION WHICH TYPED EXPECTED: plays one installation and says its line.
one() {
    local suite=$1 tools=$2 configuration=$3 which=$4 typed=$5 expected=$6
    local folder=$results/$suite/$tools-$configuration-$which program=$PWD/build/release/zeph-installer
    local options=() outcome window verdict file method ok=as\ it\ must
    rm -rf "$folder"
    mkdir -p "$folder"
    if [ "$configuration" = noexec-verified ]; then
        program=$careful_program
        options=(--browser "- Select your LV2 plug-in folder -" --accept-offered)
    fi
    [ "$typed" != CODE ] || typed=$(code_now)
    IFS=$'\t' read -r outcome window verdict < <(build/release/zeph-play "$folder" "$typed" "${options[@]}" \
        -- scripts/distributions.sh --inside "$(root_of "$suite")" "$program" "$configuration" "$tools" \
        2> "$folder/errors.txt")
    file=$(sed -n 's/^session: file //p' "$folder/console.txt")
    method=$(grep -oE "Using '[a-z]+'" "$folder/console.txt" | tr -dc 'a-z \n' | cut -d' ' -f2)
    [ "$outcome" != installed ] || [ "$file" != none ] || outcome=missing
    [ "${outcome// /-}" = "$expected" ] || ok="NOT as it must ($expected)"
    printf '%-9s %-8s %-18s %-6s %-5s %-14s window %4s s  verdict %5s s  %-32s %s\n' "$suite" "$tools" \
        "$configuration" "$which" "${method:--}" "$outcome" "$window" "$verdict" "$file" "$ok"
}

root_of() { cat "$results/$1.root"; }

# play SUITE TOOLS: every configuration with every password, a few at a time.
play() {
    local suite=$1 tools=$2 configuration right outcomes which i
    while read -r configuration right outcomes; do
        [[ $configuration =~ ${ONLY:-.} ]] || continue
        read -r -a outcomes <<< "$outcomes"
        i=0
        for which in right wrong empty; do
            local typed=""
            [ $which != right ] || typed=$right
            [ $which != wrong ] || typed=not-it-42
            while [ "$(jobs -rp | wc -l)" -ge "$at_once" ]; do wait -n; done
            one "$suite" "$tools" "$configuration" $which "$typed" "${outcomes[i]}" | tee -a "$results/table.txt" &
            i=$((i + 1))
        done
    done < <(configurations "$suite" "$tools")
    wait
}

suites=("$@")
[ ${#suites[@]} -gt 0 ] || suites=(bullseye bookworm trixie sid)
for suite in "${suites[@]}"; do
    [[ $suite =~ ^[a-z][a-z0-9-]*$ ]] || no_root "\"$suite\" is no name of a suite."
done
[ "$(id -u)" -eq 0 ] || no_root "Playing installations in distributions needs root rights."
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" python3 binutils xfonts-base
mkdir -p "$results" /tmp/.X11-unix
: > "$results/table.txt"
log=$results/build.log
cmake --preset release -DZEPH_TESTS=ON > "$log" 2>&1 &&
    cmake --build --preset release -t zeph-installer zeph-play >> "$log" 2>&1 &&
    ./make-installer products/lantern-set --output "$results/careful" >> "$log" 2>&1 ||
    { tail -n 30 "$log" && exit 2; }
careful_program=$(echo "$results"/careful/*-installer)

for suite in "${suites[@]}"; do
    # The careful product is packed with xz, which every desktop has.
    packages=(sudo libx11-6 xz-utils libpam-google-authenticator)
    tools=(sudo)
    case $suite in
    bullseye | bookworm) ;;
    *) packages+=(sudo-rs) tools+=(sudo-rs) ;;
    esac
    make_root "$suite" "" "${packages[@]}"
    echo "$root_folder" > "$results/$suite.root"
    for tool in "${tools[@]}"; do
        play "$suite" "$tool"
    done
done

printf '\nThe table:\n'
sort -s -k1,2 "$results/table.txt"
echo "$(grep -c 'as it must$' "$results/table.txt") as they must, $(grep -c 'NOT as it must' "$results/table.txt") not"
! grep -q 'NOT as it must' "$results/table.txt"
