#!/bin/sh
# Removes what the installer has put on this machine, and then itself.
#
#     uninstall-NAME [--force]
#
# The list beside it (../share/uninstall-NAME/installed) tells what that is: a line each, with kind,
# size, SHA-256 and path. What was changed since is left alone and named, with --force it is removed
# too. Folders are removed when nothing else is in them. Running it again does no harm.

LC_ALL=C
export LC_ALL

me=${0##*/}
line_feed='
'

say() { printf '%s: %s\n' "$me" "$*"; }

there() { [ -e "$1" ] || [ -L "$1" ]; }

sum_of_input() { sha256sum | cut -d ' ' -f 1; }

# A path of the list leads where it led, through no link that was put in between.
leads_where_it_did() {
    parent=${path%/*}/
    real=$(cd -P -- "$parent" 2> /dev/null && pwd -P && echo x)
    [ "${real%/"$line_feed"x}" = "$real" ] || real=$line_feed'x' # the root folder
    [ "$real" = "${parent%/}${line_feed}x" ]
}

as_installed() {
    case $kind in
    file)
        [ -f "$path" ] && [ ! -L "$path" ] && [ "$(wc -c < "$path")" -eq "$size" ] &&
            [ "$(sum_of_input < "$path")" = "$sum" ]
        ;;
    link) [ -L "$path" ] && [ "$(readlink -n -- "$path" | sum_of_input)" = "$sum" ] ;;
    esac
} 2> /dev/null

# Takes a line apart: kind, size, sum, path. false when it is not of a list.
understand() {
    kind=${line%% *}
    rest=${line#* }
    size=${rest%% *}
    rest=${rest#* }
    sum=${rest%% *}
    path=$(printf '%bx' "${rest#* }") # with its line feeds written as \n
    path=${path%x}
    case $kind:$path in
    file:/* | link:/* | folder:/*) return 0 ;;
    *) return 1 ;;
    esac
}

remove_file() {
    if ! there "$path"; then
        return
    elif ! leads_where_it_did; then
        say "left alone, as it is in another folder now: $path"
    elif [ -d "$path" ] && [ ! -L "$path" ]; then
        say "left alone, as it is a folder now: $path"
    elif [ -z "$force" ] && ! as_installed; then
        say "left alone, as it was changed since: $path"
    elif ! rm -f -- "$path"; then
        say "cannot be removed: $path"
    else
        return
    fi
    left=$left$line$line_feed
}

remove_folder() {
    [ -d "$path" ] && [ ! -L "$path" ] && leads_where_it_did || return
    rmdir -- "$path" 2> /dev/null && return
    say "stays, as there is more in it: $path"
    left=$left$line$line_feed
}

# false when files are left. Their lines are in "left", not in a file: a full disk may be the reason.
remove_files() {
    left=""
    while IFS= read -r line; do
        if [ "$line" != end ] && ! understand; then
            say "not understood, nothing done: $line"
        elif [ "$line" != end ] && [ "$kind" != folder ]; then
            remove_file
        fi
    done < "$list"
    folders=$(grep '^folder ' "$list" | sort -ru) # what is in a folder before the folder
    [ -z "$left" ]
}

remove_own_files() {
    rm -f -- "$list" "$own"
    rmdir -- "${list%/*}" 2> /dev/null
    list=
}

# Those that stay are on the list again, if there is still one; without room for that it stays whole.
remove_folders() {
    while IFS= read -r line; do
        if [ -n "$line" ] && understand; then
            remove_folder
        fi
    done << FOLDERS
$folders
FOLDERS
    [ -n "$list" ] || return
    if { printf '%s' "$left" > "$list.left"; } 2> /dev/null; then
        mv -f -- "$list.left" "$list"
    else
        rm -f -- "$list.left"
    fi
}

main() {
    force=""
    case $#:${1-} in
    0:) ;;
    1:--force) force=yes ;;
    2:--only) # for a newer installer: what a list of its own names
        list=$2
        remove_files
        remove_folders
        exit
        ;;
    *)
        echo "usage: $me [--force]" >&2
        exit 2
        ;;
    esac
    case $0 in
    */*) own=$0 ;;
    *) own=$(command -v -- "$0") ;;
    esac
    list=$(cd -P -- "${own%/*}/.." && pwd -P)/share/$me/installed
    if ! [ -f "$list" ]; then
        say "nothing is installed, as there is no $list"
        exit 0
    elif ! [ -w "$list" ] || ! [ -w "${list%/*}" ]; then
        say "this is for root: sudo $own" >&2
        exit 1
    elif remove_files; then
        remove_own_files
        remove_folders
        say "removed"
        exit 0
    fi
    remove_folders
    say "what is left can be removed with --force"
    exit 1
}

main "$@"
