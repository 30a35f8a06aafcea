#!/bin/sh
# Makes the manual's screenshots in all its languages, and the README's, from a built viewer with the manual
# beside it. They are committed; run this when the window has changed.
#   make-screenshots.sh [FOLDER-OF-THE-PROGRAM]     a build tree has it in "bin"
set -eu

# The second half of this script: one picture, on a screen and in a home of its own.
#   --picture KIND FOLDER-OF-THE-PROGRAM LANGUAGE TOPIC FILE [WORD-TO-TYPE]
size_of_window() # width, height, mode of the help: 0 offline (when left out), 1 online
{
    folder=$XDG_DATA_HOME/YXSOFT/YXCAD/YXhelp/2026
    mkdir -p "$folder"
    printf '[OpenModeFlag]\nRunMode=%s\nChangeRemin=true\n[WindowsSize]\nWidth=%s\nHeight=%s\n' \
        "${3:-0}" "$1" "$2" >"$folder/YxHelpSystem.ini"
}

start() # folder of the program, language, topic, what its log tells when it is there
{
    # A viewer that shows the manual to somebody must not get the topic instead: the title is nobody else's.
    : >"$HOME/log"
    # The language of the environment chooses among the regional forms of Chinese characters.
    QT_LOGGING_RULES='yxhelp.page.debug=true' LC_ALL=$(printf %s "$2" | tr - _).UTF-8 \
        "$1/YxHelp" /Language "$2" /Topic "$3" /helpTitle "screenshots-$$" 2>"$HOME/log" &
    viewer=$!
    trap 'kill $viewer 2>/dev/null || true' EXIT
    tries=0
    until grep -q "${4:-page loaded}" "$HOME/log"; do
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

picture() # kind, folder of the program, language, topic, file, word to type
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
    results)
        size_of_window 880 480
        start "$2" "$3" "$4"
        click 135 132 1
        xdotool type --delay 80 "$6"
        xdotool key Return
        sleep 1
        click 75 208 1
        click 75 250 1
        # Without the topics of the first chapter.
        click 247 132 1
        click 25 187 1
        xdotool mousemove 600 90
        sleep 1
        save root "$5"
        ;;
    index)
        size_of_window 640 400
        start "$2" "$3" "$4"
        click 101 358 1
        click 135 132 1
        xdotool type --delay 80 "$6"
        sleep 1
        save root "$5"
        ;;
    online)
        size_of_window 880 400 1
        start "$2" "$3" "$4" 'online page loaded'
        save root "$5"
        ;;
    prompt)
        size_of_window 1188 666 1
        start "$2" "$3" "$4" 'online page failed'
        # It opens by itself, and its width tells it apart.
        for window in $(xdotool search --onlyvisible --class YxHelp); do
            xdotool getwindowgeometry --shell "$window" | grep -qx 'WIDTH=400' && break
        done
        save "$window" "$5"
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
service=
stop_service()
{
    [ -z "$service" ] || kill "$service" 2>/dev/null || true
    service=
}
trap 'stop_service; rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

# The manual has no online help. For the pictures about that it becomes a product that has, with its pages on a
# web site of its own.
cp "$program/YxHelp" "$program/libYxOnlineHelpApi.so" "$work"
build() # language, then what is to be built
{
    tag=$1
    shift
    "$program/yxhelp-build" --language "$tag" --input "$(dirname "$program")/samples/manual/$tag" "$@" \
        >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        exit 1
    }
}

tags=$(cd samples/manual && echo *-*)
for tag in $tags; do
    build "$tag" --product "samples/product/$tag/YxHelp.ini" --site "$work/site"
done
: >"$work/service"
"$program/yxhelp-service" --site "$work/site" >"$work/service" &
service=$!
until site=$(head -n 1 "$work/service") && [ -n "$site" ]; do
    if ! kill -0 "$service" 2>/dev/null; then
        echo "The site of the manual can't be served" >&2
        exit 1
    fi
    sleep 0.1
done
for tag in $tags; do
    cp -R "$program/$tag" "$work"
    sed -e 's/^Group=.*/Group=3/' -e "s|^\\[YxHelp\\]|&\\nDefaultURL=$site\\nAbroadURL=$site\\
HelpmanagerUrl=${site}address\\nHelpmanagerAbroadUrl=${site}address|" \
        "samples/product/$tag/YxHelp.ini" >"$work/YxHelp.ini"
    build "$tag" --product "$work/YxHelp.ini" --output "$work"
done

shoot() # screen, then what picture takes
{
    screen=$1
    shift
    YXHELP_SCREEN=$screen YXHELP_DPI=96 tests/support/run-isolated.sh --gui \
        "$PWD/scripts/make-screenshots.sh" --picture "$@"
}

word() # in which language, what to look for: a text of the manual, or the beginning of a title
{
    case $1-$2 in
    zh-CN-text) echo 语言 ;;
    zh-CN-title) echo 设 ;;
    *-text) echo language ;;
    *-title) echo set ;;
    esac
}

# The screen has the size of the window, so that a picture of the one is a picture of the other.
for tag in $tags; do
    folder=$PWD/samples/manual/$tag/images
    shoot 1188x666x24 window "$program" "$tag" 10-contents "$folder/window.png"
    shoot 640x400x24 favorites "$program" "$tag" 20-moving "$folder/favorites.png"
    shoot 880x480x24 results "$program" "$tag" 10-contents "$folder/results.png" "$(word "$tag" text)"
    shoot 640x400x24 index "$program" "$tag" 10-contents "$folder/index.png" "$(word "$tag" title)"
    shoot 1188x666x24 settings "$work" "$tag" 60-settings "$folder/settings.png"
    shoot 1188x666x24 print "$program" "$tag" 20-moving "$folder/print.png"
    shoot 880x400x24 online "$work" "$tag" 20-moving "$folder/online.png"
done
shoot 1188x666x24 window "$program" en-US index "$PWD/docs/screenshot.png"
# Nobody answers any more.
stop_service
for tag in $tags; do
    shoot 1188x666x24 prompt "$work" "$tag" 20-moving "$PWD/samples/manual/$tag/images/prompt.png"
done
