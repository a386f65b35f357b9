#!/usr/bin/env bash
# The native program and every suite built with AddressSanitizer and UndefinedBehaviorSanitizer
# (clang, -fno-sanitize-recover) in build-asan/, then the whole suite and one demo start on a
# virtual display under them. Any report fails the run. Leaks of objects that live for the whole
# run by design are listed, each with its reason, in tools/sanitize.supp; nothing else is.
#   tools/sanitize.sh [demo-seconds]      (6)
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"
seconds=${1:-6}
out=build-asan
flags="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"

mkdir -p "$out"
[ -f "$out/.gitignore" ] || echo '*' > "$out/.gitignore"
CC=clang-14 CXX=clang++-14 cmake -S . -B "$out" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build "$out"

export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1
export LSAN_OPTIONS=suppressions=$repo/tools/sanitize.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

echo "sanitize.sh: the suites"
(cd "$out" && QT_QPA_PLATFORM=offscreen ctest --output-on-failure)

# The demo start: a report ends the process at once (memory errors and undefined behaviour);
# the shell has no way out but the turn off, so its leaks are checked by the suites instead.
echo "sanitize.sh: a demo start of ${seconds} s"
machine=$(mktemp -d /tmp/kelpie-asan-XXXXXX)
cp -r demo/machine/. "$machine"
log=$out/demo.log
export machine seconds log shell=$out/my_shell1/autorun
set +e
xvfb-run -a -s "-screen 0 1024x768x24" bash -c '
    KELPIE_MACHINE="$machine" "$shell" 2>"$log" & pid=$!
    sleep "$seconds"
    # The shell must still run: a sanitizer report would have ended it.
    if ! kill -0 "$pid" 2>/dev/null; then wait "$pid"; echo "exit $?" >> "$log"; exit 1; fi
    echo "copydata 1 Refresh" >> "$machine/inbox.txt"
    sleep 1
    kill -0 "$pid" 2>/dev/null || exit 1
    kill "$pid"; wait "$pid" 2>/dev/null
    exit 0
'
rc=$?
set -e
rm -rf "$machine"
if [ "$rc" -ne 0 ] || grep -qE 'ERROR: AddressSanitizer|runtime error:' "$log"; then
    echo "sanitize.sh: the demo start failed under the sanitizers:" >&2
    cat "$log" >&2
    exit 1
fi
echo "sanitize.sh: all passed"
