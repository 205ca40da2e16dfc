#!/usr/bin/env bash
# Every C++ file is formatted by .clang-format.
#
# Each version of clang-format has its own idea of the same rules. The sources follow this one's;
# where only another is installed, the check is left to a machine that has it: exit status 77.
set -u
cd "$(dirname "$0")/../.." || exit 1
version=14

tool=$(command -v "clang-format-$version" || command -v clang-format)
installed=$("${tool:-false}" --version 2> /dev/null | grep -oE 'version [0-9]+' | tr -dc '0-9')
if [ "$installed" != "$version" ]; then
    echo "left to a machine with clang-format $version (here: ${installed:-none})"
    exit 77
fi
find source tests tools benchmarks products -name '*.h' -o -name '*.cpp' 2> /dev/null |
    xargs -r "$tool" --dry-run --Werror
