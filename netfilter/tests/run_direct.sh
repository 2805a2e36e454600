#!/bin/sh
# Runs a test program without the cross-compiling emulator (which does not
# pass the x_tables socket options on), on the kernel's 32-bit compat layer;
# exits 77 (skipped) when this kernel cannot run the program at all.
if ! "$1" --gtest_list_tests >/dev/null 2>&1; then
  echo "skipped: this kernel does not run $1 directly"
  exit 77
fi
exec "$@"
