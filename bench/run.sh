#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# A whole run compared with a bare libcurl loop, with nginx on loopback: korvel-relay-cli submits one URL to many
# engines with 50 connections, catalogue, templates, log and report included. Interleaved pairs, medians, ratios
# of the requests per second of the whole process.
# Usage: bench/run.sh [FOLDER OF THE PROGRAMS [PAIRS [ENGINES]]]
set -eu
programs=${1:-build/release/bench}
pairs=${2:-5}
engines=${3:-20000}
cli=$programs/../src/korvel-relay-cli

. "$(dirname "$0")/nginx.sh"
. "$(dirname "$0")/home.sh"

seconds() { date +%s.%N; }

# run_once HOME COUNT: requests per second of the whole process, and its seconds.
run_once() {
    rm -f "$1/fail.eng"
    begin=$(seconds)
    "$cli" --home "$1" --quiet submit --website "$1/site.kws" --all --connections 50 >"$1/out" 2>&1 || {
        cat "$1/out" >&2
        exit 1
    }
    awk -v begin="$begin" -v end="$(seconds)" -v n="$2" 'BEGIN { printf "%.0f %.4f\n", n / (end - begin), end - begin }'
}

start_nginx
make_home "$folder/once" "$engines"
make_home "$folder/half" $((engines / 2))
echo "$(nproc) cores, $pairs interleaved pairs, medians, $engines engines, 50 connections"
echo "reference: $programs/bench_bare_loop http://127.0.0.1:$port/ 50 $engines"
for pair in $(seq "$pairs"); do
    "$programs/bench_bare_loop" "http://127.0.0.1:$port/" 50 "$engines" >>"$folder/bare.txt"
    run_once "$folder/once" "$engines" >>"$folder/run.txt"
    run_once "$folder/half" $((engines / 2)) >>"$folder/half.txt"
done
awk -v bare="$(median "$folder/bare.txt" 1)" -v run="$(median "$folder/run.txt" 1)" \
    -v full="$(median "$folder/run.txt" 2)" -v half="$(median "$folder/half.txt" 2)" 'BEGIN {
    printf "bare loop %d requests/s, whole run %d requests/s: ratio %.3f (0.70 wanted)\n", bare, run, run / bare
    printf "half the engines %.2f s, all of them %.2f s: %.2f times (2 wanted)\n", half, full, full / half }'
