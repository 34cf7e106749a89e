#!/bin/sh
# The control plane of the examples, with the shell attached: learns, forgets, is restarted, ends.
# usage: control_plane_test.sh CONTROL-PLANE SHELL EXAMPLE-FOLDER
set -eu
program=$1 shell=$2 example=$3
folder=$(mktemp -d)
trap 'kill "$process" 2>/dev/null || true; rm -r "$folder"' EXIT
socket=$folder/socket

expect() {
    [ "$2" = "$1" ] || { echo "expected: $1"; echo "got: $2"; exit 1; }
}
told() {
    read -r line <&3
    expect "$1" "$line"
}
ask() {
    "$shell" --attach "$socket" -c "$1"
}

mkfifo "$folder/output"
"$program" "$example/switch.conf" "$socket" >"$folder/output" &
process=$!
exec 3<"$folder/output"
told ready
"$shell" --attach "$socket" "$example/look.tsl" >"$folder/look"
grep -q '^entry 4: setNextHop nextHop=7 (the longest of 3 matching prefixes' "$folder/look"
expect '       2  l2LearningLookup' "$(ask 'count l2LearningLookup')"

# One station stays silent, and is forgotten behind the restart that still finds it.
ask 'clock 200'
ask 'lookup l2LearningLookup smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=0x40003 packets=1' >"$folder/hit"
kill -HUP "$process"
told 'restarted, stations: 2'
ask 'clock 150'
kill -HUP "$process"
told 'restarted, stations: 2'
kill -HUP "$process"
told 'restarted, stations: 1'

# Files are the client's, and what it says of bad lines is as without a process.
cd "$folder"
ask 'save ports.tsl ingressPortMapping'
printf 'delete ingressPortMapping 1\nload ports.tsl\n' | "$shell" --attach "$socket" --keep-going 2>error || status=$?
expect 1 "${status-0}"
expect 'ports.tsl:4:1: the driver refused: already exists (status 5)' "$(sed -n 1p error)"
expect '       3  ingressPortMapping' "$(ask 'count ingressPortMapping')"

expect 'added: 0, modified: 0, deleted: 0, the same: 4' "$(ask 'load --replace ports.tsl')"
ask 'delete ingressPortMapping 2'
expect 'added: 1, modified: 0, deleted: 0, the same: 3' "$(ask 'diff ports.tsl' | sed -n 2p)"
expect 'added: 1, modified: 0, deleted: 0, the same: 3' "$(ask 'load ports.tsl --replace')"

kill "$process"
wait "$process"
[ ! -e "$socket" ]
