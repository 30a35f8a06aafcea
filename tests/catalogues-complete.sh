#!/bin/sh
# Fails when a text of the sources has no finished translation in one of the catalogues.
#   catalogues-complete.sh [ROOT]
set -eu
root=${1:-$(dirname "$0")/..}
if ! lupdate -version >/dev/null 2>&1; then
    echo "lupdate is missing (Debian: qttools5-dev-tools)" >&2
    exit 77
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM

# It writes into the catalogues that it is given, so they are copies. A text that is new to a catalogue is added
# as unfinished. Without the heuristics: a translation that some other text has is a guess.
update() {
    if ! lupdate -silent -locations none -no-ui-lines \
        -disable-heuristic sametext -disable-heuristic similartext -disable-heuristic number \
        "$root/src" -ts "$@" >"$work/log" 2>&1; then
        cat "$work/log" >&2
        exit 1
    fi
}

# Where no text is found at all, every catalogue would look complete.
update "$work/texts.ts"
if ! grep -q '<source>' "$work/texts.ts"; then
    echo "lupdate finds no texts in $root/src" >&2
    exit 1
fi

mkdir "$work/language"
cp "$root"/language/YxHelp_*.ts "$work/language"
update "$work"/language/*.ts

incomplete=no
for catalogue in "$work"/language/*.ts; do
    texts=$(awk '
        /<message/ { text = ""; reading = 0 }
        /<source>/ { reading = 1 }
        reading { text = text $0 " " }
        /<\/source>/ { reading = 0 }
        /<translation[^>]*type="unfinished"/ || /<translation><\/translation>/ { print text }
        ' "$catalogue" | sed 's/ *<\/*source> */ /g')
    if [ -n "$texts" ]; then
        echo "language/$(basename "$catalogue") lacks:" >&2
        printf '%s\n' "$texts" >&2
        incomplete=yes
    fi
done
[ $incomplete = no ]
