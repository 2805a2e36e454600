#!/usr/bin/env bash
# `ipacl ipt` as a user runs it, in private network namespaces: a caller
# without the right to change the kernel's tables, files that cannot be
# read or applied, apply and show.  Usage: ipt_test.sh PATH/TO/ipacl
# (IPACL_RUN may name an emulator.)  Exits 77 (skipped) with the reason when
# no namespace can be made or the kernel tables cannot be reached.
set -u
. "$(dirname "$0")/run_tool.sh"
chmod 755 "$work"  # readable by the unprivileged caller below

# in_netns ARGS...: the program in a fresh network namespace, output in
# $work/out and $work/err; prints the exit status.
in_netns() { unshare --net $run "$tool" "$@" >"$work/out" 2>"$work/err"; echo $?; }

# expect STATUS STDERR-TEXT ARGS...: exit status and one line on stderr
# that contains the text.
expect() {
  local status=$1 text=$2 rc
  shift 2
  rc=$(in_netns "$@")
  [ "$rc" -eq "$status" ] || fail "ipacl $* exited $rc, expected $status ($(cat "$work/err"))"
  [ "$(wc -l <"$work/err")" -eq 1 ] || fail "ipacl $*: expected one line on stderr, got: $(cat "$work/err")"
  grep -qF -- "$text" "$work/err" || fail "ipacl $*: stderr lacks '$text': $(cat "$work/err")"
}

unshare --net true 2>"$work/err" ||
  { echo "SKIP: cannot make a network namespace: $(cat "$work/err")"; exit 77; }

cat >"$work/good.acl" <<'ACL'
# name service and ssh from the lab, nothing else
permit udp 10.9.0.0 0.0.255.255 any eq 53
permit tcp 10.9.0.0/16 any eq ssh   # a trailing comment

deny icmp 0.0.0.0/0 any echo
permit udp any fd00::/8 eq 123
ACL
printf 'permit udp 10.0.0.0/8 any eq 53\npermit tcp 10.0.0.0/8 any eq bogus\n' >"$work/bad-word.acl"
printf 'permit udp 10.0.0.0/8 any\ndeny udp any any eq 53 fragments\n' >"$work/untranslatable.acl"

# The kernel tables from this program at all?  (Not under an emulator.)
rc=$(in_netns ipt show chains)
[ "$rc" -eq 2 ] && grep -q "unavailable" "$work/err" &&
  { echo "SKIP: x_tables cannot be reached: $(cat "$work/err")"; exit 77; }

# Files: missing, a word that is not a port, a filter the kernel cannot hold.
expect 2 "$work/none.acl: cannot open" ipt apply "$work/none.acl"
expect 2 "$work/bad-word.acl:2: " ipt apply "$work/bad-word.acl"
expect 1 "$work/untranslatable.acl:2: fragments" ipt apply "$work/untranslatable.acl"
expect 1 "no chain 'nosuch'" ipt show rules --chain nosuch
[ "$(in_netns ipt apply --in --out "$work/good.acl")" -eq 2 ] ||
  fail "--in and --out together are accepted"

# No right to change the tables: a caller that is not root.
if command -v setpriv >/dev/null; then
  rc=$(unshare --net setpriv --reuid=65534 --regid=65534 --clear-groups \
         $run "$tool" ipt apply "$work/good.acl" 2>"$work/err" >/dev/null; echo $?)
  [ "$rc" -eq 2 ] || fail "apply without root exited $rc"
  [ "$(wc -l <"$work/err")" -eq 1 ] && grep -q "permission denied" "$work/err" ||
    fail "apply without root said: $(cat "$work/err")"
fi

# One apply and its rules read back, in one private namespace.
unshare --net bash -c "
  $run '$tool' ipt apply --interface mgmt0 '$work/good.acl' &&
  $run '$tool' ipt show summary --chain ipacl-in &&
  $run '$tool' ipt show rules &&
  $run '$tool' ipt clear-counters" >"$work/out" 2>"$work/err" ||
  fail "apply and show failed: $(cat "$work/err")"
for line in \
  "ipacl-in: 3 IPv4 filters applied, inbound, interface mgmt0" \
  "ipacl-in: 1 IPv6 filter applied, inbound, interface mgmt0" \
  "1   udp  10.9.0.0        any             mgmt0             ACCEPT   0" \
  "4   ip   any             any             mgmt0             DROP     0" \
  "TCP Dest Port Low       22" \
  "ipacl-in 1 ACCEPT udp any fd00::/8 in mgmt0 dport eq 123 packets 0 bytes 0" \
  "counters of every chain and rule cleared"; do
  grep -qxF -- "$line" "$work/out" || fail "apply and show: missing line '$line'"
done

# A chain that only one family's table has is shown from that table.
printf 'permit udp 10.0.0.0/8 any eq 53\n' >"$work/v4only.acl"
unshare --net bash -c "$run '$tool' ipt apply '$work/v4only.acl' >/dev/null
  $run '$tool' ipt show summary --chain ipacl-in" >"$work/out" 2>&1
grep -qF "1   udp  10.0.0.0        any                               ACCEPT   0" "$work/out" ||
  fail "show of an IPv4-only chain: $(cat "$work/out")"

[ "$failures" -eq 0 ] || { echo "--- output of the last run:"; cat "$work/out"; exit 1; }
echo "ipt_test: all passed"
