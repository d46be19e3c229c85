#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# A ranking run compared with a bare libcurl loop that asks for the same addresses and writes the same files, with
# nginx on loopback: 50 engines with 100 pages of 20 KB each. Interleaved pairs, medians, ratio of the pages per
# second.
# Usage: bench/ranking.sh [FOLDER OF THE PROGRAMS [PAIRS]]
set -eu
programs=${1:-build/release/bench}
pairs=${2:-5}

. "$(dirname "$0")/nginx.sh"

start_nginx
"$programs/bench_ranking_run" make "$folder" "http://127.0.0.1:$port"
echo "$(nproc) cores, $pairs interleaved pairs, medians, 50 engines, 100 pages of 20 KB each"
echo "reference: the same addresses by a libcurl multi_poll loop on one thread, files renamed into place"
for pair in $(seq "$pairs"); do
    "$programs/bench_ranking_run" bare "$folder" >>"$folder/bare.txt"
    "$programs/bench_ranking_run" run "$folder" >>"$folder/run.txt"
done
awk -v bare="$(median "$folder/bare.txt" 1)" -v run="$(median "$folder/run.txt" 1)" 'BEGIN {
    printf "bare loop %d pages/s, ranking run %d pages/s: ratio %.3f (0.60 wanted)\n", bare, run, run / bare }'
