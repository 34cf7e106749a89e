#!/bin/sh
# Texts of the public headers that hang on numbers, and: every header compiles alone, as the first line of a program
# with short types of its own, with all warnings as errors: the public ones as C99, C11, C++11 and C++20, those of the
# driver as C11 and C++20.
# usage: headers_test.sh CC C_FLAGS CXX CXX_FLAGS PUBLIC_DIRECTORY GENERATED_DIRECTORY DRIVER_DIRECTORY HEADER...
set -eu
cc=$1 c_flags=$2 cxx=$3 cxx_flags=$4 public=$5 generated=$6/include driver=$7 operations=$6/driver
shift 7
tried=0 wrong=0

# alone HEADER STANDARD
alone() {
    case $2 in
    *++*) compiler="$cxx $cxx_flags -x c++" ;;
    *) compiler="$cc $c_flags -x c" ;;
    esac
    tried=$((tried + 1))
    # The compiler and its flags are lists of words.
    if ! printf '#include "%s"\ntypedef struct own { int its; } u8, u16, u32, u64;\n' "$1" | $compiler -std="$2" -fsyntax-only -Wall -Wextra -Wpedantic -Werror \
        -I "$public" -I "$generated" -I "$driver" -I "$operations" -; then
        echo "$1 does not compile alone as $2" >&2
        wrong=$((wrong + 1))
    fi
}

for header in "$public"/*.h "$generated"/*.h "$@"; do
    for standard in c99 c11 c++11 c++20; do
        alone "$header" $standard
    done
done
for header in "$driver"/*.h "$operations"/*.h; do
    for standard in c11 c++20; do
        alone "$header" $standard
    done
done

# says COUNT TEXT: how many lines of the generated headers have it.
says() {
    found=$(cat "$generated"/*.h | grep -cF -- "$2" || true)
    [ "$found" -eq "$1" ] || { echo "'$2' stands in $found lines instead of $1" >&2; wrong=$((wrong + 1)); }
}
says 138 '/**< 1 bit,'
says 3 'the index is 65535 without any resource'

echo "$tried compilations, $wrong wrong"
[ "$tried" -ge 100 ] && [ "$wrong" -eq 0 ]
