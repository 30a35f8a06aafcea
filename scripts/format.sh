#!/bin/sh
# Formats the C++ sources, or with --check only tells which ones differ.
set -eu
cd "$(dirname "$0")/.."
if ! command -v clang-format >/dev/null; then
    echo "clang-format is missing" >&2
    exit 77
fi
mode=-i
[ "${1:-}" = --check ] && mode='--dry-run --Werror'
# shellcheck disable=SC2086
find src tools tests bench onlinehelpapi samples -name '*.cpp' -o -name '*.h' 2>/dev/null | xargs clang-format $mode
