#!/bin/bash
# Runs every fuzz target for so many seconds: fuzz.sh [seconds [seed]]; every run tries other inputs, but for those of one seed.
# What breaks a target lies in build/fuzz/found.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
install_packages build test fuzz >&2
seconds=${1:-300}
seed=${2:-0}
mapfile -t targets < <(printf '%s\n' tests/fuzz/Fuzz*.cpp | sed 's|.*/Fuzz||; s|\.cpp$||' | tr '[:upper:]' '[:lower:]')
build_preset fuzz "${targets[@]/#/quorvik-fuzz-}" >&2

export LSAN_OPTIONS=suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0
mkdir -p build/fuzz/found
fuzz() {
    local target=$1 log=build/fuzz/$1.log
    mkdir -p "build/fuzz/corpus/$target"
    "build/fuzz/tests/fuzz/quorvik-fuzz-$target" -max_total_time="$seconds" -seed="$seed" -timeout=10 -rss_limit_mb=2048 \
        -max_len=4096 -print_final_stats=1 -artifact_prefix="build/fuzz/found/$target-" \
        "build/fuzz/corpus/$target" "tests/fuzz/corpus/$target" >"$log" 2>&1 || {
        tail -n 40 "$log" >&2
        echo "fuzz-$target: failed, see $log"
        return 1
    }
    echo "fuzz-$target: $(awk '/number_of_executed_units/ { print $2 }' "$log") runs in $seconds s, nothing found (limit 0)"
}

failed=0
jobs=()
for target in "${targets[@]}"; do
    fuzz "$target" &
    jobs+=($!)
done
for job in "${jobs[@]}"; do wait "$job" || failed=1; done
exit $failed
