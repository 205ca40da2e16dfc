#!/usr/bin/env bash
# Builds the installer with g++ and with clang++ on bare machines of Debian suites, and says which
# symbols each executable needs: scripts/floor.sh [SUITE...], bookworm and trixie without.
#
# A line for each; the lists are build/bare-machine/SUITE/logs/symbols-COMPILER.txt. Ends with status 1
# when one of them needs a symbol above the floor, which it names. Needs root and the Debian archive.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh

# On the bare machine itself.
if [ "${1:-}" = --here ]; then
    ensure_packages "${build_packages[@]}" clang python3 binutils ccache > /dev/null
    status=0
    export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
    for c_compiler in gcc clang; do
        compiler=${c_compiler/gcc/g}++
        folder=build/floor-$compiler
        log=build/logs/floor-$compiler.log
        list=build/logs/symbols-$compiler.txt
        cmake -G Ninja -S . -B "$folder" -DCMAKE_BUILD_TYPE=Release -DZEPH_TESTS=OFF \
            -DCMAKE_C_COMPILER="$c_compiler" -DCMAKE_CXX_COMPILER="$compiler" \
            -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache > "$log" 2>&1 &&
            cmake --build "$folder" -t zeph-installer >> "$log" 2>&1 ||
            { tail -n 30 "$log" && exit 1; }
        readelf --wide --dyn-syms "$folder/zeph-installer" | awk '$7 == "UND" && $8 { print $8 }' | sort > "$list"
        above=$(python3 -B tools/make_installer/floor.py "$folder/zeph-installer") || status=1
        suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
        printf '%-8s %-8s %-8s %3d symbols, %d of the C library, highest GLIBC_%s, above the floor: %s\n' \
            "$suite" "$compiler" "$("$compiler" -dumpfullversion -dumpversion)" \
            "$(wc -l < "$list")" "$(grep -c @GLIBC "$list")" \
            "$(grep -oE 'GLIBC_[0-9.]+' "$list" | cut -c 7- | sort -V | tail -n 1)" "${above:-none}"
    done
    exit $status
fi

suites=("$@")
[ ${#suites[@]} -gt 0 ] || suites=(bookworm trixie)
status=0
for suite in "${suites[@]}"; do
    scripts/bare_machine.sh "$suite" scripts/floor.sh --here
    result=$?
    [ $result -le $status ] || status=$result
done
exit $status
