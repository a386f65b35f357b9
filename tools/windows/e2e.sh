#!/usr/bin/env bash
# The demo medium booted under Wine as on a real machine: the real autorun.exe with the Win32
# platform, in a Wine virtual desktop of 1024x768 on a private Xvfb, x: and e: mapped to fresh
# copies of demo/machine/drives/X and E, the shell started in X:\Program Files\kelpie, Windows PE
# mode on, and the probe program standing in for every program of the medium. Each assertion is
# a named check; the run goes on past a failed check and fails at the end naming every one.
# Screenshots are kept as <build>/e2e-*.png.
#
#   tools/windows/e2e.sh [build-folder]     (default build-win/; needs deploy/, the probe, the sender)
#   KELPIE_E2E_CFG=<file>    boot with this data_shell.cfg instead of the demo medium's
#   KELPIE_E2E_TIMEOUT       seconds the shell may take to come up (default 120)
#
# A subsystem adds its part as tools/windows/e2e.d/<NN>-<name>.sh (sourced in name order; see
# 10-shell.sh). It defines any of these functions, each called once, phase by phase over all parts:
#   prepare_<name>   before the boot: change the medium under $X and $E (host folders of x: and
#                    e:). Every .exe of the medium is a probe already; `probe_as <path or bare
#                    name>` adds one (a bare name such as wpeutil.exe goes to the system folder,
#                    where the system finds it); a probe.ini beside it sets its exit code and wait.
#                    A .cmd script of the medium runs in Wine's cmd.exe, so a script that writes
#                    the log the shell reads is written as it stands. `reg_line` adds registry lines.
#   booted_<name>    the panel is up; parts after 10-shell find the start menu closed again and the
#                    start-up queue run. Act (`click X Y`, `pointer X Y`, `send ...` through the
#                    sender, `shot NAME`) and assert with `check <name> <command...>`; `wait_for
#                    <seconds> <command...>` polls, `started <program regex> [<args regex>]` reads
#                    the probe log ($probe_log), `window_rect <title>` asks the system.
#   finish_<name>    after every booted_ step: may turn the shell off, `stop_shell`, and `boot` again.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$repo/build-win}" && pwd)
deploy=$build/deploy
probe_exe=$build/tools/probe/kelpie_probe.exe
send_exe=$build/tools/sender/kelpie_send.exe
for f in "$deploy/autorun.exe" "$probe_exe" "$send_exe"; do
    [ -f "$f" ] || { echo "e2e.sh: no $f; run tools/windows/build.sh first" >&2; exit 1; }
done
boot_timeout=${KELPIE_E2E_TIMEOUT:-120}
started_at=$SECONDS

work=$(mktemp -d "${TMPDIR:-/tmp}/kelpie-e2e.XXXXXX")
export WINEPREFIX=$work/prefix
export WINEDEBUG=-all
# No Mono or Gecko installer dialogs in a fresh prefix.
export WINEDLLOVERRIDES="mscoree,mshtml="
X=$work/X
E=$work/E
kelpie=$X/Program\ Files/kelpie
system=$WINEPREFIX/drive_c/windows/system32
probe_log=$work/probe.log
regfile=$work/setup.reg
xvfb_pid=
failed=()
rm -f "$build"/e2e-*.png

cleanup() {
    wineserver -k >/dev/null 2>&1 || true
    if [ -n "$xvfb_pid" ]; then
        kill "$xvfb_pid" >/dev/null 2>&1 || true
        wait "$xvfb_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

say() { echo "e2e.sh: $*"; }

# Windows form of a host path, through Wine's Z: drive.
winpath() { local p=${1//\//\\}; printf 'Z:%s' "$p"; }

# Host path of a Windows path on x:, e: or c:.
host_path() {
    local p=${1//\\//}
    case "${p:0:2}" in
        [xX]:) printf '%s%s' "$X" "${p:2}" ;;
        [eE]:) printf '%s%s' "$E" "${p:2}" ;;
        [cC]:) printf '%s%s' "$WINEPREFIX/drive_c" "${p:2}" ;;
        *) echo "e2e.sh: no drive for $1" >&2; return 1 ;;
    esac
}

# --- checks ---

# check <name> <command...>: a named assertion; a failure is recorded and the run goes on.
check() {
    local name=$1
    shift
    if "$@"; then
        say "ok    $name"
    else
        say "FAIL  $name"
        failed+=("$name")
    fi
}

# wait_for <seconds> <command...>: polls until the command succeeds or the time is up.
wait_for() {
    local deadline=$((SECONDS + $1))
    shift
    while ! "$@"; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.5
    done
}

# The probe log: own path TAB command line TAB working directory. The arguments are what follows
# the program's own name (quoted or not) and one blank, as the system put them together.
probe_lines() {
    [ -f "$probe_log" ] || return 0
    awk -F'\t' '{
        line = $2
        if (substr(line, 1, 1) == "\"") { line = substr(line, 2); line = substr(line, index(line, "\"") + 1) }
        else if (index(line, " ")) line = substr(line, index(line, " ")); else line = ""
        if (substr(line, 1, 1) == " ") line = substr(line, 2)
        printf "%s\t%s\t%s\n", $1, line, $3
    }' "$probe_log"
}

# started_count <program regex> [<args regex>]: probe starts whose path matches (ignoring case)
# and, when given, whose arguments match the whole of the second pattern.
started_count() {
    # Through the environment, as awk -v would take the backslashes of the patterns as escapes.
    probe_lines | P=$1 A=${2-} ANY=${2+set} awk -F'\t' '
        BEGIN { n = 0 }
        tolower($1) ~ tolower(ENVIRON["P"]) && (ENVIRON["ANY"] == "" || $2 ~ ("^" ENVIRON["A"] "$")) { n++ }
        END { print n }'
}

started() { [ "$(started_count "$@")" -gt 0 ]; }

# started_beyond <count> <program regex> [<args regex>]: more starts than <count> so far.
started_beyond() {
    local count=$1
    shift
    [ "$(started_count "$@")" -gt "$count" ]
}

# --- the screen ---

shot() { import -display "$DISPLAY" -window root "$build/e2e-$1.png" 2>/dev/null; }

# pixel <shot> <x> <y>: the colour as RRGGBB.
pixel() { convert "$build/e2e-$1.png" -format "%[hex:p{$2,$3}]" info: 2>/dev/null | cut -c1-6; }

# colours <shot> <w>x<h>+<x>+<y>: how many colours the area holds.
colours() { convert "$build/e2e-$1.png" -crop "$2" +repage -format '%k' info: 2>/dev/null; }

pointer() { xdotool mousemove "$1" "$2"; }
click() { xdotool mousemove "$1" "$2" click 1; }

# --- the Windows side ---

send() { wine "$send_exe" "$@" 2>/dev/null; }

# window_rect <title>: "left top right bottom" of the visible top-level window of that title.
window_rect() { send windows | tr -d '\r' | awk -F'\t' -v t="$1" '$3 == t { print $1; exit }'; }

# A popup menu of the shell is up.
menu_open() { send windows | grep -q 'QWindowPopup'; }
menu_closed() { ! menu_open; }

reg_line() { printf '%s\r\n' "$@" >> "$regfile"; }

# probe_as <Windows path or bare name>: the probe stands in for that program. A bare name goes to
# the system folder, with Wine told to run the copy rather than a program of its own.
probe_as() {
    local target
    case "$1" in
        *\\*|*/*) target=$(host_path "$1") ;;
        *)  target=$system/$1
            reg_line '[HKEY_CURRENT_USER\Software\Wine\DllOverrides]' "\"$1\"=\"native\"" ;;
    esac
    mkdir -p "$(dirname "$target")"
    cp "$probe_exe" "$target"
}

# --- the shell ---

shell_up() { [ -n "$(window_rect 'Tessel Shell')" ]; }

# Starts autorun.exe from the medium's kelpie folder inside the virtual desktop and waits for
# the panel's window; false when it never comes.
boot() {
    say "starting autorun.exe in X:\\Program Files\\kelpie"
    (cd "$kelpie" && exec wine explorer /desktop=kelpie,1024x768 autorun.exe) >>"$work/autorun.log" 2>&1 &
    wait_for "$boot_timeout" shell_up
}

# Ends every Windows process of the run; the prefix and the medium stay for another boot.
stop_shell() {
    wineserver -k >/dev/null 2>&1 || true
    wineserver -w >/dev/null 2>&1 || true
}

# The start menu opens by itself once the panel is up (unless a mapping script takes its place);
# a click on the empty desktop closes it, and only then does the start-up queue run.
close_start_menu() {
    wait_for 30 menu_open || return 0
    click 600 420
    wait_for 10 menu_closed
}

# --- the stage ---

# A display of our own: the server takes the first free number and tells it, so that runs side
# by side never share a screen.
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
wait_for 10 test -s "$work/display" \
    || { say "Xvfb did not start" >&2; cat "$work/xvfb.log" >&2; exit 1; }
DISPLAY=:$(head -n1 "$work/display")
export DISPLAY

say "creating Wine prefix on $DISPLAY"
wineboot -i >/dev/null 2>&1
wineserver -w
mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
cp /usr/share/wine/fonts/tahoma*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"

# The one place that prepares the medium: fresh drives, the shell in its folder, the probe over
# every program the medium carries and over the system's programs that the shell names bare.
# Windows PE mode on, and every Wine process in the one virtual desktop, so that the sender
# sees the shell's windows.
cp -r "$repo/demo/machine/drives/X" "$X"
cp -r "$repo/demo/machine/drives/E" "$E"
cp -r "$deploy/." "$kelpie/"
[ -z "${KELPIE_E2E_CFG:-}" ] || cp "$KELPIE_E2E_CFG" "$kelpie/data_shell.cfg"
export KELPIE_PROBE_LOG
KELPIE_PROBE_LOG=$(winpath "$probe_log")
printf 'Windows Registry Editor Version 5.00\r\n\r\n' > "$regfile"
reg_line '[HKEY_CURRENT_USER\Software\Morvane Works]' '"WinPE"=dword:00000001'
reg_line '[HKEY_CURRENT_USER\Software\Wine\Explorer]' '"Desktop"="kelpie"'
reg_line '[HKEY_CURRENT_USER\Software\Wine\Explorer\Desktops]' '"kelpie"="1024x768"'
while IFS= read -r -d '' exe; do
    [ "$(basename "$exe")" = autorun.exe ] || cp "$probe_exe" "$exe"
done < <(find "$X" -iname '*.exe' -print0)
for name in wpeutil.exe taskmgr.exe osk.exe notepad.exe; do
    probe_as "$name"
done

parts=()
for f in "$repo"/tools/windows/e2e.d/*.sh; do
    [ -f "$f" ] || continue
    # shellcheck source=/dev/null
    source "$f"
    name=$(basename "$f" .sh)
    parts+=("${name#*-}")
done
phase() {
    local p
    for p in "${parts[@]}"; do
        if declare -F "$1_$p" >/dev/null; then "$1_$p"; fi
    done
}

phase prepare
# Drive letters are read when the server starts: the links go in while it is down.
ln -s "$X" "$WINEPREFIX/dosdevices/x:"
ln -s "$E" "$WINEPREFIX/dosdevices/e:"
wine regedit /S "$(winpath "$regfile")" >/dev/null 2>&1
wineserver -w

if boot; then
    say "the panel is up after $((SECONDS - started_at)) s"
    phase booted
    phase finish
else
    check boot false
fi
shot end || true

if [ ${#failed[@]} -gt 0 ]; then
    {
        echo "--- windows"; send windows || true
        echo "--- probe log"; cat "$probe_log" 2>/dev/null || true
        echo "--- x:/init.log"; cat "$X/init.log" 2>/dev/null || true
        echo "--- autorun.exe output"; cat "$work/autorun.log"
    } >&2
    say "${#failed[@]} checks failed: ${failed[*]} ($((SECONDS - started_at)) s)"
    exit 1
fi
say "passed ($((SECONDS - started_at)) s)"
