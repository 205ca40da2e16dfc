#!/bin/sh
# shellcheck disable=SC2317
# install.sh: the steps of an installation that keeps what is there until the new files are whole.
#
#     sh -c TEXT-OF-THIS-FILE install STEP NAME ARCHIVE PREFIX UNINSTALLER
#         FOLDER MEMBER [FOLDER MEMBER]... -- [SOURCE TARGET]...
#
# Each MEMBER is a file or folder at the archive's top, and goes into its FOLDER. NAME tells the
# products apart: beside what is installed stand .NAME-new, with the files to come, and for a moment
# .NAME-old, with those to go.
#
# With a PREFIX, such as /usr/local, a list of what is installed is kept in
# PREFIX/share/uninstall-NAME, and UNINSTALLER (the text of uninstall.sh) goes to
# PREFIX/bin/uninstall-NAME. On the list are all MEMBERs, and each TARGET that is made by others of
# the SOURCE's content; "folder" for SOURCE means that the TARGET is a folder. What an older version
# has on its list, and the new one has not, is removed, unless it was changed.
#
# "new-folder" for SOURCE means that the TARGET is a folder to be made here, before the MEMBERs, in
# the order given, where it is missing.
#
#     put_beside       makes .NAME-new of the archive, compares it with the archive, makes the list
#     move_into_place  adds to .NAME-new what the old one holds beyond it, which is not ours to lose,
#                      and changes old for new; when that fails, changes it back
#     abandon          takes .NAME-new away
#
# All of it works for root, and for a person in folders of their own.
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
step=$1 name=$2 archive=$3 prefix=$4 uninstaller=$5
shift 5
share=$prefix/share/uninstall-$name
script=$prefix/bin/uninstall-$name
script_beside=$prefix/bin/.uninstall-$name-new
line_feed='
'

there() { [ -e "$1" ] || [ -L "$1" ]; }

is_folder() { [ -d "$1" ] && [ ! -L "$1" ]; }

# attempt STATUS COMMAND...: goes on when the command succeeds, else ends with what its complaint
# means, or else with the status.
attempt() {
    otherwise=$1
    shift
    said=$("$@" 2>&1) && return
    case $said in
    *"No space left"* | *"Wrote only"* | *"quota exceeded"*) exit "$no_room" ;;
    *"Read-only file system"* | *"ermission denied"* | *"not permitted"*) exit "$read_only" ;;
    esac
    exit "$otherwise"
}

# each ACTION FOLDER MEMBER...: ACTION FOLDER MEMBER for each pair before "--".
each() {
    action=$1
    shift
    while [ $# -gt 1 ] && [ "$1" != -- ]; do
        "$action" "$1" "$2"
        shift 2
    done
}

# back ACTION FIRST SECOND...: the same from the last pair to the first.
back() {
    [ $# -gt 2 ] || return 0
    (
        action=$1
        shift 3
        back "$action" "$@"
    )
    "$1" "$2" "$3"
}

# others EACH-OR-BACK ACTION ... -- SOURCE TARGET...: ACTION SOURCE TARGET for pairs after "--".
others() {
    way=$1 other_action=$2
    while [ "$1" != -- ]; do
        shift
    done
    shift
    "$way" "$other_action" "$@"
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

# arrived FOLDER MEMBER: whether it is as in the archive, but for its owner where nobody but root could
# have given it away.
arrived() {
    differences=$(tar_in "$1" -df "$archive" -- "$2" 2>&1) && return
    [ $? -eq 1 ] && [ "$(id -u)" -ne 0 ] &&
        ! printf '%s\n' "$differences" | grep -v ': [GU]id differs$'
}

make_folder() {
    [ "$1" != new-folder ] || [ -d "$2" ] || attempt "$in_the_way" mkdir -m 755 "$2"
}

# Fails when it is not empty.
take_away_folder() { [ "$1" != new-folder ] || rmdir "$2"; }

extract() {
    new=$1/.$name-new
    if ! [ -d "$1" ]; then
        there "$1" && exit "$in_the_way"
        exit "$no_folder"
    fi
    is_folder "$new" || attempt "$read_only" mkdir -m 700 "$new"
    attempt "$not_whole" tar_in "$new" -xf "$archive" -- "$2"
    attempt "$not_whole" arrived "$new" "$2"
    sync -f "$new" || return 0
}

# Writes a path so that it is one line: backslashes doubled, line feeds as \n.
escaped() {
    text=$(printf '%sx' "$1" | sed -e 's/\\/\\\\/g' | sed -e ':a' -e '$!N' -e 's/\n/\\n/' -e 'ta')
    printf '%s' "${text%x}"
}

# enlist KIND TARGET: a line of the list; but for a folder, of the content on standard input.
enlist() {
    size=0 sum=0
    if [ "$1" != folder ]; then
        cat > "$share/content.new" || return
        size=$(wc -c < "$share/content.new")
        sum=$(sha256sum < "$share/content.new")
        sum=${sum%% *}
    fi
    printf '%s %s %s %s\n' "$1" "$size" "$sum" "$(escaped "$2")"
}

# enlist_tree PATH TARGET: what is at PATH, and is to be at TARGET.
enlist_tree() {
    if [ -L "$1" ]; then
        readlink -n "$1" | enlist link "$2"
    elif [ -d "$1" ]; then
        enlist folder "$2"
        for entry in "$1"/* "$1"/.[!.]* "$1"/..?*; do
            if there "$entry"; then
                enlist_tree "$entry" "$2/${entry##*/}"
            fi
        done
    else
        enlist file "$2" < "$1"
    fi
}

# The folder's own path, through no link, without a slash at its end.
find_real() {
    real=$1
    [ -d "$1" ] || return 0
    real=$(cd -P "$1" && pwd -P && echo x)
    real=${real%"$line_feed"x}
    real=${real%/}
}

enlist_member() {
    find_real "$1"
    enlist_tree "$1/.$name-new/$2" "$real/$2"
}

enlist_other() {
    find_real "${2%/*}"
    case $1 in
    folder | new-folder) enlist folder "$real/${2##*/}" ;;
    *) enlist file "$real/${2##*/}" < "$1" ;;
    esac
}

# Lists end with "end", so that one that a full disk has cut off can be told.
write_list() {
    {
        printf '%s' "$made"
        others each enlist_other "$@"
        each enlist_member "$@"
        echo end
    } > "$share/installed.new"
}

# What the older version has, and the new one has not.
write_dropped() {
    cut -d ' ' -f 4- "$share/installed.new" > "$share/paths.new"
    is_whole "$share/paths.new" || return
    while IFS= read -r line; do
        path=${line#* * * }
        [ "$line" = end ] || grep -Fqx -e "$path" "$share/paths.new" || printf '%s\n' "$line"
    done < "$share/installed" > "$share/dropped.new"
    echo end >> "$share/dropped.new"
}

is_whole() { [ "$(tail -n 1 "$1")" = end ]; }

# The new list with all that only the older version has: for want of room for what is left of that.
write_all() {
    grep -vx end "$share/installed.new" > "$share/all.new"
    cat "$share/dropped.new" >> "$share/all.new"
}

write_uninstaller() {
    printf '%s' "$uninstaller" > "$script_beside" && chmod 755 "$script_beside"
}

# All that takes room is made here, where the old version is still in its place.
make_list() {
    take_away_list
    made=
    for place in "$prefix" "$prefix/bin" "$prefix/share"; do
        [ -d "$place" ] && continue
        attempt "$read_only" mkdir "$place"
        made=$made$(enlist folder "$place")$line_feed
    done
    [ -d "$share" ] || attempt "$read_only" mkdir "$share"
    attempt "$no_room" write_list "$@"
    is_whole "$share/installed.new" || exit "$no_room"
    if [ -f "$share/installed" ]; then
        attempt "$no_room" write_dropped
        is_whole "$share/dropped.new" || exit "$no_room"
        attempt "$no_room" write_all
        is_whole "$share/all.new" || exit "$no_room"
        attempt "$no_room" touch "$share/dropped.new.left" # which the uninstaller writes
    fi
    attempt "$no_room" write_uninstaller
    [ "$(wc -c < "$script_beside")" -eq "$(printf '%s' "$uninstaller" | wc -c)" ] || exit "$no_room"
}

# The new list takes the old one's place, and what only the old one has is removed.
change_lists() {
    list=$share/installed.new
    if [ -f "$share/dropped.new" ]; then
        sh "$script_beside" --only "$share/dropped.new"
        cat "$share/dropped.new" >> "$share/installed.new" || list=$share/all.new
    fi
    mv -fT "$script_beside" "$script"
    mv -fT "$list" "$share/installed"
    rm -f "$share"/*.new
}

# Folders that are still to be made for the list, as its lines.
find_missing_places() {
    for place in "$prefix" "$prefix/bin" "$prefix/share"; do
        [ -d "$place" ] || missing=$missing$line_feed$(enlist folder "$place")$line_feed
    done
}

# Folders that were made for the list go with it.
take_away_list() {
    [ -n "$prefix" ] || return 0
    made=$missing
    rm -f "$script_beside"
    if [ -d "$share" ]; then
        made=$made$line_feed$(cat "$share/installed.new")$line_feed
        rm -f "$share"/*.new "$share/dropped.new.left"
        rmdir "$share"
    fi
    for place in "$prefix/share" "$prefix/bin" "$prefix"; do
        case $made in
        *"$line_feed$(enlist folder "$place")$line_feed"*) rmdir "$place" ;;
        esac
    done
}

put_beside() {
    each start_afresh "$@"
    others each make_folder "$@"
    each extract "$@"
    [ -z "$prefix" ] || make_list "$@"
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

take_away_all_new() {
    each take_away_new "$@"
    take_away_list
}

leave_as_it_was() {
    take_away_all_new "$@"
    others back take_away_folder "$@"
}

move_into_place() {
    (each complete "$@") || return
    (each change "$@") && {
        each take_away_old "$@"
        [ -z "$prefix" ] || change_lists
        return 0
    }
    failed=$?
    each change_back "$@"
    return "$failed"
}

missing=
env true || exit "$not_allowed"
case $step in
put_beside)
    find_missing_places
    trap : HUP INT TERM # this shell stays to tidy up
    (put_beside "$@")
    status=$?
    trap '' HUP INT TERM
    [ $status -le 128 ] || status=$interrupted
    [ $status -eq 0 ] || leave_as_it_was "$@"
    ;;
move_into_place)
    trap '' HUP INT TERM # a matter of a moment, which is not to be cut off
    if move_into_place "$@"; then
        status=0
        take_away_all_new "$@"
    else
        status=$?
        leave_as_it_was "$@"
    fi
    ;;
abandon)
    leave_as_it_was "$@"
    status=0
    ;;
esac
exit "$status"
