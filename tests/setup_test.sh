#!/bin/sh
# Where nothing is installed, scripts/setup tells somebody without root and sudo in one line what root has to do; it
# installs nothing. Where all is there it says nothing.
# usage: setup_test.sh SETUP
set -eu
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
expect() { [ "$2" = "$3" ] || { echo "$1: '$2' instead of '$3'" >&2; exit 1; }; }

# A machine of which only this is seen.
program() { printf '#!/bin/sh\n%s\n' "$2" >"$folder/$1" && chmod +x "$folder/$1"; }
ln -s "$(command -v grep)" "$folder/grep"
program id 'echo 1000'
program apt-get 'echo installs >&2'
program dpkg '[ "$1" != --print-architecture ] || echo amd64'
program dpkg-query 'exit 1'

status=0
PATH=$folder /bin/sh "$1" 2>"$folder/said" || status=$?
expect status $status 1
expect lines "$(wc -l <"$folder/said")" 1
case $(cat "$folder/said") in
"setup: neither root nor sudo here; as root: dpkg --add-architecture i386 && apt-get update && apt-get install g++ cmake make "*\
*" libcjson-dev "*" libcjson-dev:i386 "*) ;;
*) echo "setup says: $(cat "$folder/said")" >&2; exit 1 ;;
esac

program dpkg-query 'echo install ok installed'
expect 'with all there' "$(PATH=$folder /bin/sh "$1" 2>&1)" ''
