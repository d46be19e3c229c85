#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# bench/ftp.sh FOLDER [PAIRS]: uploads by korvel-relay-cli compared with curl, both as whole processes, to vsftpd on
# loopback, which stores in memory: one file of 1 GB, 1,000 files of 10 KB by one connection, both with and without
# TLS. Interleaved pairs, medians, ratios of the rates. With many files curl often pauses for a second before it opens
# a data connection, so it is also taken without those seconds, which its own time of each file tells.
set -euo pipefail
cli=$(realpath "$1/../src/korvel-relay-cli")
pairs=${2:-${PAIRS:-5}}
cd "$(dirname "${BASH_SOURCE[0]}")/.."
certificates=$PWD/tests/transport/certificates
vsftpd=$(PATH=$PATH:/usr/sbin command -v vsftpd) || {
  tools/ftp-servers build/ftp-servers
  vsftpd=$PWD/build/ftp-servers/usr/sbin/vsftpd
}
work=$(mktemp -d -p /dev/shm)
server=
trap 'kill "$server" 2>/dev/null || true; wait; rm -rf "$work"' EXIT
trap 'exit 130' INT TERM
export SSL_CERT_FILE=$certificates/authority.pem
port=$(shuf -i 20000-30000 -n 1)
mkdir -p "$work/root/up" "$work/small"
chmod 755 "$work"
chmod 777 "$work/root/up"
cat >"$work/conf" <<CONF
listen=YES
listen_address=127.0.0.1
listen_port=$port
background=NO
run_as_launching_user=YES
anonymous_enable=YES
anon_root=$work/root
anon_upload_enable=YES
anon_other_write_enable=YES
write_enable=YES
allow_writeable_chroot=YES
seccomp_sandbox=NO
xferlog_enable=NO
ssl_enable=YES
allow_anon_ssl=YES
force_local_logins_ssl=NO
force_local_data_ssl=NO
ssl_tlsv1=YES
require_ssl_reuse=YES
ssl_ciphers=HIGH
rsa_cert_file=$certificates/good.pem
rsa_private_key_file=$certificates/server.key
CONF
chmod 600 "$work/conf"
"$vsftpd" "$work/conf" &
server=$!
echo x >"$work/password"
head -c 1000000000 /dev/urandom >"$work/big.bin"
for ((i = 0; i < 1000; ++i)); do head -c 10000 /dev/urandom >"$work/small/$i.bin"; done

relay() { # OPTIONS... FILE...
  "$cli" --home "$work/home" --quiet ftp put --host "127.0.0.1:$port" --user anonymous \
    --password-file "$work/password" --path up "$@" >/dev/null
}
plain_curl() {
  curl -sS --disable-epsv --user anonymous:x -w '%{time_total}\n' -T "$1" "ftp://127.0.0.1:$port/up/" >"$work/each"
}
tls_curl() {
  curl -sS --disable-epsv --ssl-reqd --tls-max 1.2 --cacert "$certificates/authority.pem" --user anonymous:x \
    -w '%{time_total}\n' -T "$1" "ftp://127.0.0.1:$port/up/" >"$work/each"
}
without_pauses() { # FILE: appends the microseconds of the last curl without its pauses
  awk -v whole="$(tail -n 1 "$work/$1.curl")" '{ paused += int($1) } END { printf "%.0f\n", whole - paused * 1e6 }' \
    "$work/each" >>"$work/$1.steady"
}
seconds() { # FILE COMMAND...: appends the seconds of the command
  local to=$1 from
  shift
  from=$(date +%s%N)
  "$@"
  echo "$((($(date +%s%N) - from) / 1000)) " >>"$to"
}
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] / 1e6 }'; }
compare() { # WORDS WANTED NAME [CURL'S TIMES]
  awk -v words="$1" -v wanted="$2" -v mine="$(median "$work/$3.relay")" -v curl="$(median "$work/$3.${4:-curl}")" 'BEGIN {
    printf "%s: %.3f s, curl %.3f s: ratio of the rates %.2f (%s wanted)\n", words, mine, curl, curl / mine, wanted }'
}

echo "$(nproc) cores, $pairs interleaved pairs, medians"
for ((pair = 0; pair < pairs; ++pair)); do
  seconds "$work/big.relay" relay "$work/big.bin"
  seconds "$work/big.curl" plain_curl "$work/big.bin"
  seconds "$work/tls.relay" relay --tls "$work/big.bin"
  seconds "$work/tls.curl" tls_curl "$work/big.bin"
  seconds "$work/small.relay" relay "$work"/small/*.bin
  seconds "$work/small.curl" plain_curl "$work/small/[0-999].bin"
  without_pauses small
  seconds "$work/smalltls.relay" relay --tls "$work"/small/*.bin
  seconds "$work/smalltls.curl" tls_curl "$work/small/[0-999].bin"
  without_pauses smalltls
done
cmp "$work/big.bin" "$work/root/up/big.bin"
compare "1 GB" 0.9 big
compare "1 GB with TLS" 0.8 tls
compare "1,000 files of 10 KB" 0.9 small
compare "1,000 files of 10 KB, curl without its pauses" 0.9 small steady
compare "1,000 files of 10 KB with TLS" 0.8 smalltls
compare "1,000 files of 10 KB with TLS, curl without its pauses" 0.8 smalltls steady
# Memory must not grow with the file.
for size in 10 1000; do
  head -c "${size}000000" "$work/big.bin" >"$work/part.bin"
  "$cli" --home "$work/home" --quiet ftp put --host "127.0.0.1:$port" --user anonymous \
    --password-file "$work/password" --path up "$work/part.bin" >/dev/null &
  client=$!
  peak=0
  while kill -0 "$client" 2>/dev/null; do
    now=$(awk '/VmHWM/ { print $2 }' "/proc/$client/status" 2>/dev/null || true)
    [ -z "$now" ] || peak=$now
  done
  wait "$client"
  echo "most memory with $size MB: $peak KB"
done
