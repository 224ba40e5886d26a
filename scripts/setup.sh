# Sourced by the other scripts: where the project is, and how its packages get here.
# shellcheck shell=bash disable=SC2034

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bin="$project/build/release/bin"

build_packages=(g++ cmake ninja-build nlohmann-json3-dev uuid-dev libcli11-dev libpugixml-dev
    libxcb1-dev qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-templates qml6-module-qtquick-window
    qt6-translations-l10n fonts-inter)
run_packages=(xvfb xdotool imagemagick) # only where there is no display
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev strace qml6-module-qttest xvfb xauth
    openbox trayer xdotool x11-utils dbus at-spi2-core python3)
check_packages=(clang clang-format clang-tidy libclang-rt-14-dev shellcheck)

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the named Debian packages that are missing.
require_packages() {
    local missing=() as_root=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "these packages are missing, and without sudo only root can install them: ${missing[*]}"
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -q || echo "The package lists could not be updated; going on with the old ones." >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" && return
    for package in "${missing[@]}"; do
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -q --no-install-recommends "$package" ||
            fail "the package $package could not be installed"
    done
}
