#!/usr/bin/env bash
# The project's test and demo domain controller: a Samba AD DC provisioned in a scratch
# folder and served on loopback only.
#
#   scripts/testdc.sh start [2]   provision and start it (stops one left behind first)
#   scripts/testdc.sh stop [2]    stop it, remove its folder and its /etc/hosts entry
#   scripts/testdc.sh status [2]  say whether it runs (exit 0) or not (exit 1)
#   scripts/testdc.sh env [2]     print the shell exports that tests and tools need
#
# "2" names a second DC of another domain (realm ORIN2.TEST, DNS domain orin2.test, NetBIOS
# ORIN2, DC orindc2.orin2.test on 127.0.0.2, folder /tmp/orin-testdc2), for copying a domain
# into another. It runs beside the first: its daemons live in a mount namespace of their own
# with a private /run/samba, since the file server finds its winbind through a fixed path
# there whatever smb.conf says.
#
# With ORIN_TESTDC_REUSE=1, `start` leaves a DC that already answers as it is and `stop` does
# nothing: several test runs (working trees, a developer's shell) can then share one DC, each
# test working in an OU of its own.
#
# The domain is always the same, so that tests and the demo can name it:
#   realm ORIN.TEST, DNS domain orin.test, NetBIOS domain ORIN, DC host orindc
#   (orindc.orin.test), Administrator password in ADMIN_PASSWORD below.
# The names orindc.orin.test, orindc and orin.test resolve to 127.0.0.1 through one line in
# /etc/hosts marked with "# orin-testdc". Needs root (provisioning, ports below 1024,
# /etc/hosts).
#
# Folder: $ORIN_TESTDC_DIR, default /tmp/orin-testdc. Inside it:
#   etc/smb.conf      the DC's configuration         private/tls/ca.pem  the DC's CA certificate
#   krb5.conf         Kerberos for the realm         krb5cc              Administrator's ticket
#   run/samba.pid     the daemon's pid               share/orinhome      the "orinhome" share
#   samba.log         the daemon's log               testdc.env          what `env` prints
set -euo pipefail

# --- The constants of the test domain (tests/support/TestDc reads them from testdc.env) ---
INSTANCE=${2:-1}
case "$INSTANCE" in
    1) SUFFIX="" IP=127.0.0.1 DIR=${ORIN_TESTDC_DIR:-/tmp/orin-testdc} ;;
    2) SUFFIX=2 IP=127.0.0.2 DIR=${ORIN_TESTDC2_DIR:-/tmp/orin-testdc2} ;;
    *) echo "testdc: the second argument is 1 or 2" >&2; exit 2 ;;
esac
REALM=ORIN$SUFFIX.TEST
DNS_DOMAIN=orin$SUFFIX.test
NETBIOS_DOMAIN=ORIN$SUFFIX
DC_HOST=orindc$SUFFIX
DC_FQDN=${DC_HOST}.${DNS_DOMAIN}
ADMIN_USER=Administrator
ADMIN_PASSWORD='Orin-Admin-Pass1'
HOME_SHARE=orinhome
HOSTS_MARK="# orin-testdc$SUFFIX"
START_TIMEOUT=${ORIN_TESTDC_START_TIMEOUT:-120}  # seconds to wait for LDAPS to answer

PIDFILE=$DIR/run/samba.pid
CONF=$DIR/etc/smb.conf
CAFILE=$DIR/private/tls/ca.pem

log() { echo "testdc: $*" >&2; }
die() { log "error: $*"; exit 1; }

need_root() {
    [ "$(id -u)" -eq 0 ] || die "must run as root (provisioning, ports 88/389/445/636, /etc/hosts)"
}

install_packages() {
    local pkgs=(samba samba-ad-dc samba-ad-provision krb5-user ldap-utils smbclient winbind)
    local missing=() p
    for p in "${pkgs[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" ||
            missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    log "installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -q
    apt-get install -y -q --no-install-recommends "${missing[@]}"
}

running_pid() {
    local pid
    [ -f "$PIDFILE" ] || return 1
    pid=$(tr -dc '0-9' <"$PIDFILE")
    [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null || return 1
    echo "$pid"
}

# /etc/hosts may be a bind mount: rewrite it in place rather than replacing the file.
hosts_remove() {
    local kept
    grep -q -- "$HOSTS_MARK\$" /etc/hosts 2>/dev/null || return 0
    kept=$(grep -v -- "$HOSTS_MARK\$" /etc/hosts)
    printf '%s\n' "$kept" >/etc/hosts
}

hosts_add() {
    hosts_remove
    printf '%s %s %s %s %s\n' "$IP" "$DC_FQDN" "$DC_HOST" "$DNS_DOMAIN" "$HOSTS_MARK" >>/etc/hosts
}

stop_dc() {
    local pid i
    if pid=$(running_pid); then
        log "stopping samba (pid $pid)"
        # samba's children follow their parent down.
        kill "$pid" 2>/dev/null || true
        for i in $(seq 1 100); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -0 "$pid" 2>/dev/null && kill -9 "$pid" 2>/dev/null || true
    fi
    hosts_remove
    if [ "$INSTANCE" != 1 ]; then ip addr del "$IP/8" dev lo 2>/dev/null || true; fi
    case "$DIR" in
        /|"") die "refusing to remove folder '$DIR'" ;;
    esac
    rm -rf "$DIR"
}

write_krb5_conf() {
    cat >"$DIR/krb5.conf" <<EOF
[libdefaults]
    default_realm = $REALM
    dns_lookup_realm = false
    dns_lookup_kdc = false
    rdns = false
    dns_canonicalize_hostname = false

[realms]
    $REALM = {
        kdc = $IP
        admin_server = $IP
    }

[domain_realm]
    .$DNS_DOMAIN = $REALM
    $DNS_DOMAIN = $REALM
EOF
}

write_env() {
    cat >"$DIR/testdc.env" <<EOF
export ORIN_TESTDC_DIR='$DIR'
export ORIN_TESTDC_REALM='$REALM'
export ORIN_TESTDC_DNS_DOMAIN='$DNS_DOMAIN'
export ORIN_TESTDC_NETBIOS_DOMAIN='$NETBIOS_DOMAIN'
export ORIN_TESTDC_HOST='$DC_HOST'
export ORIN_TESTDC_FQDN='$DC_FQDN'
export ORIN_TESTDC_ADMIN_USER='$ADMIN_USER'
export ORIN_TESTDC_ADMIN_PASSWORD='$ADMIN_PASSWORD'
export ORIN_TESTDC_CA_FILE='$CAFILE'
export ORIN_TESTDC_HOME_SHARE='\\\\$DC_FQDN\\$HOME_SHARE'
export ORIN_TESTDC_HOME_SHARE_PATH='$DIR/share/$HOME_SHARE'
export KRB5_CONFIG='$DIR/krb5.conf'
export KRB5CCNAME='FILE:$DIR/krb5cc'
EOF
}

ldaps_answers() {
    LDAPTLS_CACERT=$CAFILE LDAPTLS_REQCERT=demand ldapsearch -LLL -o nettimeout=5 -l 5 \
        -H "ldaps://$DC_FQDN:636" -x -D "$ADMIN_USER@$DNS_DOMAIN" -w "$ADMIN_PASSWORD" \
        -b "" -s base defaultNamingContext 2>/dev/null | grep -q "^defaultNamingContext:"
}

start_dc() {
    local t0 t1 i pid
    need_root
    t0=$(date +%s%N)
    install_packages
    stop_dc
    mkdir -p "$DIR/run" "$DIR/share/$HOME_SHARE"

    log "provisioning $REALM in $DIR"
    samba-tool domain provision --targetdir="$DIR" --realm="$REALM" --domain="$NETBIOS_DOMAIN" \
        --server-role=dc --dns-backend=NONE --use-rfc2307 --host-name="$DC_HOST" \
        --adminpass="$ADMIN_PASSWORD" \
        --option="interfaces=$IP" --option="bind interfaces only=yes" \
        --option="pid directory=$DIR/run" \
        --option="log file=$DIR/samba.log" >"$DIR/provision.log" 2>&1 ||
        { tail -n 20 "$DIR/provision.log" >&2; die "provisioning failed (log: $DIR/provision.log)"; }

    cat >>"$CONF" <<EOF

[$HOME_SHARE]
	path = $DIR/share/$HOME_SHARE
	read only = no
	admin users = $NETBIOS_DOMAIN\\$ADMIN_USER
EOF
    hosts_add
    write_krb5_conf
    write_env

    log "starting samba"
    # The daemon must not inherit the lock's descriptor: it would hold the lock for its life.
    if [ "$INSTANCE" = 1 ]; then
        samba -D -s "$CONF" 9>&- || die "samba did not start (log: $DIR/samba.log)"
    else
        mkdir -p "$DIR/run-samba"
        # Samba binds only to addresses an interface holds.
        ip -4 addr show dev lo | grep -q "inet $IP/" || ip addr add "$IP/8" dev lo
        unshare -m --propagation private sh -c \
            'mount --bind "$1" /run/samba && exec samba -D -s "$2"' sh "$DIR/run-samba" "$CONF" \
            9>&- || die "samba did not start (log: $DIR/samba.log)"
    fi

    for i in $(seq 1 "$START_TIMEOUT"); do
        if ldaps_answers; then break; fi
        if [ "$i" -eq "$START_TIMEOUT" ]; then
            tail -n 20 "$DIR/samba.log" >&2 || true
            die "LDAPS on $DC_FQDN:636 did not answer within $START_TIMEOUT s (log: $DIR/samba.log)"
        fi
        sleep 1
    done
    pid=$(running_pid) || die "samba answered but its pid file $PIDFILE is missing"

    printf '%s\n' "$ADMIN_PASSWORD" |
        KRB5_CONFIG="$DIR/krb5.conf" KRB5CCNAME="FILE:$DIR/krb5cc" kinit "$ADMIN_USER@$REALM" \
            >/dev/null || die "kinit $ADMIN_USER@$REALM failed"

    t1=$(date +%s%N)
    log "running: pid $pid, $DC_FQDN, started in $(((t1 - t0) / 1000000)) ms"
}

reuse=${ORIN_TESTDC_REUSE:-0}

# One start or stop at a time, whoever asks: test runs that share the DC may ask together.
if [ "${1:-}" = start ] || [ "${1:-}" = stop ]; then
    exec 9>"${DIR%/}.lock"
    flock 9
fi

case "${1:-}" in
    start)
        if [ "$reuse" = 1 ] && running_pid >/dev/null && ldaps_answers; then
            log "reusing the running DC (ORIN_TESTDC_REUSE=1)"
            exit 0
        fi
        start_dc
        ;;
    stop)
        if [ "$reuse" = 1 ]; then
            log "left running (ORIN_TESTDC_REUSE=1)"
            exit 0
        fi
        need_root
        stop_dc
        log "stopped"
        ;;
    status)
        if pid=$(running_pid); then
            echo "running (pid $pid, folder $DIR)"
        else
            echo "not running"
            exit 1
        fi
        ;;
    env)
        [ -f "$DIR/testdc.env" ] || die "not started (no $DIR/testdc.env)"
        cat "$DIR/testdc.env"
        ;;
    *)
        echo "usage: $0 start|stop|status|env" >&2
        exit 2
        ;;
esac
