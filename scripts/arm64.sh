#!/usr/bin/env bash
# Proves the installers for arm64 without such a machine: cross-compiles the second product on a bare
# Debian 12, plays its whole installation inside an arm64 root whose programs an emulator runs, and
# compares its pictures, byte for byte, with those of the installer for this machine's processor.
#
#   scripts/arm64.sh
#
# Pictures and consoles are in build/arm64 after it. Ends with status 1 when something is not as it
# must be. Needs root, an x86-64 machine with Linux 6.7 or newer, and the Debian archive.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh
. scripts/root_file_system.sh

suite=bookworm
product=lantern-tilt
results=$PWD/build/arm64
here_packages=(sudo libx11-6)
arm64_options=(--skip=check/qemu)

fail() {
    echo "$*" >&2
    exit 1
}

# as_arm64 COMMAND...: runs it where the kernel gives programs for arm64 to the emulator. It looks for
# that in the user namespace, and this one, in which everybody has their own number, ends with the
# command: nothing is registered on this machine.
as_arm64() {
    local start namespace
    exec {start}> >(exec unshare --user --mount scripts/arm64.sh --in-namespace "$@")
    namespace=$!
    until [ "$(readlink /proc/$namespace/ns/user)" != "$(readlink /proc/self/ns/user)" ]; do
        kill -0 $namespace 2> /dev/null || return 2
        sleep 0.02
    done
    echo "0 0 4294967295" > /proc/$namespace/uid_map
    echo "0 0 4294967295" > /proc/$namespace/gid_map
    echo >&"$start"
    exec {start}>&-
    wait $namespace
}

case ${1:-} in
--as-arm64)
    as_arm64 "${@:2}"
    exit
    ;;
--in-namespace)
    shift
    read -r _
    head='\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00'
    mask='\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
    # O, C and F: with the rights of the program's file, and from any root.
    mount -t binfmt_misc binfmt_misc /proc/sys/fs/binfmt_misc &&
        echo ":arm64:M::$head:$mask:/usr/bin/qemu-aarch64-static:OCF" > /proc/sys/fs/binfmt_misc/register ||
        no_root "This kernel has no namespaces of their own for other processors' programs."
    exec scripts/arm64.sh "$@" < /dev/null
    ;;
--make-root)
    root_maker_options=("${arm64_options[@]}")
    make_root "$suite" arm64 "${here_packages[@]}"
    echo "$root_folder" > "$results/arm64.root"
    exit
    ;;
--play)
    enter_root "$2" --alone --copy "$3" /srv/installer --copy scripts/distributions/session.sh /srv/session.sh \
        --share /tmp/.X11-unix /srv/x11 --set "DISPLAY=$DISPLAY" --set "ORXDPI=$ORXDPI" \
        -- bash /srv/session.sh default
    exit
    ;;
--compile)
    # On the bare machine: both installers, of which one must not take the other's plug-in.
    ensure_packages "${build_packages[@]}" python3 binutils lv2-dev ccache > /dev/null
    ensure_arm64_packages > /dev/null
    ./make-installer --output dist/x86-64 "products/$product" || exit 1
    if ./make-installer --for arm64 "products/$product" > refused.txt 2>&1; then
        fail "An installer for arm64 was made with a plug-in for x86-64."
    fi
    cat refused.txt
    cp -r "products/$product" arm64-product
    CC=aarch64-linux-gnu-gcc sh "products/$product/source/build.sh" "$PWD/arm64-product/$product.lv2" || exit 1
    ./make-installer --for arm64 --output dist/arm64 arm64-product || exit 1
    cmake --preset arm64 > /dev/null && cmake --build --preset arm64 -t zeph-installer > preset.txt ||
        { cat preset.txt && exit 1; }
    file -b build/arm64/zeph-installer 2> /dev/null || readelf --file-header build/arm64/zeph-installer | grep Machine
    exit
    ;;
esac

# play PROCESSOR COMMAND...: one installation, on a dense screen, by whatever runs it.
play() {
    local processor=$1 outcome window verdict console=$results/$1/console.txt
    shift
    IFS=$'\t' read -r outcome window verdict < <(build/release/zeph-play "$results/$processor" Marlow-7 --dpi 144 \
        -- "$@" --play "$(cat "$results/$processor.root")" "$(echo "$results/dist/$processor"/*-installer)" \
        2> "$results/$processor.errors")
    echo "$processor: $outcome, window after $window s, password accepted after $verdict s," \
        "$(sed -n 's/^session: //p' "$console" | tail -n 3 | paste -sd';')"
    [ "$outcome" = installed ] && ! grep -q "^session: file none" "$console"
}

[ "$(id -u)" -eq 0 ] || no_root "Playing an installation inside a root needs root rights."
mkdir -p "$results" /tmp/.X11-unix
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" xfonts-base qemu-user-static
cmake --preset release -DZEPH_TESTS=ON > "$results/build.log" 2>&1 &&
    cmake --build --preset release -t zeph-play >> "$results/build.log" 2>&1 ||
    { tail -n 30 "$results/build.log" && exit 2; }

make_root "$suite" "" git
tree=$(mktemp -d) || exit 2
trap 'rm -rf "$tree"' EXIT
git -c 'safe.directory=*' clone --quiet --depth 1 "file://$PWD" "$tree/zeph" ||
    no_root "Here is no committed tree to copy."
echo "cross-compiling (the log is $results/compile.log)"
enter_root "$root_folder" --keep-packages --copy "$tree/zeph" /srv/zeph --in /srv/zeph \
    --share "$root_cache/compiled/$suite" /root/.cache/ccache --fetch /srv/zeph/dist "$results/dist" \
    -- scripts/arm64.sh --compile > "$results/compile.log" 2>&1 ||
    { tail -n 30 "$results/compile.log" && exit 1; }
grep -E "for x86-64, while|processor|oldest libc|NOT |^ELF|Machine" "$results/compile.log"

make_root "$suite" "" "${here_packages[@]}"
echo "$root_folder" > "$results/x86-64.root"
as_arm64 --make-root || exit
status=0
play x86-64 scripts/arm64.sh || status=1
play arm64 scripts/arm64.sh --as-arm64 || status=1
for picture in "$results"/x86-64/*.png; do
    name=${picture##*/}
    if cmp -s "$picture" "$results/arm64/$name"; then
        echo "$name: equal"
    else
        echo "$name: DIFFERENT"
        status=1
    fi
done
exit $status
