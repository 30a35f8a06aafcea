#!/bin/sh
# Builds the viewer and opens it on its own manual, or on documentation of your choice.
set -eu
cd "$(dirname "$0")"

usage() {
    cat <<'TEXT'
./run.sh [--content PATH]... [--title TEXT] [--language TAG] [--topic KEY] [--online]

Installs what is missing, builds, and opens the viewer. Without a display it runs on a virtual one and
leaves a screenshot.

  --content PATH   a Qt help project (.qhp) or a folder of HTML pages; may be repeated. Without it the
                   viewer opens its own manual.
  --title TEXT     title of the contents made from --content
  --language TAG   language of the help, such as en-US (the default) or zh-CN
  --topic KEY      topic to open first
  --online         show the same help as a web site too, served on this machine while the viewer runs
  --help           this text
TEXT
}

language=en-US
topic=
title=
online=
contents=
# A newline between paths keeps blanks in them whole.
while [ $# -gt 0 ]; do
    case $1 in
    --help | -h)
        usage
        exit 0
        ;;
    --online)
        online=yes
        shift
        ;;
    --content | --title | --language | --topic)
        if [ $# -lt 2 ]; then
            echo "run.sh: $1 needs a value" >&2
            exit 2
        fi
        case $1 in
        --content) contents="$contents$2
" ;;
        --title) title=$2 ;;
        --language) language=$2 ;;
        --topic) topic=$2 ;;
        esac
        shift 2
        ;;
    *)
        echo "run.sh: unknown option $1" >&2
        usage >&2
        exit 2
        ;;
    esac
done

scripts/packages.sh build
cmake --preset release >/dev/null
cmake --build --preset release

program=build/release/bin
if [ -n "$contents$online" ]; then
    # The viewer finds its help beside itself, so other content gets a copy of the program.
    program=build/content/$(printf %s "$contents$online" | cksum | cut -d' ' -f1)
    mkdir -p "$program"
    cp build/release/bin/YxHelp build/release/bin/libYxOnlineHelpApi.so "$program"
    for folder in build/release/bin/*/; do
        for catalogue in "$folder"*.qm; do
            [ -e "$catalogue" ] || continue
            mkdir -p "$program/$(basename "$folder")"
            cp "$catalogue" "$program/$(basename "$folder")/"
        done
    done
    if [ -z "$contents" ]; then
        contents="build/release/samples/manual/$language
"
        [ -n "$title" ] || title="Help Viewer Manual"
    fi
    set -- --language "$language"
    [ -z "$title" ] || set -- "$@" --title "$title"
    old_ifs=$IFS
    IFS='
'
    for path in $contents; do
        set -- "$@" --input "$path"
    done
    IFS=$old_ifs
    if [ -n "$online" ]; then
        build/release/bin/yxhelp-build "$@" --site "$program/site"
        # The product names the service's address, so the service comes first.
        build/release/bin/yxhelp-service --site "$program/site" >"$program/service.log" &
        service=$!
        trap 'kill "$service" 2>/dev/null || true' EXIT
        trap 'exit 1' HUP INT TERM
        until site=$(sed -n '1s/ *$//p' "$program/service.log") && [ -n "$site" ]; do
            if ! kill -0 "$service" 2>/dev/null; then
                echo "run.sh: the web site can't be served" >&2
                exit 1
            fi
            sleep 0.1
        done
        sed -e 's/^Group=.*/Group=3/' -e "s|^\\[YxHelp\\]|&\\
DefaultURL=$site\\
AbroadURL=$site\\
HelpmanagerUrl=${site}address\\
HelpmanagerAbroadUrl=${site}address|" samples/product/en-US/YxHelp.ini >"$program/YxHelp.ini"
        set -- "$@" --product "$program/YxHelp.ini"
    fi
    build/release/bin/yxhelp-build "$@" --output "$program"
fi

set -- /Language "$language"
# A viewer that is open on other content has another title, so this launch isn't handed over to it.
[ "$program" = build/release/bin ] || set -- "$@" /helpTitle "run-$(basename "$program")"
[ -z "$topic" ] || set -- "$@" /Topic "$topic"
# Not in place of this script, which ends the service.
scripts/show.sh "$program/YxHelp" "$@"
