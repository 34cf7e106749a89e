#!/bin/sh
# Programs in C and C++ that are built against what is installed below a folder: with CMake, pkg-config, and neither.
# What the compilers need besides stands in CFLAGS, CXXFLAGS and LDFLAGS.
# usage: run.sh CMAKE CC CXX PREFIX
set -eu
cmake=$1 CC=$2 CXX=$3 prefix=$4
export CC CXX
here=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
libraries=$(dirname "$(find "$prefix" -name libtessel_model.so)")
export PKG_CONFIG_PATH="$libraries/pkgconfig" LD_LIBRARY_PATH="$libraries"

# run HOW: the two programs in the folder say what they should.
run() {
    "$folder/first_program" | diff -u "$here/../goldens/first_program.txt" - || { echo "$1: first_program" >&2; exit 1; }
    says=$("$folder/consumer")
    [ "$says" = 'status 0, entry 1, 1 calls' ] || { echo "$1: consumer says '$says'" >&2; exit 1; }
    rm "$folder/first_program" "$folder/consumer"
}

# compile C-FLAGS-AND-LIBRARIES TAP: both programs, the second with the tap before the model. Words are lists.
compile() {
    $CC ${CFLAGS-} "$here/../first_program.c" ${LDFLAGS-} $1 -o "$folder/first_program"
    $CXX ${CXXFLAGS-} -std=c++11 "$here/consumer.cc" ${LDFLAGS-} -Wl,--no-as-needed $2 $1 -o "$folder/consumer"
}

"$cmake" -S "$here" -B "$folder/build" -DCMAKE_PREFIX_PATH="$prefix" >"$folder/log" 2>&1 &&
    "$cmake" --build "$folder/build" >>"$folder/log" 2>&1 || { cat "$folder/log" >&2; exit 1; }
mv "$folder/build/first_program" "$folder/build/consumer" "$folder"
run CMake

compile "$(pkg-config --cflags --libs ts_bf_pd_nat_static tessel_model)" "$(pkg-config --libs tessel_tap)"
run pkg-config

compile "-I$prefix/include/tessel_switch -L$libraries -Wl,--as-needed -lts_bf_pd_nat_static -ltessel_model" \
    "-L$libraries -ltessel_tap"
run 'the compiler alone'
