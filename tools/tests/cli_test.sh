#!/usr/bin/env bash
# The ipacl program as a user runs it: exit statuses and output of every
# command.  Usage: cli_test.sh PATH/TO/ipacl  (IPACL_RUN may name an emulator
# to run it under, as in the i386 build.)
set -u
. "$(dirname "$0")/run_tool.sh"

ipacl() { $run "$tool" "$@"; }

# expect STATUS "EXPECTED STDOUT (exact)" -- ARGS...; expect_err: the same
# for standard error.
expect_on() {
  local stream=$1 status=$2 expected=$3
  shift 4
  ipacl "$@" >"$work/1" 2>"$work/2"
  local rc=$?
  [ "$rc" -eq "$status" ] || fail "ipacl $* exited $rc, expected $status ($(cat "$work/2"))"
  [ "$(cat "$work/$stream")" == "$expected" ] || fail "ipacl $*
  printed: $(cat "$work/$stream")
  expected: $expected"
}
expect() { expect_on 1 "$@"; }
expect_err() { expect_on 2 "$@"; }

# contains FILE "TEXT"...: each text is in the file.
contains() {
  local file=$1 text
  for text in "${@:2}"; do grep -qF -- "$text" "$file" || fail "missing '$text' in ${file##*/}"; done
}

# Bytes given as printf escapes, padded with zeros to SIZE, as hex.
hex_bytes() {
  { printf "$1"; head -c "$2" /dev/zero; } | head -c "$2" | od -An -v -tx1 | tr -s ' \n' '  '
}

# ---- help and usage ------------------------------------------------------
ipacl --help >"$work/help" || fail "ipacl --help exited $?"
for command in demo check show encode decode; do
  contains "$work/help" "$command"
  ipacl "$command" --help >"$work/help.$command" || fail "ipacl $command --help exited $?"
done
contains "$work/help.check" "FILTER: ACTION PROTOCOL SOURCE"
contains "$work/help.decode" "filter_sync_op"
for usage in "" frobnicate "check --chain strict permit ip any any" "decode -t strange 00"; do
  ipacl $usage >/dev/null 2>&1
  [ $? -eq 2 ] || fail "ipacl $usage should exit 2"
done

# ---- check: each chain's code and exact message, or the long form --------
expect 0 "active prof acl1 1 no-order permit tcp s-ip any d-ip 2001:db8::/32 any-port-op s-port 0:65535 eq d-port www:www any-icmp:any-code est:T any-prec any-tos log:F frag:F" \
  -- check permit tcp any 2001:db8::/32 eq www established
expect 0 "active prof web 7 no-order deny udp s-ip 10.1.0.0/16 d-ip 192.168.1.1/32 any-port-op s-port 0:65535 eq d-port snmp:snmp any-icmp:any-code est:F any-prec any-tos log:T frag:F" \
  -- check -p web -i 7 "deny udp 10.1.0.0 0.0.255.255 host 192.168.1.1 eq snmp log-deny"
expect 1 "0x407f0013 source port low 2000 > high 1000" -- check "permit tcp any range 2000 1000 any"
# Each chain by its name: protocol 300 passes the command line's check and
# fails the manager's; an empty name fails the quen and generic ones.
ipacl check -4 permit 300 any any >/dev/null || fail "protocol 300 fails the cli chain"
expect 1 "0x407f0016 bad protocol 300" -- check --chain plain -4 permit 300 any any
for chain in quen gen; do
  expect 1 "0x407f0022 missing name" -- check --chain $chain -p "" permit ip any any
done

# ---- the language's errors: the word, its position, exit status 2 -------
expect_err 2 "ipacl: word 3 'anywhere': expected a source address (any, host A, A/LEN or A WILDCARD)" \
  -- check permit tcp anywhere any
expect_err 2 "ipacl: word 5: expected a port, found the end of the filter" -- show permit tcp any eq
expect_err 2 "ipacl: word 4 '2001::/16': IPv6 address in an IPv4 filter" -- encode permit tcp 10.0.0.0/8 2001::/16
expect_err 2 "ipacl: word 3 '10.0.0.0/8': IPv4 address in an IPv6 filter" -- check -6 permit tcp 10.0.0.0/8 any

# ---- show: the library's block display -----------------------------------
ipacl show -i 10 permit tcp any 2001:db8::/32 eq www established >"$work/show" || fail "show exited $?"
contains "$work/show" "Filter Index            10" "Destination Address     2001:db8::/32" \
  "Destination Port Low    www" "Established             True"

# ---- encode and decode: every message encode writes reads back ----------
filter="deny udp 10.1.0.0 0.0.255.255 host 192.168.1.1 eq snmp log-deny"
ipacl show -p web "$filter" >"$work/show.v4"
for message in filter filter_cfg filter_sync; do
  ipacl encode -m $message -p web "$filter" >"$work/$message.hex" || fail "encode $message exited $?"
  ipacl decode -t $message - <"$work/$message.hex" >"$work/$message.out" ||
    fail "decode $message exited $?"
  tail -n "$(wc -l <"$work/show.v4")" "$work/$message.out" | cmp -s - "$work/show.v4" ||
    fail "decode $message does not end with the filter's display"
done
head -c 200 "$work/filter.hex" | grep -q "^0000: 77 65 62 00" || fail "the record starts with its name"
contains "$work/filter_cfg.out" "Count                   1" "Operation               add"
contains "$work/filter_sync.out" "Sequence                1"
cmp -s "$work/filter.out" "$work/show.v4" || fail "decode of a filter prints what show prints"
# The dump also reads back from the command line, offsets and all.
ipacl decode -t filter $(cat "$work/filter.hex") >"$work/filter.args" || fail "decode from arguments"
cmp -s "$work/filter.args" "$work/show.v4" || fail "decode from arguments differs"

# A message with a payload, written by hand.
quen=$(hex_bytes '\0\0\0\3\0\0\0\2\0\0\0\0demo\0' 112)"ab cd"
ipacl decode --type quen "$quen" >"$work/quen.out" || fail "decode quen exited $?"
contains "$work/quen.out" "Operation               set" "Text 1                  demo" \
  "Payload (not converted)"

# Bad bytes: a clear message and exit status 2, never a crash.
expect_err 2 "ipacl: 'zz' is not hexadecimal" -- decode -t filter zz
expect_err 2 "ipacl: '123' has an odd number of hex digits" -- decode -t filter 123
expect_err 2 "ipacl: 4 bytes are too few for the filter (238 bytes)" -- decode -t filter 00010203
# (a count that would wrap the size arithmetic around)
expect_err 2 "ipacl: count 4294967295 of filter (238 bytes each) needs 1022202216218 bytes, the message has 246" \
  -- decode -t filter_cfg "ffffffff $(tail -c +18 "$work/filter_cfg.hex" | tr '\n' ' ')"
expect_err 2 "ipacl: element 1: the text at offset 0 of the filter has no terminating NUL within its 68 bytes" \
  -- decode -t filter_cfg 00000001 00000000 "$(hex_bytes "$(printf 'a%.0s' {1..68})" 238)"
expect_err 2 "ipacl: match count 4 exceeds the rule's 3 match slots" \
  -- decode -t ipt_rule "$(hex_bytes '' 178)00000004$(hex_bytes '' 108)"
expect_err 2 "ipacl: the header's length 2 does not match the 1 payload bytes behind it" \
  -- decode -t quen "$(hex_bytes '\0\0\0\3\0\0\0\2' 112)ab"

# ---- demo: three processes, all cleaned up --------------------------------
mkdir "$work/tmp"
TMPDIR="$work/tmp" ipacl demo >"$work/demo.out" 2>&1
rc=$?
[ $rc -eq 0 ] || fail "demo exited $rc: $(tail -20 "$work/demo.out")"
contains "$work/demo.out" "ipacl demo: every step went as expected" \
  "ipacl_chk_cli_filter refused it: 0x407f0013 \"source port low 2000 > high 1000\"" \
  "standby | copy       ipacl_ntoh_filter_sync: add, sequence 3" "endpoints closed, directory removed"
[ -z "$(ls -A "$work/tmp")" ] || fail "the demo left $(ls -A "$work/tmp") behind"
# Enforcement where namespaces may be made, one line saying why not elsewhere.
if grep -q "^The manager enforces" "$work/demo.out"; then
  contains "$work/demo.out" "ICMP echo 10.201.0.2 -> 10.201.0.1: answered" \
    "UDP to 10.201.0.1 port 161 (snmp): dropped"
  grep -qE "^1   icmp 10.0.0.0 .* ACCEPT   1$" "$work/demo.out" || fail "demo: echo rule not counted"
  grep -qE "^4   ip   any .* DROP     1$" "$work/demo.out" || fail "demo: implicit deny not counted"
else
  contains "$work/demo.out" "No enforcement here ("
fi

[ $failures -eq 0 ] || { echo "$failures failure(s)" >&2; exit 1; }
echo "all ipacl command tests passed"
