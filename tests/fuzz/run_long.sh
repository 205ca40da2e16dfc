#!/usr/bin/env bash
# Fuzzes every harness until its coverage has not grown for some time, and keeps what reaches new code.
#
#   run_long.sh [MINUTES [HARNESS...]]     10 quiet minutes each of all of them, when nothing is said
#
# Builds with clang in build/fuzz, and works on a copy of the corpora in build/fuzz/corpus, which
# grows from one time to the next. A finding ends its harness; its input stays in
# build/fuzz/findings. Then tell the developers, mend the code, and add the input to the corpus
# under a name that says what it was. Ends with a table, and with status 1 after findings.
set -u
cd "$(dirname "$0")/../.." || exit 2
minutes=${1:-10}
shift
harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
    mapfile -t harnesses < <(find tests/fuzz/corpus -mindepth 1 -maxdepth 1 -printf '%f\n' | sort)
fi

mkdir -p build/fuzz/findings
log=build/fuzz/build.log
if ! { cmake -G Ninja -B build/fuzz -DCMAKE_BUILD_TYPE=Debug -DCMAKE_C_COMPILER=clang \
    -DCMAKE_CXX_COMPILER=clang++ -DZEPH_SANITIZE=address,undefined . &&
    nice cmake --build build/fuzz -t "${harnesses[@]/#/fuzz_}"; } > "$log" 2>&1; then
    tail -n 30 "$log"
    exit 2
fi

# run_one HARNESS: one round of so many minutes after the other, until one ends with the edges it
# began with.
run_one() {
    local name=$1 status edges
    local grown=build/fuzz/corpus/$name log=build/fuzz/$name.log
    mkdir -p "$grown"
    : > "$log"
    while :; do
        nice "build/fuzz/fuzz_$name" -max_total_time=$((minutes * 60)) -max_len=1024 -timeout=20 \
            -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$name-" \
            "$grown" "tests/fuzz/corpus/$name" > "$log.round" 2>&1
        status=$?
        cat "$log.round" >> "$log"
        edges=$(grep -oE '(INITED|DONE) +cov: [0-9]+' "$log.round" | grep -oE '[0-9]+$' | uniq | wc -l)
        [ "$status" -eq 0 ] && [ "$edges" -gt 1 ] || return
    done
}
export minutes
export -f run_one
printf '%s\n' "${harnesses[@]}" | xargs -P "$(nproc)" -I{} bash -c 'run_one {}'

printf '%-16s %12s %8s %7s %9s %8s %8s\n' harness executions seconds edges features corpus findings
found=0
for name in "${harnesses[@]}"; do
    last=$(grep -oE 'cov: [0-9]+ ft: [0-9]+ corp: [0-9]+' "build/fuzz/$name.log" | tail -n 1)
    read -r _ edges _ features _ corpus <<< "$last"
    executions=$(awk '/^stat::number_of_executed_units:/ { sum += $2 } END { print sum }' "build/fuzz/$name.log")
    seconds=$(awk '/^Done .* second/ { sum += $(NF - 1) } END { print sum }' "build/fuzz/$name.log")
    findings=$(find build/fuzz/findings -name "$name-*" | wc -l)
    found=$((found + findings))
    printf '%-16s %12s %8s %7s %9s %8s %8s\n' "$name" "${executions:--}" "${seconds:--}" \
        "$edges" "$features" "$corpus" "$findings"
done
[ "$found" -eq 0 ]
