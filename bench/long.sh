#!/bin/bash
# Eight simulated hours on line with ten windows open: long.sh [simulated minutes]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
build_preset release quorvik-long >&2
QT_QPA_PLATFORM=offscreen exec build/release/bench/quorvik-long "$@"
