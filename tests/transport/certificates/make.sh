#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Renews the certificates of the TLS tests in this folder: an authority of our own, and servers that it
# certifies, certified in 2020, certifies under another name, or does not certify.
set -eu
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/made"

# make NAME KEY EXTENSION LASTDAY [OPTION OF openssl ca...]: NAME.pem, valid from 2020.
make() {
    name=$1 key=$2 extension=$3 last=$4
    shift 4
    : >"$work/index"
    cat >"$work/config" <<CONFIG
[ca]
default_ca = own
[own]
database = $work/index
new_certs_dir = $work/made
rand_serial = yes
default_md = sha256
policy = any
x509_extensions = extensions
[any]
commonName = supplied
[extensions]
$extension
CONFIG
    openssl req -new -key "$key" -subj "/CN=$name" -out "$work/request"
    openssl ca -batch -notext -config "$work/config" -in "$work/request" -out "$name.pem" \
        -startdate 20200101000000Z -enddate "$last" "$@"
}

openssl ecparam -name prime256v1 -genkey -noout -out "$work/authority.key"
openssl ecparam -name prime256v1 -genkey -noout -out server.key
make authority "$work/authority.key" "basicConstraints = critical,CA:TRUE" 21250101000000Z \
    -selfsign -keyfile "$work/authority.key"
set -- -cert authority.pem -keyfile "$work/authority.key"
make good server.key "subjectAltName = IP:127.0.0.1" 21250101000000Z "$@"
make expired server.key "subjectAltName = IP:127.0.0.1" 20200102000000Z "$@"
make other-host server.key "subjectAltName = DNS:other.test" 21250101000000Z "$@"
make self-signed server.key "subjectAltName = IP:127.0.0.1" 21250101000000Z -selfsign -keyfile server.key
