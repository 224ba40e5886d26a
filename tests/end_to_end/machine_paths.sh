#!/usr/bin/env bash
# Proves with strace that no program touches a path of the real machine while it runs on a simulated
# one: whatever looks like a machine path must lie below the machine's root.
set -euo pipefail
bin=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# shellcheck disable=SC2016 # expanded on the machine
strace -f -qq -e trace=%file,%network -s 300 -o "$work/trace" \
    "$bin/VentaroSimulator" --root "$work/m" -- bash -euc '
        bin=$0
        "$bin/ventaroctl" set 0 4000
        "$bin/ventaroctl" watch --count 1
        VENTARO_MACHINE_ACCESS=root launchctl list
        VENTARO_MACHINE_ACCESS=root "$VENTARO_MACHINE_ROOT/Library/PrivilegedHelperTools/com.ventaro.helper" --reset-all
        "$bin/ventaroctl" auto
        "$bin/ventaroctl" hardware
        "$bin/ventaroctl" uninstall
        "$bin/ventaroctl" install
        timeout -s INT 1 "$bin/ventaroctl" run --profile silent || true
    ' "$bin" >"$work/output"

paths='"(/private)?(/var/run/(com\.ventaro|ventaro)|/Library/|/Users/|/usr/sbin/system_profiler|/usr/bin/launchctl|/tmp/com\.ventaro|/var/log)'
if grep -E "$paths" "$work/trace"; then
    echo "the lines above leave the machine" >&2
    exit 1
fi
for expected in usr/sbin/system_profiler tmp/com.ventaro.helper.plist var/run/com.ventaro.helper.sock Library/LaunchDaemons/com.ventaro.helper.plist \
    var/run/ventaro-simulator/smc-root.sock var/log/com.ventaro.helper.log; do
    grep -qF "\"$work/m/$expected" "$work/trace" || {
        echo "the trace does not show $expected, so it proves nothing" >&2
        exit 1
    }
done
