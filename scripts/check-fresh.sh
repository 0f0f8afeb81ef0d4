#!/bin/bash
# Runs both commands on a bare Debian, made by debootstrap: check-fresh.sh <suite> [root|user]
# Without a second word, first as root, then on another bare system as a user with sudo. What is committed is tried, and
# nothing else. Wants root or sudo, and some 6 GB in the folder that FRESH_FOLDER names (/var/tmp/quorvik-fresh); the bare
# system, the packages and what was compiled are kept there for the next run. The mirror and the settings of the network
# are those of this machine's own apt, unless FRESH_MIRROR names another mirror.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/install.sh

if [ $# -lt 1 ] || [[ ! ${2:-root} =~ ^(root|user)$ ]]; then
    echo "usage: check-fresh.sh <suite> [root|user]" >&2
    exit 2
fi
suite=$1
[ "$(id -u)" -eq 0 ] || exec sudo --preserve-env=FRESH_FOLDER,FRESH_MIRROR "$0" "$@"
# What is mounted below is seen by this script alone, and goes with it.
[ -n "${FRESH_INSIDE:-}" ] || FRESH_INSIDE=1 exec unshare --mount --pid --fork --kill-child --mount-proc "$0" "$@"

install_packages fresh
folder=${FRESH_FOLDER:-/var/tmp/quorvik-fresh}
kept=$folder/$suite-kept
bare=$folder/$suite.tar
tree=/srv/quorvik
mkdir -p "$kept/packages/partial" "$kept/ccache"

if [ ! -e "$bare" ]; then
    mirror=${FRESH_MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Label: Debian' | sed -n 1p)}
    rm -rf "$folder/$suite-base"
    debootstrap --variant=minbase "$suite" "$folder/$suite-base" ${mirror:+"$mirror"}
    tar -C "$folder/$suite-base" -cf "$bare.part" .
    rm -rf "$folder/$suite-base"
    mv "$bare.part" "$bare"
fi

# inside <user> <command>: runs a command in the tree within the bare system.
inside() {
    chroot "$root" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        CCACHE_DIR=/var/cache/ccache setpriv --reuid="$1" --regid="$1" --init-groups \
        bash -c "export HOME=~$1 && cd $tree && $2" </dev/null
}

# timed <user> <command>: the same, and says how long it took.
timed() {
    local begin=$SECONDS
    inside "$1" "$2" || {
        echo "check-fresh: $2 failed on a bare $suite as $1" >&2
        exit 1
    }
    echo "check-fresh: $2 passed on a bare $suite as $1, $((SECONDS - begin)) s"
}

try_as() {
    local user=$1 command
    shift
    root=$folder/$suite
    rm -rf --one-file-system "$root"
    mkdir -p "$root"
    tar -C "$root" -xf "$bare"
    mount --rbind /dev "$root/dev"
    mount -t proc proc "$root/proc"
    # Displays are numbered in this folder, for the whole machine.
    mount --bind /tmp "$root/tmp"
    mount --bind "$kept/packages" "$root/var/cache/apt/archives"
    mkdir -p "$root/var/cache/ccache" "$root$tree"
    mount --bind "$kept/ccache" "$root/var/cache/ccache"
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
    apt-config dump | grep -E '^Acquire::(http|https|Check|Retries|ForceIP)' >"$root/etc/apt/apt.conf.d/99network" || true
    echo 'Binary::apt::APT::Keep-Downloaded-Packages "true"; APT::Keep-Downloaded-Packages "true";' \
        >"$root/etc/apt/apt.conf.d/99kept"

    git -c safe.directory="$PWD" archive HEAD | tar -C "$root$tree" -xf -
    if [ "$user" = user ]; then
        inside root "apt-get update -q && apt-get install -y -q --no-install-recommends sudo && useradd -m user &&
            echo 'user ALL=(ALL) NOPASSWD: ALL' >/etc/sudoers.d/user && chown -R user: . /var/cache/ccache"
    fi
    for command in "$@"; do timed "$user" "$command"; done

    umount "$root/var/cache/ccache" "$root/var/cache/apt/archives" "$root/tmp" "$root/proc"
    umount -R "$root/dev"
    rm -rf --one-file-system "$root"
}

# Each command is the first one once: what one installs may help the other.
[ "${2:-root}" != root ] || try_as root ./test.sh ./run.sh
[ "${2:-user}" != user ] || try_as user ./run.sh ./test.sh
