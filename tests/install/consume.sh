#!/usr/bin/env bash
# Builds and runs the two consumer programs of tests/install/consumer against
# an installed ipacl under PREFIX, four ways: through pkg-config and through
# the CMake package, each with the shared and with the static libraries.
#   consume.sh PREFIX WORK_DIR
set -euo pipefail
prefix=$(realpath "$1")
work=$2
src=$(cd "$(dirname "$0")/consumer" && pwd)
rm -rf "$work" && mkdir -p "$work"

pcdir=$(dirname "$(find "$prefix" -name ipacl-platform-host.pc | head -1)")
libdir=$(dirname "$pcdir")
export PKG_CONFIG_PATH=$pcdir
cc=${CC:-cc}

run() {  # run NAME PROGRAM: runs a built consumer, with the prefix's libraries
    echo "-- $1: $(LD_LIBRARY_PATH=$libdir "$2")"
}

for prog in lib_only main; do
    # As a user types it; --as-needed first, as several distributions do.
    $cc -Wl,--as-needed "$src/$prog.c" -o "$work/pc_shared_$prog" \
        $(pkg-config --cflags --libs ipacl-platform-host)
    run "pkg-config shared $prog" "$work/pc_shared_$prog"
    $cc -static "$src/$prog.c" -o "$work/pc_static_$prog" \
        $(pkg-config --static --cflags --libs ipacl-platform-host)
    run "pkg-config static $prog" "$work/pc_static_$prog"
done

for kind in shared static; do
    static=OFF
    [ "$kind" = static ] && static=ON
    cmake -S "$src" -B "$work/cmake_$kind" -DCMAKE_PREFIX_PATH="$prefix" \
        -DIPACL_STATIC=$static >/dev/null
    cmake --build "$work/cmake_$kind" >/dev/null
    run "CMake package $kind lib_only" "$work/cmake_$kind/lib_only"
    run "CMake package $kind main" "$work/cmake_$kind/consumer"
done
