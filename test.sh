#!/bin/bash
# Builds everything with the sanitizers and runs all tests. The last line counts what passed and failed.
set -uo pipefail
cd "$(dirname "$0")" || exit 1
. scripts/install.sh

preset=${1:-test}
install_packages build test || exit 1
build_preset "$preset" || exit 1

export QT_QPA_PLATFORM=offscreen
log=build/$preset/tests.log
ctest --test-dir "build/$preset" -j "$(nproc)" --output-on-failure --no-tests=error </dev/null 2>&1 | tee "$log"
result=${PIPESTATUS[0]}
awk '/tests passed, .* tests? failed out of/ { failed = $4; total = $NF }
     END { if (total == "") { total = 0; failed = 0 } printf "%d passed, %d failed\n", total - failed, failed }' "$log"
exit "$result"
