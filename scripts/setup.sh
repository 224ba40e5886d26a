# Sourced by the other scripts: where the project is, and how its packages get here.
# shellcheck shell=bash disable=SC2034

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bin="$project/build/release/bin"

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-declarative-dev
    qt6-declarative-dev-tools libqt6charts6-dev libqt6svg6-dev libxcb1-dev qml6-module-qtquick
    qml6-module-qtquick-templates qml6-module-qtquick-window qml6-module-qtqml
    qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick-shapes qml6-module-qtcharts fonts-inter nlohmann-json3-dev libcli11-dev libpugixml-dev)
run_packages=(xvfb xdotool imagemagick) # only where there is no display
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev strace xvfb openbox trayer xdotool x11-utils dbus at-spi2-core)
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

# A virtual display for as long as this script runs, away from the desktop of whoever calls it.
start_display() {
    local display number
    desktop_folder=$(mktemp -d)
    trap end_display EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    # In a session of its own: Ctrl-C is not for it, or the programs would lose their display.
    exec {display}< <(exec setsid Xvfb -displayfd 1 -screen 0 1280x900x24 -nolisten tcp -noreset 2>/dev/null)
    display_server=$!
    read -r number <&"$display" || fail "Xvfb did not start"
    exec {display}<&-
    export DISPLAY=:$number QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$desktop_folder
    export DBUS_SESSION_BUS_ADDRESS=disabled:
}

end_display() {
    kill "$display_server" 2>/dev/null || true
    rm -rf "$desktop_folder"
}
