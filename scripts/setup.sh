# Sourced by the other scripts: where the project is, and how its packages get here.
# shellcheck shell=bash disable=SC2034

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bin="$project/build/release/bin"

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-declarative-dev
    qt6-declarative-dev-tools qt6-charts-dev qt6-svg-dev libxcb1-dev qml6-module-qtquick
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

# Runs a command on a virtual display of its own, away from the desktop of whoever calls the script,
# and takes both down again however it ends.
run_on_virtual_display() {
    display_folder=$(mktemp -d)
    display_server=
    display_user=
    trap end_virtual_display EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    # In a session of its own: Ctrl-C is not for it, or the programs would lose their display.
    local output number
    exec {output}< <(exec setsid Xvfb -displayfd 1 -screen 0 1280x900x24 -nolisten tcp -noreset 2>/dev/null)
    display_server=$!
    read -r number <&"$output" || fail "Xvfb did not start"
    exec {output}<&-
    DISPLAY=:$number QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$display_folder \
        DBUS_SESSION_BUS_ADDRESS=disabled: "$@" &
    display_user=$!
    wait $display_user # not in the foreground: a signal to this script alone would have to wait
}

end_virtual_display() {
    local process
    for process in $display_user $display_server; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$display_folder"
}
