# shellcheck shell=bash
# Installs what is missing of the distribution's packages. Sourced by ./play and ./check.
#
#   need_packages "what for" package...

need_packages() {
    local purpose=$1
    shift
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null) == *"install ok installed"* ]] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    if ! command -v apt-get >/dev/null; then
        echo "These packages are needed to $purpose; install them and try again: ${missing[*]}" >&2
        return 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Please install, as root, what is needed to $purpose: apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing what is needed to $purpose: ${missing[*]}"
    local log
    log=$(mktemp)
    # A list that can't be renewed may still do; a package manager at work elsewhere is waited for.
    "${as_root[@]}" apt-get update >"$log" 2>&1 || echo "The lists of packages could not be renewed; going on."
    if "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
        install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
        rm -f "$log"
        return 0
    fi
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed: ${missing[*]}" >&2
    return 1
}

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config libsdl2-dev libsdl2-mixer-dev libpng-dev libjpeg-dev zlib1g-dev
    libmp3lame-dev libvorbis-dev libavformat-dev libavcodec-dev libswscale-dev libswresample-dev libavutil-dev
    libxxhash-dev)
TEST_PACKAGES=(libgtest-dev libbenchmark-dev clang-format python3)
