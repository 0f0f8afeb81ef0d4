#!/bin/bash
# Measures the release build; one figure a line: "name: value unit (limit L)".
# With an argument it runs one of the long checks instead: soak, fuzz, mutations, coverage, long.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/install.sh

install_packages build display >&2
what=${1:-all}
case $what in
all)
    build_preset release >&2
    export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
    result=0
    for program in build/release/bench/quorvik-bench-*; do
        [ -f "$program" ] && [ -x "$program" ] || continue
        "$program" || result=1
    done
    bench/start.sh build/release || result=1
    exit $result
    ;;
soak | fuzz | mutations | coverage | long)
    shift
    exec "bench/$what.sh" "$@"
    ;;
*)
    echo "usage: bench.sh [soak [transactions] | fuzz [seconds [seed]] | mutations [count [seed [part]]] | coverage | long]" >&2
    exit 2
    ;;
esac
