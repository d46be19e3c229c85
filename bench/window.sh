#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# bench/window.sh FOLDER: the window's start compared with an empty main window, its lists with bare ones, a click on
# a website of 1,000 URLs, and operations on 30,000 engines. Medians of alternating pairs.
set -euo pipefail
program=$1/bench_window
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
runs=${RUNS:-9}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$program" home "$work/start" 5000
"$program" home "$work/lists" 30000

median() { sort -n "$1" | awk '{ line[NR] = $1 } END { print line[int((NR + 1) / 2)] }'; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
wall() { # milliseconds of a whole process
  local from to
  from=$(date +%s%N)
  "$@" >/dev/null 2>&1
  to=$(date +%s%N)
  awk -v ns=$((to - from)) 'BEGIN { printf "%.2f\n", ns / 1e6 }'
}
value() { awk -v what="$1" '$1 == what { print $2 }'; }

for ((run = 0; run < runs; ++run)); do
  wall "$program" empty >>"$work/empty"
  wall "$program" start "$work/start" >>"$work/window"
  "$program" bare 30000 2>/dev/null | value bare >>"$work/bare"
  "$program" lists "$work/lists" 2>/dev/null | value lists >>"$work/filled"
  "$program" node "$work/start" 2>/dev/null | value node >>"$work/node"
done
empty=$(median "$work/empty") window=$(median "$work/window")
bare=$(median "$work/bare") filled=$(median "$work/filled")
echo "start to first painting, 5,000 engines, 200 websites: $window ms; empty main window: $empty ms; ratio $(ratio "$window" "$empty")"
echo "two lists of 30,000 rows, filled and painted: $filled ms; bare models and views: $bare ms; ratio $(ratio "$filled" "$bare")"
echo "click on a website of 1,000 URLs, saved, loaded and painted: $(median "$work/node") ms"
echo "30,000 engines, one run:"
"$program" engines "$work/lists" 2>/dev/null | sed 's/^/  /; s/$/ ms/'
