#!/usr/bin/env bash
# clang-tidy on every file of source/, with the compile commands of a build folder that used clang.
# check_tidy.sh BUILD_FOLDER. A file whose text after inclusion has not changed is not checked again.
set -u
cd "$(dirname "$0")/../.." || exit 1
export build=$1 stamps=build/tidy
mkdir -p "$stamps"

check_one() {
    local file=$1 command stamp key
    stamp=$stamps/${file//\//.}
    # The compile command's own options, for the text that the compiler would see.
    command=$(awk -F'"' -v file="/$file" '
        $2 == "command" { command = $0; sub(/^[^:]*: "/, "", command); sub(/",?$/, "", command) }
        $2 == "file" && substr($4, length($4) - length(file) + 1) == file { print command; exit }
        ' "$build/compile_commands.json")
    [ -n "$command" ] || { echo "$file is not part of the build"; return 1; }
    command=${command//\\\"/\"}
    key=$( (cat .clang-tidy "$file"; clang-tidy --version
        eval "${command%% -o *}" -E -P "$PWD/$file" 2> /dev/null) | sha256sum)
    [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$key" ] && return 0
    if clang-tidy --quiet -p "$build" "$file" 2> "$stamp.errors" > "$stamp.log"; then
        echo "$key" > "$stamp"
    else
        cat "$stamp.log" "$stamp.errors"
        return 1
    fi
}
export -f check_one
find source -name '*.cpp' | sort | xargs -P "$(nproc)" -I{} bash -c 'check_one {}'
