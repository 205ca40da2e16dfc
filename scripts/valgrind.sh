#!/usr/bin/env bash
# The tests that drive the installer as a person does, with the installer under valgrind's memcheck.
# A report is the exit status 99, which no test takes, and is kept in build/valgrind/reports/.
#
#   valgrind.sh [REGEX]     only tests whose names match
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/packages.sh
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" "${test_packages[@]}" valgrind libc6-dbg

build=$PWD/build/valgrind
reports=$build/reports
mkdir -p build/logs
if ! { cmake -G Ninja -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEPH_TESTS=ON . &&
    rm -f "$build/zeph-installer" &&
    cmake --build "$build" -j "$(nproc)" -t zeph-installer end_to_end_test faults_test; } \
    > build/logs/build-valgrind.log 2>&1; then
    tail -n 30 build/logs/build-valgrind.log
    exit 1
fi

# The tests copy this in place of the installer into the homes of throw-away accounts.
rm -rf "$reports"
mkdir -p "$reports"
chmod 777 "$reports"
mv "$build/zeph-installer" "$build/zeph-installer.checked"
cat > "$build/zeph-installer" << END
#!/bin/sh
exec /usr/bin/valgrind -q --vgdb=no --leak-check=full --errors-for-leak-kinds=definite --error-exitcode=99 \\
    --suppressions=$PWD/tests/valgrind.supp --log-file=$reports/%p.log \\
    $build/zeph-installer.checked "\$@"
END
chmod 755 "$build/zeph-installer"

# Not run: what memcheck itself cannot do without, which is /tmp, files of any size, descriptors,
# threads and memory; what exchanges the program's libraries, where the script above stands; and what
# has not been built.
beyond_it='OldXlib|SmallLimit|NoGuiThread|ClosedTmp|Tmp.ThatIs(ReadOnly|ClosedToThePerson|Missing)'
beyond_it+='|FileSizeLimit.OfNothing|make_installer'
ctest --test-dir "$build" -j 3 --timeout 300 --output-on-failure -R "${1:-.}" -E "$beyond_it" \
    -L end_to_end \
    > build/logs/test-valgrind.log 2>&1 < /dev/null
grep -E '\*\*\*|tests passed' build/logs/test-valgrind.log

# Not a report: this valgrind does not know the request that opens a pseudo-terminal's other end.
unknown_request='ioctl 0x5441|spurious value errors|README_MISSING_SYSCALL'
found=0
for report in "$reports"/*.log; do
    if grep '^==' "$report" | grep -qvE "$unknown_request"; then
        echo "== $report"
        grep '^==' "$report" | grep -vE "$unknown_request" | head -n 40
        found=1
    fi
done
exit $found
