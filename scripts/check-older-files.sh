#!/bin/bash
# Holds what the program reads of files of the older format against what another reader, which shares no code with it, reads:
# check-older-files.sh [file...]; without files, those that are kept with the tests. Files made here always come first.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh
install_packages build test older
# Who has Node.js from elsewhere has npm with it, and the two packages do not go together with that.
command -v npm >/dev/null || install_packages node
build_preset test quorvik-jet-writer quorvik-jet

here=build/older-files
mkdir -p "$here/reader"
cp tests/jet/reader/package.json tests/jet/reader/package-lock.json tests/jet/reader/compare.mjs "$here/reader/"
npm ci --prefix "$here/reader" --ignore-scripts --no-audit --no-fund --loglevel=error

compare() { node "$here/reader/compare.mjs" build/test/bin/quorvik-jet "$@"; }
made() {
    local name=$1
    shift
    build/test/tests/jet/quorvik-jet-writer "$@" "$here/$name" >"$here/$name.json"
    compare "$here/$name" "$here/$name.json"
}
made plain.Svx
made letters.Svx --letters
made no-notes.Svx --no-notes --no-slots
made long.Svx --rows 600 --notes "Long"
made deleted.Svx --letters --deleted 5
made moved.Svx --letters --overflow 9 --deleted 4
made empty.Svx --rows 0

[ $# -gt 0 ] || set -- tests/settings/jet3/*.mdb
for file in "$@"; do compare "$file"; done
