#!/bin/sh
# The tap loaded into a program that knows nothing of it: its trace, and what it says of a wrong setting.
# usage: preload_test.sh TAP PROGRAM OUTPUT-OF-PROGRAM TRACE
set -eu
tap=$1 program=$2 output=$3 trace=$4
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT

LD_PRELOAD=$tap TESSEL_TAP=trace:$folder/trace-%p "$program" | diff -u "$output" -
diff -u "$trace" "$folder"/trace-*

LD_PRELOAD=$tap TESSEL_TAP=trase "$program" 2>"$folder/error" | diff -u "$output" -
echo 'libtessel_tap: TESSEL_TAP: "trase": is neither trace, record nor fail, nor an option such as size=64M' |
    diff -u - "$folder/error"
