#!/bin/bash
# Process start to the main window's first full paint, and resident memory, against a program that shows an empty frame.
set -euo pipefail
build=$(realpath "$1")
if [ -z "${INSIDE_XVFB:-}" ]; then
    INSIDE_XVFB=1 QT_QPA_PLATFORM=xcb exec xvfb-run -a -s "-screen 0 1366x768x24 -noreset" "$0" "$build"
fi

profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
export XDG_CONFIG_HOME=$profile/config XDG_DATA_HOME=$profile/data XDG_CACHE_HOME=$profile/cache
mkdir -p "$profile/config/quorvik"
printf '[Options]\nCommPort=16\nShow%%20Tips%%20at%%20Startup=False\n' >"$profile/config/quorvik/Quorvik.ini"

# measure <program>: prints milliseconds until its main window is painted whole for the first time, and its resident
# memory in MiB; median of five. Qt itself tells when what it painted goes to the screen.
export QT_LOGGING_RULES="*=false;qt.widgets.painting=true" QT_MESSAGE_PATTERN="%{message}" QT_FORCE_STDERR_LOGGING=1
measure() {
    local times=() memory=0 begin process _ painted
    for _ in 1 2 3 4 5; do
        begin=$(date +%s%N)
        exec {painted}< <(exec "$@" 2>&1 >/dev/null)
        process=$!
        grep -q -m1 '^Flushing QRegion(0,0 ' <&"$painted"
        times+=($((($(date +%s%N) - begin) / 1000000)))
        sleep 0.3
        memory=$(awk '/VmRSS/ { print int($2 / 1024) }' "/proc/$process/status")
        kill "$process"
        wait "$process" 2>/dev/null || true
        exec {painted}<&-
    done
    mapfile -t times < <(printf '%s\n' "${times[@]}" | sort -n)
    echo "${times[2]} $memory"
}

read -r emptyTime emptyMemory < <(measure "$build/bench/quorvik-empty-window")
read -r time memory < <(measure "$build/bin/quorvik")
echo "start to the first full paint: $time ms (limit 150)"
echo "start against an empty frame: $(awk "BEGIN { printf \"%.2f\", $time / $emptyTime }") times (limit 4)"
echo "resident memory after start: $memory MiB (limit 80)"
echo "resident memory against an empty frame: $(awk "BEGIN { printf \"%.2f\", $memory / $emptyMemory }") times (limit none)"
