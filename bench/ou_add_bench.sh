#!/usr/bin/env bash
# OU add benchmark against the test domain controller (scripts/testdc.sh start).
#
# In one run it adds the same N OUs twice, each time into a fresh OU:
#   - with orin-cli (run --kind ou --op add --mode production ... --yes) from a CSV file;
#   - with ldapadd, over LDAPS, from the equivalent LDIF file;
# first with the six properties (c, postalCode, st, l, street, description), then with a manager
# and one ACE per OU as well. For that second figure the LDIF carries managedBy and the
# security descriptor that orin left on its first OU. It prints both times and the ratio
# (ldapadd time / orin time), then, with ou_rows_bench, what a row costs with the fast path
# and with the exact way alone.
#
# This is a benchmark, not a test: it reports, and fails only when it can't run.
#
#   bench/ou_add_bench.sh [--count N] [--rows-count M] [--build DIR]
#     N  OUs per figure (default 1000); M  rows per ou_rows_bench run (default 100, 0 skips it)
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
count=1000
rows_count=100
build=${ORIN_BUILD_DIR:-$here/../build}
while [ $# -gt 0 ]; do
    case "$1" in
        --count) count=$2; shift 2 ;;
        --rows-count) rows_count=$2; shift 2 ;;
        --build) build=$2; shift 2 ;;
        *) echo "usage: $0 [--count N] [--rows-count M] [--build DIR]" >&2; exit 64 ;;
    esac
done

cli=$build/bin/orin-cli
rows_bench=$build/bin/ou_rows_bench
[ -x "$cli" ] || { echo "no $cli: build the orin-cli target first" >&2; exit 1; }
eval "$("$here/../scripts/testdc.sh" env)" || { echo "the test DC isn't running" >&2; exit 1; }

export LDAPTLS_CACERT=$ORIN_TESTDC_CA_FILE
domain_dn=$(echo "$ORIN_TESTDC_DNS_DOMAIN" | sed 's/^/DC=/; s/\./,DC=/g')
ldap_auth=(-H "ldaps://$ORIN_TESTDC_FQDN" -x -D "$ORIN_TESTDC_ADMIN_USER@$ORIN_TESTDC_DNS_DOMAIN"
           -y /dev/stdin)
ldap() {  # ldap <tool> <args...>: the admin's password on stdin, never on the command line
    local tool=$1; shift
    printf '%s' "$ORIN_TESTDC_ADMIN_PASSWORD" | "$tool" "${ldap_auth[@]}" "$@"
}

work=$(mktemp -d)
base_name=ouBench-$$
base="OU=$base_name,$domain_dn"
group=benchgrp$$
cleanup() {
    ldap ldapdelete -r "$base" >/dev/null 2>&1 || echo "could not remove $base" >&2
    rm -rf "$work"
}
trap cleanup EXIT

# The password file for orin-cli, readable by this user only.
umask 077
printf '%s' "$ORIN_TESTDC_ADMIN_PASSWORD" > "$work/password"

{
    printf 'dn: %s\nobjectClass: organizationalUnit\n\n' "$base"
    for own in orin ldif orin-acl ldif-acl; do
        printf 'dn: OU=%s,%s\nobjectClass: organizationalUnit\n\n' "$own" "$base"
    done
    printf 'dn: CN=benchmgr,%s\nobjectClass: user\nsAMAccountName: benchmgr%s\n\n' "$base" "$$"
    printf 'dn: CN=benchgrp,%s\nobjectClass: group\nsAMAccountName: %s\n\n' "$base" "$group"
} > "$work/base.ldif"
ldap ldapadd -f "$work/base.ldif" >/dev/null

# The rows: ASCII values, so that the CSV (CP932) and the LDIF carry the same bytes.
name() { printf 'ou%05d' "$1"; }
write_csv() {  # write_csv <own OU> <with manager and ACE: 0|1> <file>
    {
        printf '!OU-Start,,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,MgrOU-End,'
        printf 'MgrRDN,Mirror,AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption\r\n'
        for ((i = 1; i <= count; i++)); do
            printf '%s,%s,%s,JP,100-0001,Tokyo,Chiyoda,1-1 Marunouchi,benchmark OU %d' \
                "$base_name" "$1" "$(name "$i")" "$i"
            if [ "$2" = 1 ]; then
                printf ',%s,,benchmgr,,%s,0,1,,\r\n' "$base_name" "$group"
            else
                printf ',,,,,,,,,\r\n'
            fi
        done
    } > "$3"
}
write_ldif() {  # write_ldif <own OU> <extra lines for each entry> <file>
    for ((i = 1; i <= count; i++)); do
        printf 'dn: OU=%s,OU=%s,%s\nobjectClass: organizationalUnit\nc: JP\npostalCode: 100-0001\n' \
            "$(name "$i")" "$1" "$base"
        printf 'st: Tokyo\nl: Chiyoda\nstreet: 1-1 Marunouchi\ndescription: benchmark OU %d\n' "$i"
        [ -z "$2" ] || printf '%s\n' "$2"
        printf '\n'
    done > "$3"
}

now() { date +%s.%N; }
seconds() { echo "$2 - $1" | bc; }
children() { ldap ldapsearch -LLL -b "OU=$1,$base" -s one '(objectClass=organizationalUnit)' dn |
             grep -c '^dn:' || true; }

run_orin() {  # run_orin <csv>: seconds
    local start end
    start=$(now)
    ORIN_HOME=$work "$cli" run --kind ou --op add --mode production --csv "$1" \
        --dns "$ORIN_TESTDC_DNS_DOMAIN" --netbios "$ORIN_TESTDC_NETBIOS_DOMAIN" --method remote \
        --server "$ORIN_TESTDC_FQDN" --user "$ORIN_TESTDC_ADMIN_USER" \
        --password-file "$work/password" --ca-file "$ORIN_TESTDC_CA_FILE" --yes >/dev/null ||
        echo "orin-cli ended with status $?" >&2
    end=$(now)
    seconds "$start" "$end"
}
run_ldapadd() {  # run_ldapadd <ldif>: seconds
    local start end
    start=$(now)
    ldap ldapadd -f "$1" >/dev/null
    end=$(now)
    seconds "$start" "$end"
}
report() {  # report <figure> <orin seconds> <ldapadd seconds> <orin OU> <ldif OU>
    printf '%-32s %6d %10.2f %12.2f %8.2f   (%s and %s OUs made)\n' "$1" "$count" "$2" "$3" \
        "$(echo "scale=4; $3 / $2" | bc)" "$(children "$4")" "$(children "$5")"
}

echo "OU add: $count OUs per figure against $ORIN_TESTDC_FQDN"
printf '%-32s %6s %10s %12s %8s\n' figure count "orin (s)" "ldapadd (s)" ratio

write_csv orin 0 "$work/plain.csv"
write_ldif ldif "" "$work/plain.ldif"
orin_plain=$(run_orin "$work/plain.csv")
ldif_plain=$(run_ldapadd "$work/plain.ldif")
report "six properties" "$orin_plain" "$ldif_plain" orin ldif

write_csv orin-acl 1 "$work/acl.csv"
orin_acl=$(run_orin "$work/acl.csv")
# The LDIF gives each OU the descriptor that orin left on its first one: the same ACE.
descriptor=$(ldap ldapsearch -LLL -o ldif-wrap=no -b "OU=$(name 1),OU=orin-acl,$base" -s base \
             '(objectClass=*)' nTSecurityDescriptor | grep '^nTSecurityDescriptor::' || true)
write_ldif ldif-acl "managedBy: CN=benchmgr,$base
$descriptor" "$work/acl.ldif"
ldif_acl=$(run_ldapadd "$work/acl.ldif")
report "+ manager, one ACE" "$orin_acl" "$ldif_acl" orin-acl ldif-acl

if [ "$rows_count" -gt 0 ] && [ -x "$rows_bench" ]; then
    echo
    echo "What a row costs (ou_rows_bench, $rows_count rows per run):"
    "$rows_bench" --count "$rows_count"
fi
