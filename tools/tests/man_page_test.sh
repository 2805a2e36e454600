#!/usr/bin/env bash
# Every command and subcommand `ipacl --help` lists has a section
# ".SS "ipacl COMMAND ..."" in the manual page, and every option its --help
# shows appears in the page.  Usage: man_page_test.sh IPACL_PROGRAM PAGE
# (IPACL_RUN, when set, runs the program: an emulator for cross builds).
set -uo pipefail
program=$1
page=$2
failures=0
# The page as plain text: roff's escaped hyphens and font changes removed.
text=$(sed -e 's/\\-/-/g' -e 's/\\f[BIRP]//g' "$page")

# Lines of a help section: "Options:" or "Subcommands:" up to a blank line.
section() { awk -v head="$1" '$0 == head {on = 1; next} on && /^$/ {exit} on' ; }
missing() { echo "missing from $page: $*"; failures=$((failures + 1)); }

check_command() {  # check_command [COMMAND...]: its options, then its subcommands
    local help opt sub
    help=$(${IPACL_RUN:-} "$program" "$@" --help 2>&1)
    if [ $# -gt 0 ] && ! grep -q "^\.SS \"ipacl $*\( \|\"\)" <<<"$text"; then
        missing "section for command '$*'"
    fi
    for opt in $(echo "$help" | section "Options:" | grep -o '^  -[^ ]*' | tr ',' ' '); do
        grep -Eq -- "(^|[^A-Za-z0-9-])${opt}([^A-Za-z0-9-]|$)" <<<"$text" ||
            missing "option '$opt' of 'ipacl $*'"
    done
    for sub in $(echo "$help" | section "Subcommands:" | awk '/^  [^ ]/ {print $1}'); do
        check_command "$@" "$sub"
    done
}

check_command
[ "$failures" -eq 0 ] || { echo "$failures missing; describe them in $page"; exit 1; }
echo "every command and option of $program is in $page"
