#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# The connection pool compared with a bare libcurl loop, with nginx on loopback, with and without TLS: interleaved
# pairs, medians, ratios.
# Usage: bench/pool.sh [FOLDER OF THE PROGRAMS [PAIRS [REQUESTS]]]
set -eu
programs=${1:-build/release/bench}
pairs=${2:-5}
requests=${3:-20000}

. "$(dirname "$0")/nginx.sh"

# compare URL SLOTS REQUESTS
compare() {
    rm -f "$folder/bare" "$folder/pool"
    for pair in $(seq "$pairs"); do
        "$programs/bench_bare_loop" "$1" "$2" "$3" >>"$folder/bare"
        "$programs/bench_pool" "$1" "$2" "$3" >>"$folder/pool"
    done
    awk -v scheme="${1%%:*}" -v slots="$2" -v br="$(median "$folder/bare" 1)" -v pr="$(median "$folder/pool" 1)" \
        -v bc="$(median "$folder/bare" 2)" -v pc="$(median "$folder/pool" 2)" 'BEGIN {
        printf "%s %4d slots: bare loop %6d requests/s %6.2f us CPU; pool %6d requests/s %6.2f us CPU; ", scheme, slots, br, bc, pr, pc
        printf "rate ratio %.3f (0.90 wanted), CPU ratio %.3f (1.15 allowed)\n", pr / br, pc / bc }'
}

ulimit -S -n "$(ulimit -H -n)" # the bare loop does not raise it itself
start_nginx
echo "$(nproc) cores, $pairs interleaved pairs, medians, $requests requests each"
echo "reference: $programs/bench_bare_loop http://127.0.0.1:$port/ SLOTS $requests"
for slots in 10 50 200; do compare "http://127.0.0.1:$port/" "$slots" "$requests"; done
export SSL_CERT_FILE="$bundle"
for slots in 50 1000; do compare "https://127.0.0.1:$tls_port/" "$slots" 1000; done

rm -f "$folder/once" "$folder/twice" "$folder/delay"
for pair in $(seq "$pairs"); do
    "$programs/bench_pool" "http://127.0.0.1:$port/" 50 "$requests" >>"$folder/once"
    "$programs/bench_pool" "http://127.0.0.1:$port/" 50 $((requests * 2)) >>"$folder/twice"
    "$programs/bench_pool" delay 50 5000 >>"$folder/delay"
done
awk -v once="$(median "$folder/once" 3)" -v twice="$(median "$folder/twice" 3)" -v n="$requests" 'BEGIN {
    printf "peak memory: %d KiB after %d requests, %d KiB after %d: ratio %.3f\n", once, n, twice, 2 * n, twice / once }'
awk -v share="$(median "$folder/delay" 2)" -v rate="$(median "$folder/delay" 1)" 'BEGIN {
    printf "50 ms server, 50 slots: %d requests/s, %.3f of the ideal rate (0.90 wanted)\n", rate, share }'
