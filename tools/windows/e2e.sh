#!/usr/bin/env bash
# End-to-end start of the real autorun.exe from the deploy folder, under Wine on a private Xvfb:
# a medium's settings file on a mapped drive must reach the registry, and the panel must come up.
#
#   tools/windows/e2e.sh [build-folder]     (default build-win/; needs build-win/deploy/)
# KELPIE_E2E_TIMEOUT: seconds to wait for the shell (default 180).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$repo/build-win}" && pwd)
deploy=$build/deploy
[ -f "$deploy/autorun.exe" ] || { echo "e2e.sh: no $deploy/autorun.exe; run tools/windows/build.sh first" >&2; exit 1; }
timeout_s=${KELPIE_E2E_TIMEOUT:-180}
shot=$build/e2e-screenshot.png

work=$(mktemp -d "${TMPDIR:-/tmp}/kelpie-e2e.XXXXXX")
export WINEPREFIX=$work/prefix
export WINEDEBUG=-all
# No Mono or Gecko installer dialogs in a fresh prefix.
export WINEDLLOVERRIDES="mscoree,mshtml="
xvfb_pid=
shell_pid=
cleanup() {
    [ -n "$shell_pid" ] && kill "$shell_pid" >/dev/null 2>&1 || true
    wineserver -k >/dev/null 2>&1 || true
    [ -n "$xvfb_pid" ] && kill "$xvfb_pid" >/dev/null 2>&1 || true
    [ -n "$xvfb_pid" ] && wait "$xvfb_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# A display of our own: the first free number from 99 up.
display=99
while [ -e "/tmp/.X$display-lock" ] || [ -e "/tmp/.X11-unix/X$display" ]; do
    display=$((display + 1))
done
Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
export DISPLAY=:$display
for _ in $(seq 50); do
    xdpyinfo >/dev/null 2>&1 && break
    sleep 0.2
done
xdpyinfo >/dev/null 2>&1 || { echo "e2e.sh: Xvfb did not start" >&2; cat "$work/xvfb.log" >&2; exit 1; }

echo "e2e.sh: creating Wine prefix on $DISPLAY"
wineboot -i >/dev/null 2>&1
wine reg add 'HKCU\Software\Morvane Works' /v WinPE /t REG_DWORD /d 1 /f >/dev/null 2>&1
mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
cp /usr/share/wine/fonts/tahoma*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
wineserver -w

# The medium: drive M: holding the settings file with the image language.
mkdir -p "$work/medium"
printf 'imageLang=12\r\n' > "$work/medium/_kelpie.ini"
ln -s "$work/medium" "$WINEPREFIX/dosdevices/m:"

echo "e2e.sh: starting autorun.exe"
(cd "$deploy" && exec wine autorun.exe) >"$work/autorun.log" 2>&1 &
shell_pid=$!

language=
window=
deadline=$((SECONDS + timeout_s))
while [ $SECONDS -lt $deadline ]; do
    if [ -z "$language" ]; then
        if wine reg query 'HKCU\Software\Morvane Works\Tessel Imager' /v Language 2>/dev/null \
            | tr -d '\r' | grep -Eq 'Language[[:space:]]+REG_DWORD[[:space:]]+0xc$'; then
            language=yes
            echo "e2e.sh: Language is 0xc"
        fi
    fi
    if [ -z "$window" ]; then
        window=$(xdotool search --onlyvisible --name 'Tessel Shell' 2>/dev/null | head -n1 || true)
        [ -n "$window" ] && echo "e2e.sh: window 'Tessel Shell' is mapped ($window)"
    fi
    [ -n "$language" ] && [ -n "$window" ] && break
    if ! kill -0 "$shell_pid" 2>/dev/null; then
        echo "e2e.sh: autorun.exe ended early" >&2
        break
    fi
    sleep 1
done

# The picture is taken either way: it shows what the failure looked like. A shell that came up
# gets a few seconds to rise and paint first.
[ -n "$window" ] && kill -0 "$shell_pid" 2>/dev/null && sleep 4
import -display "$DISPLAY" -window root "$shot" 2>/dev/null && echo "e2e.sh: screenshot $shot" || true

if [ -z "$language" ] || [ -z "$window" ]; then
    [ -z "$language" ] && echo "e2e.sh: FAIL: Language never became 0xc" >&2
    [ -z "$window" ] && echo "e2e.sh: FAIL: no visible window titled 'Tessel Shell'" >&2
    echo "--- autorun.exe output" >&2
    cat "$work/autorun.log" >&2
    exit 1
fi
echo "e2e.sh: passed"
