#!/bin/sh
# What is installed is what the golden list says. It works, and still does after the folder has moved: the shell with
# its own libraries, its completion and the generator, and programs that are built against headers and libraries.
# usage: install_test.sh CMAKE BUILD VERSION CC C_FLAGS CXX CXX_FLAGS
# With TS_RENEW set the list is written anew.
set -eu
cmake=$1 build=$2 version=$3
here=$(cd "$(dirname "$0")" && pwd)
list=$here/goldens/installed_files.txt
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
expect() { [ "$2" = "$3" ] || { echo "$1: '$2' instead of '$3'" >&2; exit 1; }; }

for component in libraries development tools documentation; do
    "$cmake" --install "$build" --prefix "$folder/installed/$component" --component $component >/dev/null
done
(cd "$folder/installed" && find . ! -type d) | LC_ALL=C sort |
    sed -E -e "s|^\./||; s|/lib/[^/]*-linux-gnu[^/]*/|/lib/|; s|$version|VERSION|; s|-(debug\|release)\.cmake|-CONFIG.cmake|" \
        -e 's|/[a-z_]*\.mustache|/*.mustache|; s|/browse/[a-z_]*\.[a-z]*$|/browse/*|' | LC_ALL=C sort -u >"$folder/list"
[ -z "${TS_RENEW-}" ] || cp "$folder/list" "$list"
diff -u "$list" "$folder/list" || { echo "TS_RENEW=1 takes the list over, if that is meant" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/moved"
shell=$folder/moved/bin/tessel-shell
libraries=$(dirname "$(find "$folder/moved" -name libtessel_model.so)")

expect version "$("$shell" --version)" "tessel-shell $version"
printf '%s\n' 'add nextHop0 nextHop=7 : setNextHopDetails dmac=00:11:22:33:44:55 domain=20' 'find nextHop0 nextHop=7' \
    >"$folder/two_lines.tsl"
expect 'two lines' "$("$shell" "$folder/two_lines.tsl")" 'entry 1'
"$folder/moved/bin/pdgen" check "$folder/moved/share/tessel_switch/catalogue"

# The shell's own libraries, by their versioned names, are the installed ones.
for name in libts_bf_pd_nat_static libtessel_tap libtessel_model; do
    loaded=$(ldd "$shell" | sed -n "s|.*=> \(.*/$name\.so[^ ]*\) .*|\1|p")
    expect "$name" "$(readlink -f "$loaded")" "$(readlink -f "$libraries/$name.so.$version")"
    expect "soname of $name" "$(basename "$loaded")" "$name.so.0"
done

# Completion knows the long options that --help tells of, and no others.
for words in '' explain replay; do
    told=$("$shell" $words --help | grep -oE '^ +(-., )?--[a-z-]+' | grep -oE -- '--.*' | sort)
    completed=$(bash -c '. "$1"; COMP_WORDS=(tessel-shell $2 --) COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tessel_shell
        printf "%s\n" "${COMPREPLY[@]}"' bash "$folder/moved/share/bash-completion/completions/tessel-shell" "$words" |
        sort)
    expect "options of 'tessel-shell $words'" "$completed" "$told"
done

# A compiler and its flags are lists of words.
CFLAGS=$5 CXXFLAGS=$7 "$here/consumer/run.sh" "$cmake" "$4" "$6" "$folder/moved"
