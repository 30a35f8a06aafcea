#!/bin/sh
# Runs the viewer on the display, or on a virtual one when there is none; then it leaves a screenshot of the
# first page and ends.
#   show.sh PROGRAM [SWITCH...]
set -eu

# The web engine refuses to run as root inside its sandbox.
if [ "$(id -u)" = 0 ]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
fi
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$@"
fi

shot=${YXHELP_SCREENSHOT:-build/screenshot.png}
work=$(mktemp -d)
viewer=
manager=
server=
cleanup() {
    for pid in $viewer $manager $server; do
        kill "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 1' HUP INT TERM

Xvfb -displayfd 3 -screen 0 "${YXHELP_SCREEN:-1280x800x24}" -dpi "${YXHELP_DPI:-96}" -nolisten tcp \
    3>"$work/display" 2>"$work/xvfb.log" &
server=$!
tries=0
until [ -s "$work/display" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 100 ]; then
        echo "Xvfb did not start:" >&2
        cat "$work/xvfb.log" >&2
        exit 1
    fi
    sleep 0.1
done
DISPLAY=:$(cat "$work/display")
export DISPLAY QT_QPA_PLATFORM=xcb
openbox >/dev/null 2>&1 &
manager=$!

: >"$work/viewer.log"
QT_LOGGING_RULES='yxhelp.page.debug=true' "$@" 2>"$work/viewer.log" &
viewer=$!
tries=0
until grep -q 'page loaded' "$work/viewer.log"; do
    tries=$((tries + 1))
    if ! kill -0 "$viewer" 2>/dev/null; then
        echo "The viewer ended:" >&2
        cat "$work/viewer.log" >&2
        exit 1
    fi
    # A viewer that stands at a message, or on a page that never ends, is worth a picture too.
    [ $tries -le 300 ] || break
    sleep 0.1
done
sleep 1
mkdir -p "$(dirname "$shot")"
import -window root "$shot"
echo "There is no display; the screenshot is in $shot"
