#!/usr/bin/env bash
# Lines and branches of the program's own code that the whole test run reaches: a table by file, and
# every line with its count in build/coverage/report/. Takes as long as ./test.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/packages.sh
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" "${test_packages[@]}" llvm
ensure_sanitizer_libraries

build=build/coverage
profiles=$PWD/$build/profiles
mkdir -p build/logs
cmake --preset coverage > build/logs/build-coverage.log 2>&1 &&
    cmake --build --preset coverage -j "$(nproc)" >> build/logs/build-coverage.log 2>&1 ||
    { tail -n 30 build/logs/build-coverage.log; exit 1; }

# The installer runs under throw-away accounts, which write here too, each process its own file.
rm -rf "$profiles"
mkdir -p "$profiles"
chmod 777 "$profiles"
# Two tests cannot be: one lets no file be written, counters included, the other compares with an
# executable that does not count.
LLVM_PROFILE_FILE=$profiles/%p%c.profraw ctest --test-dir "$build" -j 8 --timeout 300 -LE fuzz \
    -E 'FileSizeLimit.OfNothing|SecondProductIsReproducible' \
    > build/logs/test-coverage.log 2>&1 < /dev/null
grep -E '\*\*\*|tests passed' build/logs/test-coverage.log

llvm-profdata merge --failure-mode=all -o "$build/all.profdata" "$profiles"/*.profraw || exit 1
programs=()
for program in "$build"/lantern-tilt/dist/*-installer "$build"/*_test "$build"/runner_tool \
    "$build"/unit_*; do
    [ -x "$program" ] && [ -f "$program" ] && programs+=(-object "$program")
done
llvm-cov report "$build/zeph-installer" "${programs[@]}" \
    -instr-profile="$build/all.profdata" "$PWD/source" | tee "$build/report.txt"
llvm-cov show "$build/zeph-installer" "${programs[@]}" -instr-profile="$build/all.profdata" \
    -show-branches=count -format=html -output-dir="$build/report" "$PWD/source" > /dev/null
