#!/bin/sh
# Runs one test in a home, settings and temporary directory of its own.
#   run-isolated.sh [--gui] PROGRAM [ARGUMENT...]
# With --gui it also gets a screen of its own (Xvfb) with a small window manager (openbox).
set -eu

gui=no
if [ "$1" = --gui ]; then
    gui=yes
    shift
fi

root=$(mktemp -d "${TMPDIR:-/tmp}/yxhelp-test.XXXXXX")
server=
manager=
cleanup() {
    # Only what was started here is ended.
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$root"
}
trap cleanup EXIT
trap 'exit 1' HUP INT TERM

mkdir -p "$root/home" "$root/tmp" "$root/config" "$root/data" "$root/cache"
mkdir -m 700 "$root/run"
export HOME="$root/home" TMPDIR="$root/tmp"
export XDG_CONFIG_HOME="$root/config" XDG_DATA_HOME="$root/data" XDG_CACHE_HOME="$root/cache"
export XDG_RUNTIME_DIR="$root/run" XDG_CONFIG_DIRS="$root/config"
export LC_ALL=C.UTF-8 LANG=C.UTF-8 TZ=UTC
unset LANGUAGE WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS QT_LOGGING_RULES || true

# The web engine refuses to run as root inside its sandbox. Only scripts say so, never the program.
if [ "$(id -u)" = 0 ]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
fi

if [ $gui = no ]; then
    unset DISPLAY || true
    export QT_QPA_PLATFORM=offscreen
    "$@"
    exit
fi

for tool in Xvfb openbox; do
    if ! command -v $tool >/dev/null; then
        echo "$tool is missing; run ./test.sh, which installs it" >&2
        exit 1
    fi
done
Xvfb -displayfd 3 -screen 0 "${YXHELP_SCREEN:-1600x1200x24}" -dpi "${YXHELP_DPI:-96}" -nolisten tcp \
    3>"$root/display" 2>"$root/xvfb.log" &
server=$!
tries=0
until [ -s "$root/display" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 100 ] || ! kill -0 "$server" 2>/dev/null; then
        echo "Xvfb did not start:" >&2
        cat "$root/xvfb.log" >&2
        exit 1
    fi
    sleep 0.1
done
DISPLAY=:$(cat "$root/display")
export DISPLAY
export QT_QPA_PLATFORM=xcb
openbox >"$root/openbox.log" 2>&1 &
manager=$!
"$@"
