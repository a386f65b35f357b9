#!/usr/bin/env bash
# Start-up, memory and idle of the shell against the floor of a bare frameless 1024x64 window of
# the same toolkit, on a virtual display. Run on demand, never in CI.
#   bench/startup/startup.sh [--quick] [build-folder]
# Cases, each with the toolkit's GL integration (xcb_glx, "gl") and switched off ("nogl"):
# the shell on the demo machine, the bare window, and the shell on a large medium (10,000-line
# data_shell.cfg, 1,000 desktop entries). BENCH_BEFORE=<another autorun> adds its shell cases,
# run interleaved with the rest, for before-and-after figures.
# Per case and round: milliseconds from exec to the panel's window mapped (an X MapNotify) and
# the CPU milliseconds (user + system) spent by then, RSS
# and PSS ten seconds after exec (smaps_rollup), then CPU time (utime+stime) and wake-ups
# (voluntary + involuntary context switches, of the main thread and of all threads) over the idle
# time. Printed: the
# median of each over the rounds. A round starts its cases one after the other, 12 s apart, and
# lets their idle windows overlap: every figure but the start time is the process's own.
# ROUNDS (7; quick 3) and IDLE seconds (60; quick 15) override the defaults.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
quick=0
if [ "${1:-}" = "--quick" ]; then quick=1; shift; fi
build=$(cd "${1:-$repo/build}" && pwd)
rounds=${ROUNDS:-$([ $quick = 1 ] && echo 3 || echo 7)}
idle=${IDLE:-$([ $quick = 1 ] && echo 15 || echo 60)}

if [ -z "${BENCH_INNER:-}" ]; then
    cmake --build "$build" --target autorun bench_bare_window bench_mapwait >/dev/null
    export BENCH_INNER=1
    exec xvfb-run -a -s "-screen 0 1024x768x24" "$0" "$@"
fi

shell=$build/my_shell1/autorun
bare=$build/bench/startup/bench_bare_window
mapwait=$build/bench/startup/bench_mapwait
work=$(mktemp -d /tmp/kelpie-bench-XXXXXX)
# Programs still running when the run is cut short are ended by their ids.
trap 'for p in $(cat "$work/pids" 2>/dev/null); do kill "$p" 2>/dev/null; done; rm -rf "$work"' EXIT

# The demo's font setting: Tahoma from Wine's fonts as the sans-serif.
if [ -d /usr/share/wine/fonts ]; then export FONTCONFIG_FILE="$repo/tools/tahoma-fonts.conf"; fi

# The large medium: the demo machine with a generated data_shell.cfg (the lines of
# bench/config_read) and 1,000 shortcuts on the desktop.
cp -r "$repo/demo/machine" "$work/large"
python3 - "$work/large" <<'PY'
import os, shutil, sys
root = sys.argv[1]
out = ["; generated medium", "title=Bench", "version=1.0"]
menu = 0
i = 0
while len(out) < 10000:
    k = i % 10
    if k == 0:
        menu += 1
        out.append("mainMenu=%d|Group %d|g.png" % (menu, menu))
    elif k == 5: out.append("mainSeparator")
    elif k == 7: out.append("morvaneItem=n.png|r.png|a.png|Tip|tool.exe|-x")
    elif k == 8: out.append("fixedB3=t.png|Tasks|taskmgr.exe")
    elif k == 9: out.append("; a comment line that says nothing at all")
    else: out.append("menuItem=%d|%d|Entry %d|icons/e24.png|tools/e.exe|-a -b|A hint" % (menu, 10000 + i, i))
    i += 1
open(os.path.join(root, "drives/X/Program Files/kelpie/data_shell.cfg"), "w", newline="").write("\r\n".join(out) + "\r\n")
desk = os.path.join(root, "drives/X/Users/Default/Desktop")
src = os.path.join(desk, "Command Prompt.lnk")
for n in range(1000 - 5):
    shutil.copyfile(src, os.path.join(desk, "Shortcut %04d.lnk" % n))
PY

cases=(shell-demo-gl shell-demo-nogl bare-gl bare-nogl shell-large-gl shell-large-nogl)
if [ -n "${BENCH_BEFORE:-}" ]; then
    cases+=(before-demo-gl before-demo-nogl before-large-gl before-large-nogl)
fi

# Starts one case in the background of the round: writes "<ms> <rss kB> <pss kB> <idle cpu ms>
# <wakeups/s main> <wakeups/s all> <start-up cpu ms>" to $work/r<round>.<case>.
run_case() {
    local name=$1 round=$2
    local result=$work/r$round.$name
    local program machine="" title="Tessel Shell" gl=""
    case $name in
        shell-*) program=$shell ;;
        before-*) program=$BENCH_BEFORE ;;
        bare-*) program=$bare; title="Bare Panel" ;;
    esac
    case $name in
        *-demo-*) machine=$work/m$round.$name; cp -r "$repo/demo/machine" "$machine" ;;
        *-large-*) machine=$work/m$round.$name; cp -r "$work/large" "$machine" ;;
    esac
    # Named either way: the shell switches the integration off by itself where nothing is said.
    case $name in *-nogl) gl=none ;; *) gl=xcb_glx ;; esac
    local out rc=0
    out=$(env ${gl:+QT_XCB_GL_INTEGRATION=$gl} ${machine:+KELPIE_MACHINE=$machine} \
          "$mapwait" "$title" "$program" 2>>"$work/stderr") || rc=$?
    if [ "$rc" -ne 0 ]; then
        echo "timeout" > "$result"
        if [ -n "$out" ]; then kill "${out%% *}" 2>/dev/null || true; fi
        return 0
    fi
    local pid=${out%% *} ms=${out##* } startCpu
    startCpu=${out#* }; startCpu=${startCpu%% *}
    echo "$pid" >> "$work/pids"
    (
        sleep $(awk -v ms="$ms" 'BEGIN { s = 10 - ms / 1000; print (s > 0 ? s : 0) }')
        local rss pss
        rss=$(awk '/^Rss:/ { print $2 }' /proc/$pid/smaps_rollup)
        pss=$(awk '/^Pss:/ { print $2 }' /proc/$pid/smaps_rollup)
        read -r -a a < /proc/$pid/stat
        local s0 m0
        s0=$(cat /proc/$pid/task/*/status | awk '/ctxt_switches/ { n += $2 } END { print n }')
        m0=$(awk '/ctxt_switches/ { n += $2 } END { print n }' /proc/$pid/task/$pid/status)
        sleep "$idle"
        read -r -a b < /proc/$pid/stat
        local s1 m1
        s1=$(cat /proc/$pid/task/*/status | awk '/ctxt_switches/ { n += $2 } END { print n }')
        m1=$(awk '/ctxt_switches/ { n += $2 } END { print n }' /proc/$pid/task/$pid/status)
        kill "$pid" 2>/dev/null; sleep 0.2; kill -9 "$pid" 2>/dev/null || true
        local hz; hz=$(getconf CLK_TCK)
        awk -v ms="$ms" -v rss="$rss" -v pss="$pss" -v t=$(( (b[13] + b[14]) - (a[13] + a[14]) )) \
            -v hz="$hz" -v w=$(( s1 - s0 )) -v m=$(( m1 - m0 )) -v s="$idle" -v c="$startCpu" \
            'BEGIN { printf "%s %d %d %.0f %.2f %.2f %s\n", ms, rss, pss, 1000 * t / hz, m / s, w / s, c }' > "$result"
    ) &
}

echo "startup.sh: $rounds rounds, ${idle} s idle, cases: ${cases[*]}" >&2
for ((r = 1; r <= rounds; r++)); do
    # The order turns with the round, so that no case always comes first.
    n=${#cases[@]}
    for ((k = 0; k < n; k++)); do
        c=${cases[$(( (k + r) % n ))]}
        start=$(date +%s.%N)
        run_case "$c" "$r"
        # the next start waits until this one has taken its memory figure
        sleep $(awk -v s="$start" -v now="$(date +%s.%N)" 'BEGIN { d = 11 - (now - s); print (d > 0 ? d : 0) }')
    done
    wait
    echo "startup.sh: round $r done" >&2
done

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR == 0) print "-"; else if (NR % 2) print v[(NR + 1) / 2]; else print (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
printf '%-18s %10s %8s %8s %8s %11s %12s %12s\n' case "mapped ms" "CPU ms" "RSS MiB" "PSS MiB" "CPU % core" "wakes/s main" "wakes/s all"
for c in "${cases[@]}"; do
    files=("$work"/r*."$c")
    ms=$(cat "${files[@]}" | awk '$1 != "timeout" { print $1 }' | median)
    startCpu=$(cat "${files[@]}" | awk 'NF == 7 { print $7 }' | median)
    rss=$(cat "${files[@]}" | awk 'NF == 7 { print $2 / 1024 }' | median)
    pss=$(cat "${files[@]}" | awk 'NF == 7 { print $3 / 1024 }' | median)
    cpu=$(cat "${files[@]}" | awk -v s="$idle" 'NF == 7 { print $4 / 10 / s }' | median)
    wake=$(cat "${files[@]}" | awk 'NF == 7 { print $5 }' | median)
    wakeAll=$(cat "${files[@]}" | awk 'NF == 7 { print $6 }' | median)
    timeouts=$(cat "${files[@]}" | grep -c timeout || true)
    printf '%-18s %10s %8s %8.1f %8.1f %11.3f %12.2f %12.2f%s\n' "$c" "$ms" "$startCpu" "$rss" "$pss" "$cpu" "$wake" "$wakeAll" \
        "$([ "$timeouts" -gt 0 ] && echo "  ($timeouts time-outs)")"
done

# Ratios of the shell to the bare window in the same round (start) and differences (memory).
echo
for g in gl nogl; do
    for m in demo large; do
        for who in shell before; do
            ls "$work"/r*."$who-$m-$g" >/dev/null 2>&1 || continue
            for ((r = 1; r <= rounds; r++)); do
                [ -f "$work/r$r.$who-$m-$g" ] && [ -f "$work/r$r.bare-$g" ] || continue
                paste -d' ' "$work/r$r.$who-$m-$g" "$work/r$r.bare-$g"
            done | awk 'NF == 14 { print $1 / $8, ($2 - $9) / 1024 }' > "$work/ratio"
            printf '%-18s mapped %.2f x the bare window, RSS %+.1f MiB (medians of per-round figures)\n' \
                "$who-$m-$g" "$(cut -d' ' -f1 "$work/ratio" | median)" "$(cut -d' ' -f2 "$work/ratio" | median)"
        done
    done
done
exit 0
