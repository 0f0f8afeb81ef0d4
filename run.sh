#!/bin/bash
# Builds Quorvik and starts it beside a simulated drive; without a display, runs the tour instead.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/install.sh

hasDisplay=${DISPLAY:-}${WAYLAND_DISPLAY:-}
[ -n "$hasDisplay" ] || install_packages display
# A build that is there already may be named, for checks that want to try that one.
build=${QUORVIK_BUILD:-}
if [ -z "$build" ]; then
    install_packages build
    build=build/release
    build_preset release quorvik quorvik-batch quorvik-tour sarvex-drive
fi

# A profile of its own: what the user keeps elsewhere is neither read nor changed.
profile=$PWD/build/profile
port=$PWD/build/simulated-drive
export XDG_CONFIG_HOME=$profile/config XDG_DATA_HOME=$profile/data XDG_CACHE_HOME=$profile/cache
settings=$XDG_CONFIG_HOME/quorvik/Quorvik.ini
mkdir -p "$(dirname "$settings")" "$XDG_DATA_HOME" "$XDG_CACHE_HOME"
if [ ! -e "$settings" ]; then
    printf '[Options]\nCommPort=16\n\n[Ports]\nCom16=%s\n' "$port" >"$settings"
fi

if [ -z "$hasDisplay" ]; then
    echo "There is no display: running the tour."
    exec xvfb-run -a -s "-screen 0 1366x768x24 -noreset" "$build"/bin/quorvik-tour --pictures build/tour \
        --drive "$build"/drive/sarvex-drive "$@"
fi

rm -f "$port"
"$build"/drive/sarvex-drive --demo --link "$port" --presets "$build"/bin/Presets.fil </dev/null &
drive=$!
trap 'kill $drive 2>/dev/null || true' EXIT
for _ in $(seq 50); do
    [ -e "$port" ] && break
    sleep 0.1
done
"$build"/bin/quorvik "$@"
