#!/bin/sh
# Builds the benchmarks and runs them all, on a screen, home and settings of their own. The figures are printed
# and kept in build/bench/report.txt. Installs nothing.
set -eu
cd "$(dirname "$0")/.."
build=build/bench
programs=$build/bench
qtmanual=$build/qtmanual
language=en-US

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
