#!/bin/bash
# The long soak of the drive link under faults of the line: soak.sh [transactions] [seed]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
build_preset release quorvik-soak >&2
exec build/release/bench/quorvik-soak "$@"
