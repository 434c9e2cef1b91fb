#!/usr/bin/env bash
# Group add benchmark against the test domain controller (scripts/testdc.sh start).
#
# In one run it adds the same N groups twice, each time into a fresh OU, every group with a
# description, info, mail, one member user and one group to join:
#   - with orin-cli (run --kind group --op add --mode production ... --yes) from a CSV file;
#   - with ldapmodify, over LDAPS, from the equivalent LDIF file: for each group the add, then a
#     modify that adds the member and one that adds the group to its parent group, the three
#     requests that orin's fast path makes for such a row.
# Each side has its own member user and parent group. It prints both times and the ratio
# (ldapmodify time / orin time); with --exact it also times orin with every row the exact way
# (ORIN_FAST_PATH=0), one request per property.
#
# This is a benchmark, not a test: it reports, and fails only when it can't run.
#
#   bench/group_add_bench.sh [--count N] [--exact] [--build DIR]
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
count=1000
exact=0
build=${ORIN_BUILD_DIR:-$here/../build}
while [ $# -gt 0 ]; do
    case "$1" in
        --count) count=$2; shift 2 ;;
        --exact) exact=1; shift ;;
        --build) build=$2; shift 2 ;;
        *) echo "usage: $0 [--count N] [--exact] [--build DIR]" >&2; exit 64 ;;
    esac
done

cli=$build/bin/orin-cli
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
base_name=grpBench-$$
base="OU=$base_name,$domain_dn"
cleanup() {
    ldap ldapdelete -r "$base" >/dev/null 2>&1 || echo "could not remove $base" >&2
    rm -rf "$work"
}
trap cleanup EXIT

umask 077
printf '%s' "$ORIN_TESTDC_ADMIN_PASSWORD" > "$work/password"

# Each side's OU holds its member user and its parent group; the groups go into OU=groups.
sides=(orin ldif)
[ "$exact" = 1 ] && sides+=(exact)
{
    printf 'dn: %s\nobjectClass: organizationalUnit\n\n' "$base"
    for side in "${sides[@]}"; do
        printf 'dn: OU=%s,%s\nobjectClass: organizationalUnit\n\n' "$side" "$base"
        printf 'dn: OU=groups,OU=%s,%s\nobjectClass: organizationalUnit\n\n' "$side" "$base"
        printf 'dn: CN=member,OU=%s,%s\nobjectClass: user\nsAMAccountName: bm%s%s\n\n' \
            "$side" "$base" "${side:0:1}" "$$"
        printf 'dn: CN=parent,OU=%s,%s\nobjectClass: group\nsAMAccountName: bp%s%s\n\n' \
            "$side" "$base" "${side:0:1}" "$$"
    done
} > "$work/base.ldif"
ldap ldapadd -f "$work/base.ldif" >/dev/null

# ASCII values, so that the CSV (CP932) and the LDIF carry the same bytes.
name() { printf 'g%05d' "$1"; }
account() { printf 'b%s%s%05d' "$1" "$$" "$2"; }  # at most 20 characters
write_csv() {  # write_csv <side> <file>
    {
        printf '!OU-Start,,OU-End,RDN,Mirror,sAMAccountName,GroupRange,GroupClass,description,'
        printf 'info,mail,MemberOU-Start,,MemberOU-End,MemberRDN,GrpOU-Start,,GrpOU-End,groupRDN\r\n'
        for ((i = 1; i <= count; i++)); do
            printf '%s,%s,groups,%s,,%s,1,0,benchmark group %d,line one<Rtn>line two,' \
                "$base_name" "$1" "$(name "$i")" "$(account "${1:0:1}" "$i")" "$i"
            printf '%s@example.jp,%s,%s,,member,%s,%s,,parent\r\n' "$(name "$i")" \
                "$base_name" "$1" "$base_name" "$1"
        done
    } > "$2"
}
write_ldif() {  # write_ldif <side> <file>
    local side=$1 dn
    for ((i = 1; i <= count; i++)); do
        dn="CN=$(name "$i"),OU=groups,OU=$side,$base"
        printf 'dn: %s\nchangetype: add\nobjectClass: group\nsAMAccountName: %s\n' \
            "$dn" "$(account "${side:0:1}" "$i")"
        printf 'groupType: -2147483646\ndescription: benchmark group %d\n' "$i"
        printf 'info:: %s\nmail: %s@example.jp\n\n' \
            "$(printf 'line one\r\nline two' | base64 -w0)" "$(name "$i")"
        printf 'dn: %s\nchangetype: modify\nadd: member\nmember: CN=member,OU=%s,%s\n-\n\n' \
            "$dn" "$side" "$base"
        printf 'dn: CN=parent,OU=%s,%s\nchangetype: modify\nadd: member\nmember: %s\n-\n\n' \
            "$side" "$base" "$dn"
    done > "$2"
}

now() { date +%s.%N; }
seconds() { echo "$2 - $1" | bc; }
made() {  # made <side>: the groups with their member, and the parent's members
    local groups parents
    groups=$(ldap ldapsearch -LLL -b "OU=groups,OU=$1,$base" -s one '(member=*)' dn |
             grep -c '^dn:' || true)
    parents=$(ldap ldapsearch -LLL -b "CN=parent,OU=$1,$base" -s base '(objectClass=*)' member |
              grep -c '^member:' || true)
    echo "$groups groups with a member, $parents in the parent"
}

run_orin() {  # run_orin <csv> [<environment>...]: seconds
    local csv=$1 start end
    shift
    start=$(now)
    env "$@" ORIN_HOME="$work" "$cli" run --kind group --op add --mode production --csv "$csv" \
        --dns "$ORIN_TESTDC_DNS_DOMAIN" --netbios "$ORIN_TESTDC_NETBIOS_DOMAIN" --method remote \
        --server "$ORIN_TESTDC_FQDN" --user "$ORIN_TESTDC_ADMIN_USER" \
        --password-file "$work/password" --ca-file "$ORIN_TESTDC_CA_FILE" --yes \
        >/dev/null 2>"$work/orin.err" || { echo "orin-cli ended with status $?" >&2; cat "$work/orin.err" >&2; }
    end=$(now)
    seconds "$start" "$end"
}
run_ldif() {  # run_ldif <ldif>: seconds
    local start end
    start=$(now)
    ldap ldapmodify -f "$1" >/dev/null
    end=$(now)
    seconds "$start" "$end"
}

echo "Group add: $count groups per figure against $ORIN_TESTDC_FQDN"
write_csv orin "$work/orin.csv"
write_ldif ldif "$work/ldif.ldif"
orin_time=$(run_orin "$work/orin.csv")
ldif_time=$(run_ldif "$work/ldif.ldif")
printf '%-28s %10.2f s   (%s)\n' "orin-cli" "$orin_time" "$(made orin)"
printf '%-28s %10.2f s   (%s)\n' "ldapmodify" "$ldif_time" "$(made ldif)"
printf '%-28s %10.2f\n' "ratio ldapmodify / orin" "$(echo "scale=4; $ldif_time / $orin_time" | bc)"

if [ "$exact" = 1 ]; then
    write_csv exact "$work/exact.csv"
    exact_time=$(run_orin "$work/exact.csv" ORIN_FAST_PATH=0)
    printf '%-28s %10.2f s   (%s)\n' "orin-cli, the exact way" "$exact_time" "$(made exact)"
fi
