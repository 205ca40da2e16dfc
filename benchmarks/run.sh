#!/usr/bin/env bash
# Builds the benchmarks and runs them one after the other: benchmarks/run.sh [NAME...]
#
# Names: core imaging text folder_browser start_up; all of them when nothing is said. Figures come
# from a machine that does nothing else; each program compares with its peer in the same run. What
# they print stays in build/benchmarks. start_up needs root, for an account of its own.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/packages.sh
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" \
    libbenchmark-dev libpixman-1-dev libswscale-dev pkg-config

names=("$@")
[ ${#names[@]} -gt 0 ] || names=(core imaging text folder_browser start_up)
results=build/benchmarks
mkdir -p "$results" build/logs
log=build/logs/build-benchmarks.log
cmake --preset release -DZEPH_TESTS=ON -DZEPH_BENCHMARKS=ON > "$log" 2>&1 &&
    cmake --build --preset release -j "$(nproc)" -t zeph-installer "${names[@]/%/_benchmark}" >> "$log" 2>&1 ||
    { tail -n 30 "$log"; exit 1; }
for name in "${names[@]}"; do
    echo "== $name"
    timeout 900 "build/release/${name}_benchmark" 2>&1 | tee "$results/$name.txt"
done
