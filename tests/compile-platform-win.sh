#!/bin/sh
# The Windows unit is compiled here too, so that a change made on Linux can't break it unseen.
set -eu
compiler=${MINGW_CXX:-x86_64-w64-mingw32-g++}
if ! command -v "$compiler" >/dev/null; then
    echo "skipped: $compiler is missing; ./test.sh installs it"
    exit 77
fi
source=$(dirname "$0")/../src/platform_win.cpp
"$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Werror -c "$source" -o "${TMPDIR:-/tmp}/platform_win.o"
