#!/bin/sh
# Installs the Debian packages that are missing, and says nothing when none is.
#   packages.sh build [test] [content] [fuzz]
set -eu

build='g++ cmake ninja-build pkg-config qtbase5-dev qtbase5-dev-tools qtwebengine5-dev qttools5-dev
    qttools5-dev-tools qttranslations5-l10n libqt5sql5-sqlite libxcb1-dev libgumbo-dev libcpp-httplib-dev libcurl4-openssl-dev
    nlohmann-json3-dev fonts-dejavu-core fonts-noto-cjk
    xvfb openbox xdotool imagemagick x11-utils'
test='g++-mingw-w64-x86-64 clang-format sqlite3 nginx-light x11-utils util-linux'
content='qtbase5-doc-html qtbase5-doc kicad-doc-en kicad-doc-zh'
fuzz='clang libclang-rt-dev'

wanted=
for group in "$@"; do
    case $group in
    build) wanted="$wanted $build" ;;
    test) wanted="$wanted $test" ;;
    content) wanted="$wanted $content" ;;
    fuzz) wanted="$wanted $fuzz" ;;
    *)
        echo "packages.sh: no group '$group'" >&2
        exit 2
        ;;
    esac
done

missing=
for package in $wanted; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if ! command -v apt-get >/dev/null; then
    echo "These packages are missing, and this system has no apt-get:$missing" >&2
    exit 1
fi
as_root=
if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing; have an administrator install them:$missing" >&2
        exit 1
    fi
    as_root=sudo
fi
echo "Installing:$missing"
$as_root apt-get update -qq
# shellcheck disable=SC2086
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
