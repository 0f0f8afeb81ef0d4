#!/bin/bash
# clang-tidy over all sources of the program but tests and benchmarks, in the batches in which they are compiled.
set -euo pipefail
cd "$(dirname "$0")/.."

rm -rf build/lint
cmake --preset lint >build/configure-lint.log 2>&1 || {
    cat build/configure-lint.log
    exit 1
}
# The checks need what moc writes and no object file, so moc alone is run.
find build/lint -name AutogenInfo.json -print0 |
    xargs -0 -P "$(nproc)" -I{} cmake -E cmake_autogen {} Release >build/lint/moc.log 2>&1 || {
    cat build/lint/moc.log
    exit 1
}
# By a name with this word in it the static analyzer knows a batch, and follows the paths of the sources in it.
find build/lint -path '*/Unity/unity_*_cxx.cxx' | while read -r batch; do
    sed 's|^#include.*|& // NOLINT(bugprone-suspicious-include)|' "$batch" >"${batch/unity_/UnifiedSource_}"
done
sed -i 's|/Unity/unity_|/Unity/UnifiedSource_|g' build/lint/compile_commands.json

folders='(src|drive|tour|help|data)'
run-clang-tidy -quiet -j "$(nproc)" -p build/lint "$PWD/($folders/.*\.cpp|build/lint/$folders/.*UnifiedSource.*)\$" \
    >build/lint/tidy.log 2>&1 || {
    grep -A6 -E 'warning:|error:' build/lint/tidy.log
    exit 1
}
