#!/bin/sh
# The tap loaded into a program that knows nothing of it: its trace, and what it says of a wrong setting.
# usage: preload_test.sh TAP PROGRAM OUTPUT-OF-PROGRAM
set -eu
tap=$1 program=$2 output=$3
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT

# The program prints the lines of its calls itself, set in by two blanks, but not those of its start.
LD_PRELOAD=$tap TESSEL_TAP=trace:$folder/trace-%p "$program" | diff -u "$output" -
sed '1,/^bf_drv_client_register_callbacks/d' "$folder"/trace-* >"$folder/after"
sed -n 's/^  //p' "$output" | diff -u - "$folder/after"

LD_PRELOAD=$tap TESSEL_TAP=trase "$program" 2>"$folder/error" | diff -u "$output" -
echo 'libtessel_tap: TESSEL_TAP: "trase": is neither trace, record nor fail, nor an option such as size=64M' |
    diff -u - "$folder/error"
