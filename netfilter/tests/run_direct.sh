#!/bin/sh
# Runs a test program directly, without the cross-compiling emulator: an
# i386 build on a 64-bit kernel then talks to the kernel's compat layer,
# which the emulator does not pass the x_tables socket options on to.
# Exits 77 (skipped) when this kernel cannot run the program at all.
if ! "$1" --gtest_list_tests >/dev/null 2>&1; then
  echo "skipped: this kernel does not run $1 directly"
  exit 77
fi
exec "$@"
