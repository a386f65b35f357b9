# shellcheck shell=bash
# The network bring-up of the boot: the medium's static address script and share mapping script,
# played by scripts that start the probe (so each start is on record) and write the logs the
# shell reads. The static address takes a second run, the share maps on the first; only then do
# the start-up programs run. Sourced by e2e.sh, before the shell's part: the bring-up runs from
# the first second of the boot, while the shell's part begins by waiting for a start menu.

wait_panel="370x100+327+334"   # the desktop's wait panel, centred on a 1024x768 screen

prepare_network() {
    cp "$probe_exe" "$kelpie/bringup_probe.exe"
    # A first run leaves a log of two lines (the script complained), every later run one line.
    printf '%s\r\n' '@echo off' \
        '"x:\Program Files\kelpie\bringup_probe.exe" static' \
        'if exist x:\static_ip.run goto again' \
        'echo. > x:\static_ip.run' \
        'echo Setting the static address...> x:\static_ip.log' \
        'echo The adapter is not ready.>> x:\static_ip.log' \
        'goto :eof' \
        ':again' \
        'echo Ok.> x:\static_ip.log' > "$kelpie/start_ip.cmd"
    printf '%s\r\n' '@echo off' \
        '"x:\Program Files\kelpie\bringup_probe.exe" map' \
        'echo System error 53 has occurred.> x:\map_network.log' \
        'echo The command completed successfully.>> x:\map_network.log' > "$X/map_network.cmd"
    rm -f "$X/static_ip.log" "$X/map_network.log"
}

booted_network() {
    check static-ip-wait-panel wait_panel_shown
    # The log is read as the script is started, not when it ends: the success that the second run
    # writes is seen at the second attempt or, when the script is slow, at the third.
    check static-ip-second-run wait_for 40 started 'bringup_probe\.exe$' 'static'
    check static-ip-succeeds wait_for 40 map_started
    check static-ip-runs static_runs_between 2 3
    check static-ip-trace init_log_counts_runs
    check map-network-succeeds wait_for 30 started '^x:\\program files\\kelpie\\netprobe\.exe$' '-quiet'
    check map-network-runs map_runs_between 1 2
    check bring-up-order bring_up_in_order
    check wait-panel-gone wait_for 10 wait_panel_gone
}

wait_panel_shown() {
    wait_for 10 panel_area_busy && shot network-wait
}

panel_area_busy() {
    shot network && [ "$(colours network "$wait_panel")" -gt 1 ]
}

wait_panel_gone() {
    shot network-after && [ "$(colours network-after "$wait_panel")" = 1 ]
}

map_started() { started 'bringup_probe\.exe$' 'map'; }

static_runs_between() {
    local n
    n=$(started_count 'bringup_probe\.exe$' 'static')
    [ "$n" -ge "$1" ] && [ "$n" -le "$2" ] || { say "  $n runs of start_ip.cmd"; return 1; }
}

map_runs_between() {
    local n
    n=$(started_count 'bringup_probe\.exe$' 'map')
    [ "$n" -ge "$1" ] && [ "$n" -le "$2" ] || { say "  $n runs of map_network.cmd"; return 1; }
}

# One "startIp=<last error>" line in the trace for each run of the static address script.
init_log_counts_runs() {
    local runs lines
    runs=$(started_count 'bringup_probe\.exe$' 'static')
    lines=$(grep -caP '^startIp=\d+\r$' "$X/init.log" 2>/dev/null || true)
    [ "$runs" = "$lines" ] || { say "  $lines trace lines for $runs runs"; return 1; }
}

# Static address runs, then the mapping runs, then the start-up programs, in the probe log.
bring_up_in_order() {
    probe_lines | awk -F'\t' '
        tolower($1) ~ /bringup_probe\.exe$/ && $2 == "static" { if (seen_map || seen_run) bad = 1; s++ }
        tolower($1) ~ /bringup_probe\.exe$/ && $2 == "map" { if (!s || seen_run) bad = 1; seen_map = 1 }
        tolower($1) ~ /netprobe\.exe$/ { if (!seen_map) bad = 1; seen_run = 1 }
        END { exit bad || !seen_run }'
}
