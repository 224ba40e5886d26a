# Sourced behind setup.sh by the scripts that show the program on a display of its own.
# shellcheck shell=bash

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

# For the shell that the simulator starts; `app` is the program's process.

# shellcheck disable=SC2034 # for who calls it
find_window() {
    window=$(xdotool search --onlyvisible --name "^Ventaro")
}

# Waits until a command succeeds, as long as Ventaro runs.
wait_until() {
    local end=$((SECONDS + 60))
    until "$@"; do
        if ! kill -0 "${app:?}" || [ $SECONDS -ge $end ]; then
            echo "Waited in vain: $*" >&2
            exit 1
        fi
        sleep 0.1
    done
}

export -f find_window wait_until
