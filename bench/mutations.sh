#!/bin/bash
# Breaks the engines in fifty places, one at a time, and counts how many breaks the tests notice.
set -euo pipefail
cd "$(dirname "$0")/.."
exec scripts/mutate.py "$@"
