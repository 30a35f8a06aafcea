#!/bin/sh
# A test that waits for a time instead of for an event is slow on a fast machine and red on a slow one.
cd "$(dirname "$0")"
if grep -nE 'qWait\(|qSleep\(|sleep_for|sleep_until|QThread::[mu]?sleep' ./*.cpp support/*.cpp; then
    echo "bare waits in tests; use QTRY_ macros or signal spies" >&2
    exit 1
fi
