#!/bin/sh
# Feeds the online address library with arguments and answers at random, under the sanitizers. What it learned
# stays in build/fuzz/corpus; an input that fails is left in build/fuzz.
#   fuzz.sh [SECONDS]
set -eu
cd "$(dirname "$0")/.."
seconds=${1:-60}
scripts/packages.sh build fuzz
cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DYXHELP_WERROR=ON -DYXHELP_TESTS=OFF -DYXHELP_FUZZ=ON >/dev/null
cmake --build build/fuzz --target fuzz_onlinehelpapi

cd build/fuzz
mkdir -p corpus
# Each begins with "?" or a letter beyond ASCII: a buffer of 512 bytes, with and without a path.
printf '?0http://a/?x#y\0YXCAD\0002026\0zh-CN\0INTRO\0Doc/a b.htm\0{"address": "https://b/\\u5e2e?x=1"}' >corpus/seed1
printf '\3770https://m/\0P\0001\0l\0\0\0{"address": "http://b/", "x": [1, 2.5e3, true, null, {"y": "z"}]}' >corpus/seed2
printf '?\377http://u:p@[::1]:80/%%41\0&\0=\0%%\0#\0+\0[]' >corpus/seed3
cat >words <<'WORDS'
"{\"address\": \"http://"
"\"address\""
"https://"
"\\u0000"
"\\ud83d\\ude00"
"\xc2\x85"
"\x00"
WORDS
exec bin/fuzz_onlinehelpapi -max_total_time="$seconds" -jobs=0 -max_len=8192 -timeout=10 -dict=words corpus
