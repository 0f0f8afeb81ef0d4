#!/bin/bash
# Breaks drawn lines of engines and windows, one at a time, and counts how many breaks the tests notice:
# mutations.sh [count [seed [part]]]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
install_packages build test >&2
exec scripts/mutate.py "$@"
