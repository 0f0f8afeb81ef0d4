#!/bin/bash
# Line coverage of the engines by their own tests. The report lies in build/coverage/lines.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
install_packages build test coverage >&2
needed=90

build_preset coverage >&2
find build/coverage -name '*.gcda' -delete
QT_QPA_PLATFORM=offscreen ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure >build/coverage/tests.log 2>&1 || {
    tail -n 40 build/coverage/tests.log >&2
    exit 1
}
# Only the engines: their windows lie in forms/.
gcovr --root . --object-directory build/coverage --filter 'src/(platform|model|link|emulator|settings|compare|operations)/[^/]*$' \
    --exclude-throw-branches --txt build/coverage/lines.txt --print-summary build/coverage >build/coverage/summary.txt
share=$(awk '/^lines:/ { sub("%", "", $2); print $2 }' build/coverage/summary.txt)
echo "engine-line-coverage: $share % (at least $needed)"
awk "BEGIN { exit !($share >= $needed) }"
