#!/usr/bin/env bash
# Runs every test suite of the Windows build (tst_*.exe) under Wine in a fresh prefix, prints
# each suite's result file and fails when any suite fails.
#
#   tools/windows/run-tests.sh [build-folder]     (default build-win/ in the repository)
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "${1:-$repo/build-win}" && pwd)
qt=$build/qt5-mingw
[ -d "$qt/bin" ] || { echo "run-tests.sh: no Qt SDK at $qt; run tools/windows/build.sh first" >&2; exit 1; }

# Windows form of a host path, through Wine's Z: drive.
winpath() { printf 'Z:%s' "${1//\//\\}"; }

work=$(mktemp -d "${TMPDIR:-/tmp}/kelpie-wine-tests.XXXXXX")
export WINEPREFIX=$work/prefix
export WINEDEBUG=-all
# No Mono or Gecko installer dialogs in a fresh prefix.
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPATH="$(winpath "$qt/bin");$(winpath /usr/lib/gcc/x86_64-w64-mingw32/12-posix);$(winpath /usr/x86_64-w64-mingw32/lib)"
# The suites need no display: Qt runs offscreen and Wine falls back to its null driver.
unset DISPLAY
server=
cleanup() {
    wineserver -k >/dev/null 2>&1 || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -f "$build/tests/updateserver.port"
    rm -rf "$work"
}
trap cleanup EXIT

echo "run-tests.sh: creating Wine prefix"
wineboot -i >/dev/null 2>&1
wineserver -w
# A drive letter backed by a folder, for the platform suite; Wine reads dosdevices/ when its
# server starts, so the link goes in while the server is down.
mkdir -p "$work/drive-t"
ln -s "$work/drive-t" "$WINEPREFIX/dosdevices/t:"
export KELPIE_TEST_DRIVE=T

# The update suite's HTTP server runs on this side (Wine starts no Linux python3), serving the
# Windows probe as the setup; the suite reads its port from updateserver.port beside it.
probe=$(find "$build" -name kelpie_probe.exe -not -path "$build/deploy/*" -print -quit)
if [ -n "$probe" ] && [ -d "$build/tests" ]; then
    python3 "$repo/tests/updateserver/server.py" --fixtures "$repo/tests/updateserver/fixtures" \
        --probe "$probe" --port-file "$work/updateserver.port" >/dev/null &
    server=$!
    for _ in $(seq 100); do [ -s "$work/updateserver.port" ] && break; sleep 0.1; done
    cp "$work/updateserver.port" "$build/tests/updateserver.port"
fi

mapfile -t suites < <(find "$build" -name 'tst_*.exe' -not -path "$build/deploy/*" | sort)
[ ${#suites[@]} -gt 0 ] || { echo "run-tests.sh: no tst_*.exe under $build" >&2; exit 1; }

failed=()
for exe in "${suites[@]}"; do
    name=$(basename "$exe" .exe)
    result=$work/$name.txt
    rm -f "$result"
    set +e
    (cd "$(dirname "$exe")" && timeout 900 wine "$exe" -platform offscreen -o "$(winpath "$result"),txt" \
        >"$work/$name.out" 2>&1)
    rc=$?
    set -e
    echo "===== $name (exit $rc)"
    if [ -s "$result" ]; then
        cat "$result"
    else
        echo "(no result file; console output follows)"
        cat "$work/$name.out"
    fi
    [ $rc -eq 0 ] || failed+=("$name")
done

echo
if [ ${#failed[@]} -gt 0 ]; then
    echo "run-tests.sh: ${#failed[@]} of ${#suites[@]} suites failed: ${failed[*]}"
    exit 1
fi
echo "run-tests.sh: all ${#suites[@]} suites passed"
