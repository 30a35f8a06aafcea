#!/bin/sh
# Installs what is missing, builds and runs every test.
#   ./test.sh [dev|asan|tsan] [CTEST-OPTION...]
set -eu
cd "$(dirname "$0")"

preset=dev
case ${1:-} in
dev | asan | tsan)
    preset=$1
    shift
    ;;
esac

scripts/packages.sh build test
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)" "$@"
