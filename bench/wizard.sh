#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# A submission from the window beside the same one from the command line: one URL to many engines with 50
# connections, against nginx on loopback. Interleaved pairs, medians; requests per second of the run for the
# window (from the click on "Submit" to the last page) and of the whole process for both, and the longest time
# for which the window's event loop did not turn.
# Usage: bench/submit.sh [FOLDER OF THE PROGRAMS [PAIRS [ENGINES]]]
set -eu
programs=${1:-build/release/bench}
pairs=${2:-5}
engines=${3:-20000}
cli=$programs/../src/korvel-relay-cli
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"

. "$(dirname "$0")/nginx.sh"
. "$(dirname "$0")/home.sh"

seconds() { date +%s.%N; }
# rate BEGIN: requests per second since then.
rate() { awk -v begin="$1" -v end="$(seconds)" -v n="$engines" 'BEGIN { printf "%.0f\n", n / (end - begin) }'; }

start_nginx
home=$folder/home
make_home "$home" "$engines"
printf '[Bench]\r\nDescription=\r\nLast=1\r\n1=Lantern|%s\r\n' "$home/site.kws" >"$home/project.kwj"
printf '[Korvel%%20Relay]\nPreference\\LoadConfig=1\nSetting\\Version=6.0\n' >"$home/settings.ini"
echo "$(nproc) cores, $pairs interleaved pairs, medians, $engines engines, 50 connections, $QT_QPA_PLATFORM"
for pair in $(seq "$pairs"); do
    begin=$(seconds)
    "$cli" --home "$home" --quiet submit --website "$home/site.kws" --all --connections 50 >"$folder/out" 2>&1 || {
        cat "$folder/out" >&2
        exit 1
    }
    rate "$begin" >>"$folder/cli.txt"
    begin=$(seconds)
    "$programs/bench_wizard" "$home" 50 >"$folder/line" 2>"$folder/boxes"
    rate "$begin" >>"$folder/window.txt"
    cat "$folder/line" >>"$folder/run.txt"
done
worst() { cut -d' ' -f"$1" "$folder/run.txt" | sort -n | tail -n 1; }
awk -v cli="$(median "$folder/cli.txt" 1)" -v window="$(median "$folder/window.txt" 1)" \
    -v run="$(median "$folder/run.txt" 1)" -v n="$engines" -v open="$(worst 2)" -v list="$(worst 3)" \
    -v stall="$(worst 4)" -v success="$(median "$folder/run.txt" 5)" 'BEGIN {
    printf "command line %d requests/s, window %d requests/s: ratio %.2f (0.80 wanted)\n", cli, window, window / cli
    printf "the run alone %d requests/s, %d of %d succeeded\n", n / run, success, n
    printf "longest stalls of all runs: opening %.0f ms, listing %.0f ms, running %.0f ms (100 allowed)\n", open, list, stall }'
