#!/bin/sh
# The manual shows the text of the example host in all its languages.
set -eu
cd "$(dirname "$0")/.."
for page in samples/manual/*-*/20-hosts/30-handover.html; do
    sed -n '/^<pre><code>\/\/ /,/<\/code><\/pre>$/p' "$page" |
        sed -e 's/^<pre><code>//' -e 's/<\/code><\/pre>$//' -e 's/&lt;/</g' -e 's/&gt;/>/g' -e 's/&amp;/\&/g' |
        diff - samples/host/helphost.cpp || {
        echo "$page differs from samples/host/helphost.cpp" >&2
        exit 1
    }
done
