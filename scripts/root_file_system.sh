# shellcheck shell=bash disable=SC2034
# Root file systems of Debian suites, and running commands inside one as on a machine of its own.
#
# Sourced, after scripts/packages.sh, by scripts that need another machine than the one they are
# started on. Everything here needs root rights. Two functions:
#
#   make_root SUITE [ARCHITECTURE [PACKAGE...]]
#       Sets root_folder to a root file system of that suite: what Debian calls required, apt, and
#       the packages that are named with all they depend on; nothing else, not even what those
#       recommend. It comes from the Debian archive that this machine's own apt uses. It is made
#       once for each set of packages and kept in $root_cache; nothing writes to it again, and it is
#       made anew after a week. ARCHITECTURE is Debian's name of it, this machine's own when empty
#       or left out; another one's programs must be able to run where make_root is called.
#       root_maker_options, an array, goes to mmdebstrap as it is.
#
#   enter_root FOLDER [OPTION...] -- COMMAND...
#       Runs the command in it, as root, and returns its exit status. It has mounts, process
#       numbers, a host name and System V memory of its own, /proc, a small /dev with terminals of
#       its own, and an empty /tmp and /run. Its environment is PATH, HOME, TERM and what --set
#       gives. What it writes goes to a layer over FOLDER and is thrown away at the end, when
#       whatever it left running is ended, too. Options:
#           --copy SOURCE TARGET     a file or folder of this machine, copied in first
#           --share SOURCE TARGET    a folder that is seen inside, and written to, as it is
#           --fetch SOURCE TARGET    a file or folder of the inside, copied out at the end if it is
#                                    there then; what stood at TARGET goes
#           --set NAME=VALUE         a variable of its environment
#           --in FOLDER              where it starts; / without
#           --alone                  a network of its own, in which there is nobody else; without,
#                                    it has this machine's, so that apt works inside
#           --keep-packages          what apt fetches inside is kept for the next time
#
# Both end the script, with exit status 2 and one line on standard error, when they cannot do this.
# All mounts are made in namespaces that end with the command, so none is left, however it ends.

root_cache=${ZEPH_ROOT_CACHE:-/var/cache/zeph-roots}
root_maker_options=()

no_root() {
    echo "$*" >&2
    exit 2
}

# The address of the Debian archive among the sources of this machine's apt, whose lists say whose
# they are once they have been fetched.
debian_archive() {
    apt-get indextargets --format '$(ORIGIN)|$(LABEL)|$(REPO_URI)' 'Created-By: Packages' |
        awk -F'|' '$1 == "Debian" && $2 == "Debian" { print $3; exit }'
}

# One line that says what kept mmdebstrap from making a root, from its log.
reason_in() {
    local log=$1 suite=$2 archive=$3
    if grep -qE '^ *404 ' "$log"; then
        echo "The archive $archive has no suite $suite."
    elif grep -q "Failed to fetch .*/dists/" "$log"; then
        echo "The archive $archive cannot be reached."
    else
        echo "No root of $suite can be made:" \
            "$(grep -E '^E: ' "$log" | head -n 1 | cut -c 4-) (the log is $log)"
    fi
}

make_root() {
    [ "$(id -u)" -eq 0 ] || no_root "Making a root file system needs root rights."
    unshare --mount --pid --fork true 2> /dev/null ||
        no_root "No namespaces can be made on this machine, so no root can be entered."
    local suite=$1 architecture=${2:-} archive name log
    shift $(($# > 2 ? 2 : $#))
    (ensure_packages mmdebstrap) > /dev/null 2>&1 ||
        no_root "mmdebstrap, which makes root file systems, cannot be installed."
    architecture=${architecture:-$(dpkg --print-architecture)}
    name=$suite-$architecture
    [ $# -eq 0 ] || name+=-$(printf '%s\n' "$@" "${root_maker_options[@]}" | sha256sum | cut -c 1-12)
    root_folder=$root_cache/$name
    log=$root_cache/$name.log
    mkdir -p "$root_cache"
    # One maker at a time; another that waited finds the root made.
    exec {root_lock}> "$root_cache/$name.lock"
    flock "$root_lock"
    if [ -z "$(find "$root_folder" -maxdepth 0 -mtime -7 2> /dev/null)" ]; then
        archive=$(debian_archive)
        if [ -z "$archive" ]; then
            apt-get -qq -o DPkg::Lock::Timeout=300 update > /dev/null 2>&1
            archive=$(debian_archive)
        fi
        [ -n "$archive" ] || no_root "This machine's apt knows no Debian archive, or cannot reach it."
        make_root_anew "$@"
    fi
    exec {root_lock}>&-
}

# Of make_root, whose variables it uses.
make_root_anew() {
    # A mirror that stands still serves as well: nobody lives on these machines.
    local options=(--variant=minbase "--architectures=$architecture" --dpkgopt=force-unsafe-io
        --aptopt='Acquire::Languages "none"' --aptopt='Acquire::Check-Valid-Until "false"'
        "${root_maker_options[@]}") setting
    [ $# -eq 0 ] || options+=("--include=$(tr ' ' , <<< "$*")")
    [[ $archive != https:* ]] || options+=(--include=ca-certificates)
    while read -r setting; do
        options+=("--aptopt=${setting%;}")
    done < <(apt-config dump | grep -iE '^Acquire::[a-z]+::Proxy ')
    rm -rf "$root_folder" "$root_folder.part" "$root_cache/packages/$name"
    # Whatever it mounts on the way goes with it, also when it is killed.
    if ! unshare --mount --propagation private mmdebstrap "${options[@]}" \
        "$suite" "$root_folder.part" "$archive" > "$log" 2>&1 < /dev/null; then
        rm -rf "$root_folder.part"
        no_root "$(reason_in "$log" "$suite" "$archive")"
    fi
    # Its age is counted from now, not from the suite's last change.
    touch "$root_folder.part"
    mv "$root_folder.part" "$root_folder"
}

enter_root() {
    local root=$1 start=/ alone="" copies=() shares=() fetches=() variables=() runs=$root_cache/runs run
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        case $1 in
        --copy) copies+=("$2" "$3") && shift 3 ;;
        --share) shares+=("$2" "$3") && shift 3 ;;
        --fetch) fetches+=("$2" "$3") && shift 3 ;;
        --set) variables+=("$2") && shift 2 ;;
        --in) start=$2 && shift 2 ;;
        --alone) alone=yes && shift ;;
        --keep-packages)
            shares+=("$root_cache/packages/${root##*/}" /var/cache/apt/archives) && shift
            ;;
        *) no_root "enter_root does not know $1" ;;
        esac
    done
    shift
    local command=("$@")
    mkdir -p "$runs"
    remove_old_runs "$runs"
    # Out of the sight of others that tidy up, until its lock is held.
    run=$(mktemp -d "$runs/.XXXXXX") || no_root "There is no room for a run in $runs."
    (
        exec {held}> "$run/lock"
        flock "$held"
        mv "$run" "$runs/${run##*/.}" && run=$runs/${run##*/.}
        trap 'rm -rf "$run"' EXIT
        within outside unshare --mount --propagation private
    )
}

# within FUNCTION UNSHARE...: runs one of the functions below in namespaces, with enter_root's record.
within() {
    local function=$1
    shift
    "$@" bash -c "$(declare -f no_root within outside inside)
        $(declare -p root start alone copies shares fetches variables command run)
        $function"
}

# What a run that was killed has left: its lock is free.
remove_old_runs() {
    local old
    for old in "$1"/*/; do
        [ -f "$old/lock" ] && flock --nonblock "$old/lock" true && rm -rf "$old"
    done
    return 0
}

# Of enter_root: lays the layer over the root, brings things in, and fetches things out.
outside() {
    local top=$run/root layer=$run/layer i status
    mkdir "$top" "$layer"
    # Nothing of the layer is needed after a crash, so nothing waits for the disk. Not every file
    # system can carry one; memory always can.
    layers() {
        mkdir -p "$layer/upper" "$layer/work"
        mount -t overlay overlay -o "$1lowerdir=$root,upperdir=$layer/upper,workdir=$layer/work" "$top" \
            2> /dev/null
    }
    layers volatile, || layers "" || { mount -t tmpfs -o mode=755 tmpfs "$layer" && layers ""; } ||
        no_root "No writable layer can be laid over $root."
    cp -L /etc/resolv.conf "$top/etc/resolv.conf" 2> /dev/null
    echo bare > "$top/etc/hostname"
    printf '127.0.0.1\tlocalhost\n127.0.1.1\tbare\n' > "$top/etc/hosts"
    for ((i = 0; i < ${#copies[@]}; i += 2)); do
        mkdir -p "$(dirname "$top${copies[i + 1]}")" && cp -a "${copies[i]}" "$top${copies[i + 1]}" ||
            no_root "${copies[i]} cannot be copied into the root."
    done
    for ((i = 0; i < ${#shares[@]}; i += 2)); do
        mkdir -p "${shares[i]}" "$top${shares[i + 1]}" && mount --bind "${shares[i]}" "$top${shares[i + 1]}" ||
            no_root "${shares[i]} cannot be shared with the root."
    done
    within inside unshare --mount --pid --fork --kill-child --ipc --uts ${alone:+--net}
    status=$?
    for ((i = 0; i < ${#fetches[@]}; i += 2)); do
        [ -e "$top${fetches[i]}" ] || continue
        rm -rf "${fetches[i + 1]}"
        mkdir -p "$(dirname "${fetches[i + 1]}")"
        cp -a "$top${fetches[i]}" "${fetches[i + 1]}"
    done
    return "$status"
}

# Of enter_root, as the first process of the new machine: makes the root its own and waits for what
# runs there, taking in what others leave behind.
inside() {
    local top=$run/root node
    cd "$top" || exit 2
    {
        mount --rbind . . && cd "$top" &&
            mount -t proc -o nosuid,nodev,noexec proc proc &&
            mount -t sysfs -o ro,nosuid,nodev,noexec sysfs sys &&
            mount -t tmpfs -o mode=755,nosuid tmpfs dev &&
            mkdir dev/pts dev/shm &&
            mount -t devpts -o newinstance,ptmxmode=666,mode=620,gid=5,nosuid,noexec devpts dev/pts &&
            mount -t tmpfs -o mode=1777,nosuid,nodev tmpfs dev/shm &&
            mount -t tmpfs -o mode=755,nosuid,nodev tmpfs run &&
            mount -t tmpfs -o mode=1777,nosuid,nodev tmpfs tmp &&
            # sudo-rs locks it while it asks: one of its own, where one may be made.
            { mknod -m 666 dev/tty c 5 0 2> /dev/null || { touch dev/tty && mount --bind /dev/tty dev/tty; }; } &&
            for node in null zero full random urandom fuse; do
                [ -e "/dev/$node" ] || continue
                touch "dev/$node" && mount --bind "/dev/$node" "dev/$node" || exit 2
            done &&
            touch dev/ptmx && mount --bind dev/pts/ptmx dev/ptmx && ln -s /proc/self/fd dev/fd &&
            ln -s fd/0 dev/stdin && ln -s fd/1 dev/stdout && ln -s fd/2 dev/stderr &&
            mkdir -p run/lock &&
            echo bare > proc/sys/kernel/hostname &&
            { [ -z "$alone" ] || ip link set lo up; } &&
            pivot_root . . && umount -l . && cd "$start"
    } || no_root "The root $root cannot be entered."
    env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
        TERM="${TERM:-dumb}" "${variables[@]}" "${command[@]}"
}
