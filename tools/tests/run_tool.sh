# Sourced by the program's shell tests after `set -u`: the program under test
# ($1) and the emulator to run it under (IPACL_RUN, as in the i386 build), a
# scratch directory removed on exit, and the failure count kept by fail.
tool=$1
run=${IPACL_RUN:-}
failures=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
