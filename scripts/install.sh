# install_packages <what>...: installs the packages that are listed for it and are missing; nothing where none is.
install_packages() {
    local list missing=() what package sudo=
    list="$(dirname "${BASH_SOURCE[0]}")/packages.txt"
    while read -r what package; do
        case " $* " in *" $what "*) ;; *) continue ;; esac
        [[ "$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null)" == *'ok installed'* ]] || missing+=("$package")
    done < <(grep -v '^#' "$list")
    [ ${#missing[@]} -eq 0 ] && return 0
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -q </dev/null
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null
}

# build_preset <preset> [target...]: configures and builds, with no more jobs than the memory carries. Warnings are
# errors where WARNINGS_ARE_ERRORS is ON: a compiler that came out later keeps no user from building.
build_preset() {
    local preset=$1 cores memory jobs
    shift
    cores=$(nproc)
    memory=$(awk '/MemAvailable/ { print int($2 / 1500000) + 1 }' /proc/meminfo)
    jobs=$((cores < memory ? cores : memory))
    mkdir -p build
    cmake --preset "$preset" -DCMAKE_COMPILE_WARNING_AS_ERROR="${WARNINGS_ARE_ERRORS:-OFF}" \
        >"build/configure-$preset.log" 2>&1 || {
        cat "build/configure-$preset.log"
        return 1
    }
    ninja -j "$jobs" -C "build/$preset" "$@"
}
