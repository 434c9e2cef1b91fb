#!/usr/bin/env bash
# Sets ORIN up on a Debian 12 machine and opens its main window against a demo domain:
#   1. installs the packages it needs (scripts/install-deps.sh);
#   2. builds the program (build/bin/orin) and its command line (build/bin/orin-cli), in
#      $ORIN_BUILD_DIR when set;
#   3. starts the demo domain controller, a Samba AD DC on loopback (scripts/testdc.sh), unless
#      one runs already;
#   4. writes Orin.ini for that domain in the program's folder (or $ORIN_HOME) and puts the
#      OU add template at hand as a sample CSV;
#   5. starts the program. Without a display it serves its window over VNC instead.
set -euo pipefail
cd "$(dirname "$0")/.."

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi

scripts/install-deps.sh
BUILD=$(realpath -m "${ORIN_BUILD_DIR:-build}")
cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" --target orin orin-cli -j"$(nproc 2>/dev/null || echo 2)"

if ! scripts/testdc.sh status >/dev/null 2>&1; then
    $SUDO scripts/testdc.sh start
fi
eval "$(scripts/testdc.sh env)"

HOME_DIR=${ORIN_HOME:-$BUILD/bin}
DEMO=$BUILD/demo
mkdir -p "$HOME_DIR" "$DEMO"

# The DC's certificate authority, readable by the program (the DC's folder belongs to root).
$SUDO cat "$ORIN_TESTDC_CA_FILE" >"$DEMO/orindc-ca.pem"

# The sample: the OU add template, which builds a small tree of OUs when run as it stands.
SAMPLE=$DEMO/ou_add.csv
ORIN_HOME=$HOME_DIR "$BUILD/bin/orin-cli" template --kind ou --op add --out "$SAMPLE" --yes >/dev/null

# Orin.ini as the program writes it (CP932, CR LF), filled in for the demo domain. The
# password is never stored: the login dialog asks for it.
T=$'\t'
{
    printf '%s\n' ";Orin.ini" ""
    printf '%s\n' "[UserInput]$T$T;ユーザーの入力情報"
    printf '%s\n' "DomainDNSName=$ORIN_TESTDC_DNS_DOMAIN$T$T$T;ドメインの完全なDNS名"
    printf '%s\n' "DomainNetBIOSName=$ORIN_TESTDC_NETBIOS_DOMAIN$T$T$T;ドメインのNetBIOS名"
    printf '%s\n' "DcComputerName=$ORIN_TESTDC_FQDN$T$T$T;ドメインコントローラのコンピュータ名"
    printf '%s\n' "UserName=$ORIN_TESTDC_ADMIN_USER$T$T$T;ドメイン接続時ログオンするユーザー名"
    printf '%s\n' ""
    printf '%s\n' "[Connect]$T$T;「ドメイン接続方式」画面の設定情報"
    printf '%s\n' "Method=remote$T$T$T;ドメイン接続方式"
    printf '%s\n' "NeverShowAgain=false$T$T$T;以降この画面を表示させない"
} | iconv -f UTF-8 -t CP932 | sed 's/$/\r/' >"$HOME_DIR/Orin.ini"

cat <<EOT

ORIN demo
  domain       $ORIN_TESTDC_DNS_DOMAIN (NetBIOS $ORIN_TESTDC_NETBIOS_DOMAIN), domain controller $ORIN_TESTDC_FQDN on this machine
  user         $ORIN_TESTDC_ADMIN_USER
  password     $ORIN_TESTDC_ADMIN_PASSWORD   (the login dialog asks for it; it is never saved)
  sample CSV   $SAMPLE
  settings     $HOME_DIR/Orin.ini    event log  $HOME_DIR/Event.log

In the window: 組織単位 is selected and the 追加 page shows. Put the sample's path in the
file box (or ﾌｧｲﾙを選択), press 模擬追加開始 to try it without changing anything, then
本番追加開始 to add the OUs. Type the password in the ﾄﾞﾒｲﾝ接続 dialog and press 接続.
ｲﾍﾞﾝﾄﾛｸﾞを開く shows what each run did.
EOT

export LDAPTLS_CACERT=$DEMO/orindc-ca.pem
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo
    echo "No display here: the window is served over VNC on port 5900 of this machine"
    echo "(from elsewhere: ssh -L 5900:localhost:5900 this-machine, then a VNC viewer on localhost:5900)."
    export QT_QPA_PLATFORM="vnc:size=1100x700:port=5900"
fi
exec "$BUILD/bin/orin"
