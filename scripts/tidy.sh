#!/bin/sh
# Runs clang-tidy over the sources of a configured build.
#   tidy.sh [BUILD-DIRECTORY] [FILE-PATTERN]
set -eu
cd "$(dirname "$0")/.."
build=${1:-build/dev}
pattern=${2:-/(src|onlinehelpapi|tools|tests|bench)/[^/]*\.cpp$}
run-clang-tidy -quiet -p "$build" "$pattern"
