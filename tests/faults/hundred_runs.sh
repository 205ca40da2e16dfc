#!/usr/bin/env bash
# One hundred complete runs: twenty-five of each outcome, four beside each other, each held against
# the first of its kind. hundred_runs.sh [BUILD_FOLDER [RUNS_OF_EACH]]; needs root, takes ten minutes.
set -u
cd "$(dirname "$0")/../.." || exit 1
build=${1:-build/release}
runs=${2:-25}
logs=build/logs
mkdir -p "$logs"
outcomes=(Installed Cancelled WrongPassword KilledDisplay)
players=()
for outcome in "${outcomes[@]}"; do
    "$build/hundred_runs" --gtest_filter="*.$outcome" --gtest_repeat="$runs" \
        > "$logs/hundred-$outcome.log" 2>&1 &
    players+=($!)
done
status=0
for place in "${!outcomes[@]}"; do
    wait "${players[$place]}" || status=1
    log=$logs/hundred-${outcomes[$place]}.log
    echo "${outcomes[$place]}: $(grep -c '^\[       OK \]' "$log") alike and clean," \
        "$(grep -c '^\[  FAILED  \].*ms)' "$log") not"
done
exit $status
