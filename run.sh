#!/bin/sh
# Builds the viewer and opens it on its own manual, or on documentation of your choice.
set -eu
cd "$(dirname "$0")"

usage() {
    cat <<'TEXT'
./run.sh [--content PATH]... [--title TEXT] [--language TAG] [--topic KEY]

Installs what is missing, builds, and opens the viewer. Without a display it runs on a virtual one and
leaves a screenshot.

  --content PATH   a Qt help project (.qhp) or a folder of HTML pages; may be repeated. Without it the
                   viewer opens its own manual.
  --title TEXT     title of the contents made from --content
  --language TAG   language of the help, such as en-US (the default) or zh-CN
  --topic KEY      topic to open first
  --help           this text
TEXT
}

language=en-US
topic=
title=
contents=
# A newline between paths keeps blanks in them whole.
while [ $# -gt 0 ]; do
    case $1 in
    --help | -h)
        usage
        exit 0
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
if [ -n "$contents" ]; then
    # The viewer finds its help beside itself, so other content gets a copy of the program.
    program=build/content/$(printf %s "$contents" | cksum | cut -d' ' -f1)
    mkdir -p "$program"
    cp build/release/bin/YxHelp "$program/YxHelp"
    for folder in build/release/bin/*/; do
        for catalogue in "$folder"*.qm; do
            [ -e "$catalogue" ] || continue
            mkdir -p "$program/$(basename "$folder")"
            cp "$catalogue" "$program/$(basename "$folder")/"
        done
    done
    set -- --output "$program" --language "$language"
    [ -z "$title" ] || set -- "$@" --title "$title"
    old_ifs=$IFS
    IFS='
'
    for path in $contents; do
        set -- "$@" --input "$path"
    done
    IFS=$old_ifs
    build/release/bin/yxhelp-build "$@"
fi

set -- /Language "$language"
[ -z "$topic" ] || set -- "$@" /Topic "$topic"
exec scripts/show.sh "$program/YxHelp" "$@"
