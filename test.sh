#!/bin/bash
# Builds everything with the sanitizers and runs all tests. The last line counts what passed, failed and was skipped.
set -uo pipefail
cd "$(dirname "$0")" || exit 1
. scripts/install.sh

preset=${1:-test}
install_packages build test || exit 1
build_preset "$preset" || exit 1

export QT_QPA_PLATFORM=offscreen
log=build/$preset/tests.log
# Many tests wait for a line or a clock, so one more than there are processors.
ctest --test-dir "build/$preset" -j $(($(nproc) + 1)) --output-on-failure --no-tests=error </dev/null 2>&1 | tee "$log"
result=${PIPESTATUS[0]}
# A test that was skipped counts as passed for ctest.
awk '/^ *[0-9]+\/[0-9]+ Test .*\*\*\*Skipped/ { skipped++ }
     /tests passed, .* tests? failed out of/ { failed = $4; total = $NF }
     END { printf "%d passed, %d failed, %d skipped\n", total - failed - skipped, failed, skipped }' "$log"
exit "$result"
