#!/bin/sh
# Makes the manual's screenshots in all its languages, and the README's, from a built viewer with the manual
# beside it. They are committed; run this when the window has changed.
#   make-screenshots.sh [FOLDER-OF-THE-PROGRAM]
set -eu

# The second half of this script: one picture, on a screen and in a home of its own.
#   --picture KIND FOLDER-OF-THE-PROGRAM LANGUAGE TOPIC FILE
size_of_window() # width, height
{
    folder=$XDG_DATA_HOME/YXSOFT/YXCAD/YXhelp/2026
    mkdir -p "$folder"
    # The mode is offline, also for a product that has both: it is the one that shows pages without a network.
    printf '[OpenModeFlag]\nRunMode=0\nChangeRemin=true\n[WindowsSize]\nWidth=%s\nHeight=%s\n' "$1" "$2" \
        >"$folder/YxHelpSystem.ini"
}

start() # folder of the program, language, topic
{
    : >"$HOME/log"
    # The language of the environment chooses among the regional forms of Chinese characters.
    QT_LOGGING_RULES='yxhelp.page.debug=true' LC_ALL=$(printf %s "$2" | tr - _).UTF-8 \
        "$1/YxHelp" /Language "$2" /Topic "$3" 2>"$HOME/log" &
    viewer=$!
    trap 'kill $viewer 2>/dev/null || true' EXIT
    tries=0
    until grep -q 'page loaded' "$HOME/log"; do
        tries=$((tries + 1))
        if [ $tries -gt 300 ] || ! kill -0 "$viewer" 2>/dev/null; then
            echo "The viewer shows no page:" >&2
            cat "$HOME/log" >&2
            exit 1
        fi
        sleep 0.1
    done
    sleep 1
    window=$(xdotool search --onlyvisible --class YxHelp)
}

click() # x, y, button
{
    xdotool mousemove "$1" "$2"
    sleep 0.3
    xdotool click "$3"
    sleep 0.7
}

# The window that a click has opened.
opened() {
    tries=0
    until [ "$(xdotool getactivewindow 2>/dev/null || echo "$window")" != "$window" ]; do
        tries=$((tries + 1))
        if [ $tries -gt 100 ]; then
            echo "No window has opened" >&2
            exit 1
        fi
        sleep 0.1
    done
    sleep 1
    xdotool getactivewindow
}

save() # window, file
{
    import -window "$1" "$HOME/shot.png"
    # Few colours keep the file small; without dithering, letters stay crisp.
    convert "$HOME/shot.png" +dither -colors 128 -strip -depth 8 "PNG8:$2"
}

picture() # kind, folder of the program, language, topic, file
{
    case $1 in
    window)
        size_of_window 1188 666
        start "$2" "$3" "$4"
        save root "$5"
        ;;
    favorites)
        size_of_window 640 400
        start "$2" "$3" "$4"
        for row in 187 208 229; do
            click 33 358 1
            click 60 $row 3
            xdotool key Down Return
            sleep 0.7
        done
        click 190 164 3
        save root "$5"
        ;;
    settings)
        size_of_window 1188 666
        start "$2" "$3" "$4"
        click 1046 16 1
        dialog=$(opened)
        # With the online help chosen, the dialog shows all that it has.
        xdotool mousemove --window "$dialog" 30 61 click 1
        xdotool mousemove 1 1
        sleep 1
        save "$dialog" "$5"
        ;;
    print)
        size_of_window 1188 666
        start "$2" "$3" "$4"
        click 208 67 1
        preview=$(opened)
        xdotool windowsize --sync "$preview" 700 420
        # The width of the paper, to have something to read.
        xdotool mousemove --window "$preview" 30 20 click 1
        xdotool mousemove 1 1
        sleep 3
        save "$preview" "$5"
        ;;
    esac
}

if [ "${1:-}" = --picture ]; then
    shift
    picture "$@"
    exit
fi

cd "$(dirname "$0")/.."
program=${1:-build/release/bin}
if [ ! -x "$program/YxHelp" ]; then
    echo "There is no viewer in $program" >&2
    exit 1
fi
program=$(cd "$program" && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

# The manual has no online help and so no settings: for their picture it becomes a product that has.
cp "$program/YxHelp" "$work"
for folder in samples/manual/*-*/; do
    tag=$(basename "$folder")
    cp -R "$program/$tag" "$work"
    sed 's/^Group=.*/Group=3/' "samples/product/$tag/YxHelp.ini" >"$work/YxHelp.ini"
    "$program/yxhelp-build" --input "$folder" --output "$work" --language "$tag" \
        --product "$work/YxHelp.ini" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        exit 1
    }
done

shoot() # screen, then what picture takes
{
    screen=$1
    shift
    YXHELP_SCREEN=$screen YXHELP_DPI=96 tests/support/run-isolated.sh --gui \
        "$PWD/scripts/make-screenshots.sh" --picture "$@"
}

# The screen has the size of the window, so that a picture of the one is a picture of the other.
for folder in samples/manual/*-*/images; do
    tag=$(basename "$(dirname "$folder")")
    shoot 1188x666x24 window "$program" "$tag" 10-contents "$PWD/$folder/window.png"
    shoot 640x400x24 favorites "$program" "$tag" 20-moving "$PWD/$folder/favorites.png"
    shoot 1188x666x24 settings "$work" "$tag" 60-settings "$PWD/$folder/settings.png"
    shoot 1188x666x24 print "$program" "$tag" 20-moving "$PWD/$folder/print.png"
done
shoot 1188x666x24 window "$program" en-US index "$PWD/docs/screenshot.png"
