#!/usr/bin/env bash
# Builds the Debian packages of a configured and built tree (cpack -G DEB),
# checks what each holds and what it depends on, unpacks them into a scratch
# directory and builds and runs the consumers against the unpacked files.
#   tests/package/check.sh BUILD_DIR
set -euo pipefail
build=$(realpath "$1")
here=$(cd "$(dirname "$0")" && pwd)
work=$build/package-test
rm -rf "$work" && mkdir -p "$work"

echo "== cpack -G DEB"
(cd "$build" && cpack -G DEB -B "$work/out" >/dev/null)
deb() { ls "$work"/out/"$1"_*.deb; }
status=0
fail() { echo "FAIL: $*"; status=1; }

# has PACKAGE PATTERN...: each pattern names at least one path in the package.
has() {
    local pkg=$1; shift
    local list
    list=$(dpkg-deb -c "$(deb "$pkg")" | awk '{print $6}')
    for pattern in "$@"; do
        grep -Eq -- "$pattern" <<<"$list" || fail "$pkg lacks $pattern"
    done
}
# lacks PACKAGE PATTERN...: no path of the package matches.
lacks() {
    local pkg=$1; shift
    local list
    list=$(dpkg-deb -c "$(deb "$pkg")" | awk '{print $6}')
    for pattern in "$@"; do
        ! grep -Eq -- "$pattern" <<<"$list" || fail "$pkg holds $pattern"
    done
}
# depends PACKAGE PATTERN...: its Depends field names each.
depends() {
    local pkg=$1; shift
    local field
    field=$(dpkg-deb -f "$(deb "$pkg")" Depends)
    echo "$pkg depends on: $field"
    for pattern in "$@"; do
        grep -Eq -- "$pattern" <<<"$field" || fail "$pkg does not depend on $pattern"
    done
}

has libipacl1 'lib/libipacl\.so\.1$' 'lib/libipacl\.so\.1\.[0-9.]+$' \
    'lib/libipacl_platform_host\.so\.1$' 'share/doc/ipacl/LICENSE$'
lacks libipacl1 '\.a$' '\.so$' '/include/' '/bin/'
has libipacl-dev 'include/ipacl/ipacl\.h$' 'include/ipacl/version\.h$' 'include/ipacl/ipacl_host\.h$' \
    'lib/libipacl\.so$' 'lib/libipacl\.a$' 'lib/libipacl_platform_host\.a$' \
    'lib/cmake/ipacl/ipaclConfig\.cmake$' 'lib/pkgconfig/ipacl-platform-host\.pc$' 'man3/ipacl\.3'
lacks libipacl-dev '\.so\.1' '/bin/'
has ipacl 'usr/bin/ipacl$' 'man1/ipacl\.1'
lacks ipacl '/lib/' '/include/'
# A netfilter library, where the tree builds one, ships beside the others.
if [ -n "$(find "$build" -name 'libipacl_netfilter.so.1*' -print -quit)" ]; then
    has libipacl1 'lib/libipacl_netfilter\.so\.1'
    has libipacl-dev 'lib/libipacl_netfilter\.so$'
fi

depends libipacl1 'libc6'
depends libipacl-dev 'libipacl1 \(= '
depends ipacl 'libc6' 'libstdc\+\+6'
info=$(dpkg-deb -I "$(deb libipacl1)")
grep -q ' shlibs ' <<<"$info" || fail "libipacl1 declares no shlibs"

echo "== dpkg-deb -x into $work/root"
for d in "$work"/out/*.deb; do dpkg-deb -x "$d" "$work/root"; done
bash "$here/../install/consume.sh" "$work/root/usr" "$work/consumers"
echo "-- unpacked ipacl --version: $("$work/root/usr/bin/ipacl" --version)"
MANPATH=$work/root/usr/share/man man -w ipacl >/dev/null || fail "man finds no ipacl page"
man -l "$work/root/usr/share/man/man1/ipacl.1"* >/dev/null || fail "ipacl.1 does not format"
man -l "$work/root/usr/share/man/man3/ipacl.3"* >/dev/null || fail "ipacl.3 does not format"

[ $status -eq 0 ] && echo "packages: ok"
exit $status
