#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# What a run's ledger costs: one URL to many engines with 50 connections against nginx on loopback, with and
# without it. Interleaved pairs, median of the ratios of the requests per second from the catalogue's loading to the end.
# Usage: bench/ledger.sh [FOLDER OF THE PROGRAMS [PAIRS [ENGINES [FOLDER FOR THE HOME]]]]
# The home lies in a folder of its own on the disk that is named: a ledger is flushed once a second.
set -eu
programs=${1:-build/release/bench}
pairs=${2:-9}
engines=${3:-20000}
cli=$programs/../src/korvel-relay-cli

. "$(dirname "$0")/nginx.sh"
. "$(dirname "$0")/home.sh"

start_nginx
home=${4:-$folder}/ledger-home
make_home "$home" "$engines"
echo "$(nproc) cores, $pairs interleaved pairs, medians, $engines engines, 50 connections"
for pair in $(seq "$pairs"); do
    order="none ledger"
    if [ $((pair % 2)) = 0 ]; then order="ledger none"; fi
    for ledger in $order; do
        "$programs/bench_submit" "$home" "$home/site.kws" "$ledger" >>"$folder/$ledger.txt"
    done
done
rm -rf "$home"
# Neighbours on the machine disturb one pair, not the median of all ratios.
paste -d' ' "$folder/none.txt" "$folder/ledger.txt" | awk '{ printf "%.4f %.4f\n", $5 / $1, $7 / $3 }' >"$folder/ratios.txt"
awk -v without="$(median "$folder/none.txt" 1)" -v with="$(median "$folder/ledger.txt" 1)" \
    -v rate="$(median "$folder/ratios.txt" 1)" -v cpu="$(median "$folder/ratios.txt" 2)" \
    -v stall="$(median "$folder/ledger.txt" 4)" 'BEGIN {
    printf "without a ledger %d requests/s, with one %d: median ratio %.3f (0.95 wanted)\n", without, with, rate
    printf "CPU time a request: median ratio %.3f; event loop held up for %.0f ms at most\n", cpu, stall }'
