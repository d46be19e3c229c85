#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# What a run's ledger costs: one URL to many engines with 50 connections against nginx on loopback, with and
# without it. Interleaved pairs, medians, ratio of the requests per second from the catalogue's loading to the end.
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
    for ledger in none ledger; do
        "$programs/bench_submit" "$home" "$home/site.kws" "$ledger" >>"$folder/$ledger.txt"
    done
done
rm -rf "$home"
awk -v without="$(median "$folder/none.txt" 1)" -v with="$(median "$folder/ledger.txt" 1)" \
    -v cpu_without="$(median "$folder/none.txt" 3)" -v cpu_with="$(median "$folder/ledger.txt" 3)" 'BEGIN {
    printf "without a ledger %d requests/s, %.2f us CPU each\n", without, cpu_without
    printf "with a ledger    %d requests/s, %.2f us CPU each: rate ratio %.3f (0.95 wanted)\n", with, cpu_with, with / without }'
