#!/usr/bin/env bash
# Every C++ file is formatted by .clang-format.
set -u
cd "$(dirname "$0")/../.." || exit 1
find source tests tools benchmarks products -name '*.h' -o -name '*.cpp' 2> /dev/null |
    xargs -r clang-format --dry-run --Werror
