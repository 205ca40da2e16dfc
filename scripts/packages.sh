# shellcheck shell=bash disable=SC2034
# The packages that building, testing and the private tour need, and how they get onto the machine.
#
# Sourced by ./run and ./test. On Debian and Ubuntu what is missing is installed: as root at once, as
# an ordinary user after a question. On other distributions the packages are named, and the commands
# go on only when the tools are there.

build_packages=(g++ cmake ninja-build libx11-dev libpng-dev)
tour_packages=(libxtst-dev libxcb1-dev libgtest-dev sudo passwd tar gzip xvfb openbox ladspa-sdk)
test_packages=(binutils busybox ccache clang clang-format clang-tidy desktop-file-utils file
    fluxbox i3-wm icewm librsvg2-bin lilv-utils locales lv2-dev procps python3 python3-hypothesis
    serdi twm uim-xim x11-utils xclip xfonts-base xfwm4 xsel xz-utils)
# Of these only newer distributions have packages; what is about them is tested where they are.
newer_test_packages=(sudo-rs)
# Building for arm64 on a machine with another processor.
arm64_packages=(g++-aarch64-linux-gnu libx11-dev:arm64)

# What stands for the packages where there is no dpkg to ask.
tool_of() {
    case $1 in
    ninja-build) echo ninja ;;
    clang) echo clang++ ;;
    xvfb) echo Xvfb ;;
    ladspa-sdk) echo analyseplugin ;;
    passwd) echo useradd ;;
    desktop-file-utils) echo desktop-file-validate ;;
    x11-utils) echo xprop ;;
    binutils) echo readelf ;;
    procps) echo ps ;;
    xz-utils) echo xz ;;
    librsvg2-bin) echo rsvg-convert ;;
    locales) echo localedef ;;
    lilv-utils) echo lv2ls ;;
    i3-wm) echo i3 ;;
    lv2-dev | python3-hypothesis | xfonts-base) echo "" ;;
    g++-aarch64-linux-gnu) echo aarch64-linux-gnu-g++ ;;
    lib*) echo "" ;;
    *) echo "$1" ;;
    esac
}

missing_packages() {
    local package tool
    for package in "$@"; do
        if command -v dpkg-query > /dev/null; then
            dpkg-query -W -f '${db:Status-Status}\n' "$package" 2> /dev/null |
                grep -qx installed || echo "$package"
        else
            tool=$(tool_of "$package")
            [ -z "$tool" ] || command -v "$tool" > /dev/null || echo "$package"
        fi
    done
}

# ensure_packages PACKAGE...: returns when all are there; ends the script when they cannot be had.
ensure_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! command -v apt-get > /dev/null; then
        echo "Please install what these Debian packages hold, then start again: ${missing[*]}" >&2
        exit 1
    fi
    if [ "$(id -u)" -ne 0 ]; then
        echo "These packages are missing: ${missing[*]}"
        if ! [ -t 0 ] || ! command -v sudo > /dev/null; then
            echo "Please install them as root: apt-get install ${missing[*]}" >&2
            exit 1
        fi
        read -r -p "Install them with sudo apt-get? [y/N] " answer
        case $answer in
        [yY]*) as_root=(sudo) ;;
        *) exit 1 ;;
        esac
    fi
    echo "installing ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q
        -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
    mkdir -p build/logs
    # A machine may never have fetched its package lists, or long ago.
    if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${missing[@]}"; } \
        > build/logs/packages.log 2>&1 < /dev/null; then
        tail -n 20 build/logs/packages.log >&2
        echo "The packages could not be installed." >&2
        exit 1
    fi
}

# ensure_where_packaged PACKAGE...: those of them that this machine's distribution has. After
# ensure_packages, which sees to it that there is a list of them.
ensure_where_packaged() {
    local package
    command -v apt-cache > /dev/null || return 0
    for package in "$@"; do
        [ -z "$(apt-cache show --no-all-versions "$package" 2> /dev/null)" ] || ensure_packages "$package"
    done
}

# Debian keeps packages for other processors apart until it is told that they are wanted.
ensure_arm64_packages() {
    if [ -n "$(missing_packages "${arm64_packages[@]}")" ] && command -v dpkg > /dev/null &&
        ! dpkg --print-foreign-architectures | grep -qx arm64; then
        if [ "$(id -u)" -ne 0 ]; then
            echo "Building for arm64 takes Debian's packages for arm64. Please tell dpkg so, as root:" >&2
            echo "    dpkg --add-architecture arm64" >&2
            exit 1
        fi
        dpkg --add-architecture arm64
    fi
    ensure_packages "${arm64_packages[@]}"
}

# clang's sanitizer libraries are a package of their own whose name holds clang's version.
ensure_sanitizer_libraries() {
    echo 'int main() {}' | clang++ -fsanitize=address -x c++ -o /dev/null - 2> /dev/null && return
    ensure_packages "libclang-rt-$(clang++ -dumpversion | cut -d. -f1)-dev"
}
