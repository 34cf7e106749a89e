#!/bin/sh
# What is installed to an empty folder works there, and still does after the folder has moved: the shell with its own
# libraries, and a program that is built against headers and libraries.
# usage: install_test.sh CMAKE BUILD VERSION COMPILER_AND_FLAGS
set -eu
cmake=$1 build=$2 version=$3 compiler=$4
tests=$(dirname "$0")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
expect() { [ "$2" = "$3" ] || { echo "$1: '$2' instead of '$3'" >&2; exit 1; }; }

"$cmake" --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/moved"
shell=$folder/moved/bin/tessel-shell
libraries=$(dirname "$(find "$folder" -name libtessel_model.so)")

expect version "$("$shell" --version)" "tessel-shell $version"
printf '%s\n' 'add nextHop0 nextHop=7 : setNextHopDetails dmac=00:11:22:33:44:55 domain=20' 'find nextHop0 nextHop=7' \
    >"$folder/two_lines.tsl"
expect 'two lines' "$("$shell" "$folder/two_lines.tsl")" 'entry 1'

# The shell's own libraries, by their versioned names, are the installed ones.
for name in libts_bf_pd_nat_static libtessel_tap libtessel_model; do
    loaded=$(ldd "$shell" | sed -n "s|.*=> \(.*/$name\.so[^ ]*\) .*|\1|p")
    expect "$name" "$(readlink -f "$loaded")" "$(readlink -f "$libraries/$name.so.$version")"
    expect "soname of $name" "$(basename "$loaded")" "$name.so.${version%%.*}"
done

# The compiler and its flags are a list of words.
$compiler "$tests/first_program.c" -I "$folder"/moved/include/tessel_switch -L "$libraries" -Wl,-rpath,"$libraries" \
    -lts_bf_pd_nat_static -ltessel_model -o "$folder/first_program"
"$folder/first_program" | diff -u "$tests/goldens/first_program.txt" -
