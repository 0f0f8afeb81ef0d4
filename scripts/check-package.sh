#!/bin/bash
# Packs the release build and checks the package: form, versions, file association, and that the program starts
# from it, by its desktop entry, with a settings file.
set -Eeuo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh

install_packages build display check
build_preset release installable quorvik-tour >/dev/null
(cd build/release && rm -rf package && cpack >package.log 2>&1) || { cat build/release/package.log; exit 1; }
deb=$(ls "$PWD"/build/release/package/*.deb)
work=$(mktemp -d)
display=
trap 'kill $display 2>/dev/null || true; rm -rf "$work"' EXIT
trap 'echo "check-package: line $LINENO failed" >&2' ERR
fail() { echo "check-package: $*" >&2; exit 1; }
equal() { [ "$2" = "$3" ] || fail "$1: \"$2\" instead of \"$3\""; }

lintian --allow-root --fail-on error "$deb"
# grep -q leaves at the first hit, and a pipe into it would then fail for its writer: it is given whole texts.
depends=$(dpkg-deb -f "$deb" Depends)
for needed in libqt6core6 libqt6network6 libqt6sql6 libqt6sql6-sqlite libqt6svg6 libqt6widgets6 libqt6serialport6 libqcustomplot libmdb; do
    grep -q "$needed" <<<"$depends" || fail "the package does not depend on $needed"
done

root=$work/root
dpkg -x "$deb" "$root"
version=$(dpkg-deb -f "$deb" Version)
equal "sarvex-drive --version" "$("$root/usr/bin/sarvex-drive" --version)" "sarvex-drive $version"
equal "quorvik-batch --version" "$("$root/usr/bin/quorvik-batch" --version)" "quorvik-batch $version"
equal "quorvik-tour --version" "$(QT_QPA_PLATFORM=offscreen build/release/bin/quorvik-tour --version)" "Quorvik $version"
grep -q "^## $version " CHANGELOG.md || fail "CHANGELOG.md has no entry for $version"

equal "quorvik-report --version" "$(QT_QPA_PLATFORM=offscreen "$root/usr/lib/quorvik/quorvik-report" --version)" "quorvik-report $version"
if ldd "$root/usr/lib/quorvik/quorvik-batch" | grep -E 'Qt6(Gui|Widgets)'; then fail "quorvik-batch needs windows"; fi
for page in "$root"/usr/share/man/man1/*.gz; do
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
    equal "warnings of $(basename "$page")" "$warnings" ""
done
completion=$root/usr/share/bash-completion/completions/quorvik-batch
# What the completion offers for a command line, its last word being typed.
offered() {
    bash -c '. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); compopt() { :; }
        _quorvik_batch; printf "%s\n" "${COMPREPLY[@]}"' - "$completion" "$@"
}
bash -n "$completion"
verbs=$("$root/usr/bin/quorvik-batch" --help | sed -n '/^Verbs:/,/^$/s/^  \([a-z-]*\) .*/\1/p')
page=$(gunzip -c "$root/usr/share/man/man1/quorvik-batch.1.gz" | sed 's/\\-/-/g')
[ -n "$verbs" ] || fail "quorvik-batch --help names no verb"
for verb in $verbs; do
    grep -qx -- "$verb" <<<"$(offered quorvik-batch "$verb")" || fail "the completion does not know $verb"
    grep -q "^\.SS $verb" <<<"$page" || fail "the man page does not tell $verb"
done
equal "ports offered" "$(sed -n 1p <<<"$(offered quorvik-batch info --port Com1)")" Com1
grep -qx -- --json <<<"$(offered quorvik-batch info --js)" || fail "the completion does not know --json"

desktop-file-validate "$root/usr/share/applications/quorvik.desktop"
update-mime-database "$root/usr/share/mime" >/dev/null
update-desktop-database "$root/usr/share/applications" 2>/dev/null
export HOME=$work/home XDG_DATA_DIRS=$root/usr/share XDG_CURRENT_DESKTOP=GNOME PATH=$root/usr/bin:$PATH
export XDG_RUNTIME_DIR=$work/run
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
mkdir -p -m 700 "$HOME" "$XDG_RUNTIME_DIR"
# Without a port the first window would ask for one.
mkdir -p "$HOME/.config/quorvik"
printf '[Options]\nCommPort=16\n' >"$HOME/.config/quorvik/Quorvik.ini"
type=application/x-quorvik-parameters
for name in "press 4.Svx" b.svx C.SVX; do
    # The factory table has the form of a settings file.
    cp "$root/usr/lib/quorvik/Presets.fil" "$work/$name"
    equal "type of $name" "$(xdg-mime query filetype "$work/$name")" "$type"
done
equal "program of the type" "$(xdg-mime query default "$type")" quorvik.desktop

[ ! -e "$HOME/.local/share/quorvik" ] || fail "something was written before the first start"
quorvik-batch selftest >"$work/selftest" 2>&1 || fail "the self-test failed: $(cat "$work/selftest")"

exec 3<>"$work/number"
# Without -noreset the server starts anew when xwininfo, its only client, leaves, and turns the program away.
Xvfb -displayfd 3 -noreset -screen 0 1366x768x24 3>"$work/number" 2>/dev/null &
display=$!
for _ in $(seq 100); do [ -s "$work/number" ] && break; sleep 0.1; done
DISPLAY=:$(cat "$work/number")
export DISPLAY
program=$root/usr/lib/quorvik/quorvik
# Waits until the program shows the file in its title, and ends it.
end_when_open() {
    for _ in $(seq 200); do
        windows=$(xwininfo -root -tree | grep '"Quorvik' || true)
        grep -q 'press 4' <<<"$windows" && break
        sleep 0.1
    done
    grep -q 'press 4' <<<"$windows" || fail "the program did not open the file: ${windows:-no window}"
    for process in /proc/[0-9]*; do
        [ "$(readlink "$process/exe")" = "$program" ] || continue
        kill "${process#/proc/}"
        for _ in $(seq 100); do [ -e "$process/exe" ] || break; sleep 0.1; done
        return
    done
    fail "the program that shows the file is not found"
}
types=$HOME/.local/share/mime/packages/quorvik.xml
entry=$HOME/.local/share/applications/quorvik.desktop

gio open "$work/press 4.Svx"
end_when_open
[ ! -e "$types" ] && [ ! -e "$entry" ] || fail "the program wrote for the user what the package has"

# What it writes for a user without the package is the same type.
XDG_DATA_DIRS=$work/none "$program" "$work/press 4.Svx" &
end_when_open
wait $! || fail "the program did not end well"
cmp <(sed 's/ *$//' "$types") "$root/usr/share/mime/packages/quorvik.xml"
grep -q "^Exec=\"$program\" %f" "$entry" || fail "the user's entry starts another program: $(grep ^Exec "$entry")"

echo "$(basename "$deb"): good"
