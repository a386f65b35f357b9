#!/usr/bin/env bash
# The project's whole test run: native build and suites, the fuzz targets for a bounded time, the
# suites and a demo start under the sanitizers, then the Windows cross build, its suites under
# Wine, and the boot of the demo medium under Wine. Any failing stage fails the run.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

stage() { echo; echo "######## $*"; }

stage "setup"
tools/setup.sh

stage "native build"
mkdir -p build
[ -f build/.gitignore ] || echo '*' > build/.gitignore
cmake -S . -B build -G Ninja
log=build/build.log
# A clean build, so that every warning of every file shows in this run.
cmake --build build --target clean >/dev/null 2>&1 || true
set +e
cmake --build build 2>&1 | tee "$log"
rc=${PIPESTATUS[0]}
set -e
[ "$rc" -eq 0 ] || { echo "run-tests.sh: native build failed" >&2; exit 1; }
if grep -E '(^|[^a-z])warning:' "$log" >/dev/null; then
    echo "run-tests.sh: the native build printed compiler warnings:" >&2
    grep -E '(^|[^a-z])warning:' "$log" >&2
    exit 1
fi

stage "native tests"
(cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure)

# Permissions do not keep root out, so the fault run's unreadable cases skip themselves there;
# when the run has root, they are played once more by an unprivileged user.
if [ "$(id -u)" -eq 0 ] && command -v setpriv >/dev/null; then
    stage "fault run as an unprivileged user"
    chmod -R o+rX build
    HOME=/tmp QT_QPA_PLATFORM=offscreen setpriv --reuid=65534 --regid=65534 --clear-groups \
        build/tests/tst_faults
fi

# 20 s a target keeps the whole run well inside 45 minutes on two cores with fifteen targets.
stage "fuzzing (${KELPIE_FUZZ_SECONDS:-20} s a target)"
tools/fuzz.sh "${KELPIE_FUZZ_SECONDS:-20}"

stage "sanitizers"
tools/sanitize.sh

stage "Windows cross build"
tools/windows/build.sh build-win

stage "Windows suites under Wine"
tools/windows/run-tests.sh build-win

stage "end-to-end under Wine"
tools/windows/e2e.sh build-win

echo
echo "run-tests.sh: all stages passed"
