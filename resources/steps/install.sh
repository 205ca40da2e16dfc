#!/bin/sh
# shellcheck disable=SC2317
# install.sh: the steps of an installation that keeps what is there until the new files are whole.
#
#     sh -c TEXT-OF-THIS-FILE install STEP NAME ARCHIVE FOLDER MEMBER [FOLDER MEMBER]...
#
# Each MEMBER is a file or folder at the archive's top, and goes into its FOLDER. NAME tells the
# products apart: beside what is installed stand .NAME-new, with the files to come, and for a moment
# .NAME-old, with those to go.
#
#     put_beside       makes .NAME-new of the archive and compares it with the archive
#     move_into_place  adds to .NAME-new what the old one holds beyond it, which is not ours to lose,
#                      and changes old for new; when that fails, changes it back
#     abandon          takes .NAME-new away
#
# A step that fails leaves everything as it was. Its exit status says why:
no_room=71
read_only=72
in_the_way=73
not_whole=74
no_folder=75
not_allowed=76
interrupted=77

umask 022
LC_ALL=C
export LC_ALL
exec > /dev/null 2>&1
step=$1 name=$2 archive=$3
shift 3

there() { [ -e "$1" ] || [ -L "$1" ]; }

is_folder() { [ -d "$1" ] && [ ! -L "$1" ]; }

# attempt STATUS COMMAND...: goes on when the command succeeds, else ends with what its complaint
# means, or else with the status.
attempt() {
    otherwise=$1
    shift
    said=$("$@" 2>&1) && return
    case $said in
    *"No space left"* | *"quota exceeded"*) exit "$no_room" ;;
    *"Read-only file system"* | *"ermission denied"* | *"not permitted"*) exit "$read_only" ;;
    esac
    exit "$otherwise"
}

# each ACTION FOLDER MEMBER...: ACTION FOLDER MEMBER for each pair.
each() {
    action=$1
    shift
    while [ $# -gt 1 ]; do
        "$action" "$1" "$2"
        shift 2
    done
}

# keep OLD NEW: gives the folder NEW what the folder OLD has beyond it. Hard links take no room and
# no time; where there are none, copies.
keep() {
    for entry in "$1"/* "$1"/.[!.]* "$1"/..?*; do
        there "$entry" || continue
        counterpart=$2/${entry##*/}
        if ! there "$counterpart"; then
            cp -alT "$entry" "$counterpart" && continue
            rm -rf "$counterpart"
            attempt "$not_whole" cp -aT "$entry" "$counterpart"
        elif is_folder "$entry"; then
            is_folder "$counterpart" || exit "$in_the_way"
            keep "$entry" "$counterpart"
        fi
    done
}

# What was cut off between old and new, by a loss of power perhaps, is put back first.
start_afresh() {
    for entry in "$1/.$name-old"/* "$1/.$name-old"/.[!.]* "$1/.$name-old"/..?*; do
        there "$entry" || continue
        there "$1/${entry##*/}" || attempt "$read_only" mv -T "$entry" "$1/${entry##*/}"
    done
    rm -rf "$1/.$name-old" "$1/.$name-new"
}

# Not with -C, which takes a backslash in a folder's name for a sign of its own.
tar_in() {
    cd "$1" || return
    shift
    tar --no-unquote "$@"
}

extract() {
    new=$1/.$name-new
    [ -d "$1" ] || exit "$no_folder"
    is_folder "$new" || attempt "$read_only" mkdir -m 700 "$new"
    attempt "$not_whole" tar_in "$new" -xf "$archive" -- "$2"
    attempt "$not_whole" tar_in "$new" -df "$archive" -- "$2"
    sync -f "$new" || return 0
}

put_beside() {
    each start_afresh "$@"
    each extract "$@"
}

complete() {
    there "$1/.$name-new/$2" || exit "$not_whole"
    is_folder "$1/$2" || return 0
    is_folder "$1/.$name-new/$2" || exit "$in_the_way"
    keep "$1/$2" "$1/.$name-new/$2"
}

change() {
    if there "$1/$2"; then
        is_folder "$1/.$name-old" || attempt "$read_only" mkdir -m 700 "$1/.$name-old"
        attempt "$read_only" mv -T "$1/$2" "$1/.$name-old/$2"
    fi
    attempt "$read_only" mv -T "$1/.$name-new/$2" "$1/$2"
}

# Whatever of it has been changed.
change_back() {
    there "$1/.$name-new/$2" || mv -T "$1/$2" "$1/.$name-new/$2"
    if there "$1/.$name-old/$2"; then
        mv -T "$1/.$name-old/$2" "$1/$2"
    fi
    rmdir "$1/.$name-old"
}

take_away_old() { rm -rf "$1/.$name-old"; }

take_away_new() { rm -rf "$1/.$name-new"; }

move_into_place() {
    (each complete "$@") || return
    (each change "$@") && {
        each take_away_old "$@"
        return
    }
    failed=$?
    each change_back "$@"
    return "$failed"
}

env true || exit "$not_allowed"
case $step in
put_beside)
    trap : HUP INT TERM # this shell stays to tidy up
    (put_beside "$@")
    status=$?
    trap '' HUP INT TERM
    [ $status -le 128 ] || status=$interrupted
    [ $status -eq 0 ] || each take_away_new "$@"
    ;;
move_into_place)
    trap '' HUP INT TERM # a matter of a moment, which is not to be cut off
    move_into_place "$@"
    status=$?
    each take_away_new "$@"
    ;;
abandon)
    each take_away_new "$@"
    status=0
    ;;
esac
exit "$status"
