#!/bin/sh
# Makes the manual's screenshots in all its languages, and the README's, from a built viewer with the manual
# beside it. They are committed; run this when the window has changed.
#   make-screenshots.sh [FOLDER-OF-THE-PROGRAM]
set -eu
cd "$(dirname "$0")/.."
program=${1:-build/release/bin}/YxHelp
if [ ! -x "$program" ]; then
    echo "There is no viewer in $program" >&2
    exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

# A home of its own, so that no remembered size counts; a screen of the window's first size, so that a picture
# of the screen is one of the window.
mkdir "$work/home" "$work/run"
chmod 700 "$work/run"

shoot() # language tag, topic key, picture
{
    env -u DISPLAY -u WAYLAND_DISPLAY -u XDG_DATA_HOME -u XDG_CONFIG_HOME -u XDG_CACHE_HOME \
        HOME="$work/home" XDG_RUNTIME_DIR="$work/run" \
        YXHELP_SCREEN=1188x666x24 YXHELP_DPI=96 YXHELP_SCREENSHOT="$work/shot.png" \
        scripts/show.sh "$program" /Language "$1" /Topic "$2" >/dev/null
    # Few colours keep the file small; without dithering, letters stay crisp.
    convert "$work/shot.png" +dither -colors 128 -strip -depth 8 "PNG8:$3"
}

for folder in samples/manual/*/images/; do
    tag=$(basename "$(dirname "$folder")")
    shoot "$tag" 10-contents "${folder}window.png"
done
shoot en-US index docs/screenshot.png
