#!/usr/bin/env bash
# CPU time of the shell idling on the demo machine for 60 s on a virtual display.
#   bench/panel_ticks/idle-cpu.sh [build-folder] [seconds]
set -euo pipefail
build=${1:-build}
seconds=${2:-60}
export shell="$build/my_shell1/autorun" seconds
xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
    "$shell" 2>/dev/null & pid=$!
    sleep 5   # start-up is not idling
    read -r -a a < /proc/$pid/stat
    sleep "$seconds"
    read -r -a b < /proc/$pid/stat
    kill "$pid"; wait "$pid" 2>/dev/null || true
    hz=$(getconf CLK_TCK)
    ticks=$(( (b[13] + b[14]) - (a[13] + a[14]) ))
    awk -v t="$ticks" -v hz="$hz" -v s="$seconds" \
        "BEGIN { printf \"idle CPU: %.3f %% of a core over %d s (target < 0.2 %%)\n\", 100 * t / hz / s, s }"
'
