#!/usr/bin/env bash
# Builds the shell and runs it on the demo machine, or on the machine folder named by
# KELPIE_MACHINE. With a display it runs there until it is closed; without one it runs on a
# virtual 1024x768 display for KELPIE_DEMO_SECONDS (8) seconds and saves a screenshot.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

tools/setup.sh
mkdir -p build
[ -f build/.gitignore ] || echo '*' > build/.gitignore
cmake -S . -B build -G Ninja >/dev/null
cmake --build build --target autorun

shell=build/my_shell1/autorun
if [ -n "${DISPLAY:-}" ]; then
    exec "$shell"
fi

# The medium's font family, Tahoma, comes with Wine's fonts; show it to fontconfig, and let it
# stand for the desktop's default sans-serif, as the system font does on Windows.
if [ -d /usr/share/wine/fonts ]; then export FONTCONFIG_FILE="$repo/tools/tahoma-fonts.conf"; fi

seconds=${KELPIE_DEMO_SECONDS:-8}
shot=${KELPIE_SCREENSHOT:-$repo/build/demo.png}
export shell seconds shot
xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
    "$shell" & pid=$!
    sleep 2
    # A virtual display has no window manager to keep the panel above the desktop: raise it once.
    for w in $(xdotool search --name "Tessel Shell" 2>/dev/null); do xdotool windowraise "$w"; done
    sleep "$seconds"
    import -window root "$shot"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
'
echo "run-demo.sh: screenshot in $shot"
