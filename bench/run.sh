#!/bin/sh
# Builds the benchmarks and runs them all, on a screen, home and settings of their own. The figures are printed
# and kept in build/bench/report.txt. Installs nothing.
set -eu
cd "$(dirname "$0")/.."
build=build/bench
programs=$build/bench
qtmanual=$build/qtmanual
language=en-US

# The same manual as files of the help library, with commas between them.
compressed=
if command -v qmake >/dev/null; then
    for project in "$(qmake -query QT_INSTALL_DOCS)"/*/*.qhp; do
        file=$(qmake -query QT_INSTALL_DOCS)/$(basename "$project" .qhp).qch
        [ ! -e "$file" ] || compressed="${compressed:+$compressed,}$file"
    done
fi

measure() {
    export QT_LOGGING_RULES='yxhelp.*.debug=false'
    painted() { # name, folder, topic key
        "$programs/paintprobe" "$build/bin/YxHelp" "$programs/bareview" 15 "$1" "$2" "$language" ${3:+"$3"}
    }
    echo
    echo '1. Process start to painted page, in the viewer and in a bare web view'
    painted 'Manual of the viewer' "$build/bin"
    painted 'Qt manual' "$qtmanual"
    painted 'Qt manual, start topic QWidget' "$qtmanual" QWidget
    echo
    echo '2. Contents list and tree'
    "$programs/contents" "$build/bin" "$language"
    echo
    echo '3. Making the finished page'
    "$programs/pages" 'Qt manual' "$qtmanual" "$language"
    echo
    echo '4. Searching and stopping, without a window'
    "$programs/search" 'Qt manual' "$qtmanual" "$language" widget the signal widget.
    "$programs/search"
    echo
    echo '5. Searching in the viewer and in the help library of Qt'
    if [ -x "$programs/helplibrary" ] && [ -n "$compressed" ]; then
        "$programs/helplibrary" 'Qt manual' "$qtmanual" "$language" "$compressed" widget the signal
    else
        echo 'Not measured: the library or its files are missing'
    fi
    echo
    echo '6. Memory of keyword index and hits'
    "$programs/memory" 'Qt manual' "$qtmanual" "$language" the
    "$programs/memory"
    echo
    echo '7. Search and keyword index in the window'
    "$programs/searchwindow" "$build/bin" "$language" 'Qt manual' "$qtmanual" widget the signal
    echo
    echo '8. A launch that hands over to the running viewer'
    "$programs/handover" "$build/bin/YxHelp" "$programs/emptylaunch" 40 'Manual of the viewer' "$build/bin" \
        "$language" 20-moving index
    "$programs/handover" "$build/bin/YxHelp" "$programs/emptylaunch" 40 'Qt manual' "$qtmanual" \
        "$language" QWidget QLabel
}

if [ "${1:-}" = --measure ]; then
    measure
    exit
fi

missing=
for tool in cmake ninja c++ pkg-config qmake Xvfb openbox; do
    command -v $tool >/dev/null || missing="$missing $tool"
done
projects=
if command -v qmake >/dev/null; then
    for project in "$(qmake -query QT_INSTALL_DOCS)"/*/*.qhp; do
        [ ! -e "$project" ] || projects="$projects --input $project"
    done
    [ -n "$projects" ] || missing="$missing qtbase5-doc-html"
fi
if [ -n "$missing" ]; then
    echo "Missing:$missing" >&2
    echo '"scripts/packages.sh build content" installs what the benchmarks need' >&2
    exit 1
fi

cmake --preset release -B $build -DYXHELP_BENCH=ON >/dev/null
cmake --build $build
# shellcheck disable=SC2086
$build/bin/yxhelp-build $projects --output $qtmanual --language $language --title 'Qt 5.15 Manual' 2>$build/qtmanual.log

rm -f $build/complete
{
    echo "bench/run.sh, $(date -u +%Y-%m-%d), version $(git describe --always --dirty 2>/dev/null || echo unknown)"
    echo "$(nproc) processors, $(uname -sm), Qt $(qmake -query QT_VERSION), load $(cut -d' ' -f1 /proc/loadavg) before"
    tests/support/run-isolated.sh --gui bench/run.sh --measure && : >$build/complete
} | tee $build/report.txt
[ -e $build/complete ]
