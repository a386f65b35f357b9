#!/usr/bin/env bash
# Builds the fuzz targets of fuzz/ with clang in build-fuzz/ and runs each for a while.
#   tools/fuzz.sh [seconds] [target...]      seconds per target (30), every target by default
# A target is named as in fuzz/CMakeLists.txt (config, registry, ...). The run fails when a
# target finds a crash, a leak, undefined behaviour or a time-out; the input that did it is kept
# in build-fuzz/artifacts/<target>/, the target's output in build-fuzz/logs/<target>.log. New
# inputs found go to build-fuzz/corpus/<target>/, never into the committed seeds.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"
seconds=${1:-30}
[ $# -gt 0 ] && shift
out=build-fuzz

mkdir -p "$out"
[ -f "$out/.gitignore" ] || echo '*' > "$out/.gitignore"
CC=clang-14 CXX=clang++-14 cmake -S . -B "$out" -G Ninja -DKELPIE_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
if [ $# -gt 0 ]; then
    targets=("$@")
else
    mapfile -t targets < <(sed -n 's/^kelpie_fuzz(\([a-z_0-9]*\) .*/\1/p' fuzz/CMakeLists.txt)
fi
cmake --build "$out" --target "${targets[@]/#/fuzz_}"

failed=()
for t in "${targets[@]}"; do
    mkdir -p "$out/corpus/$t" "$out/artifacts/$t" "$out/logs"
    # 16 KiB holds hundreds of lines, more than any rule of the readers needs; the largest seeds
    # (220 KB) made every mutation as large and the run a hundred times slower.
    args=(-max_total_time="$seconds" -max_len=16384 -timeout=25 -rss_limit_mb=2048 -print_final_stats=1
          -artifact_prefix="$out/artifacts/$t/")
    [ -f "fuzz/dict/$t.dict" ] && args+=(-dict="fuzz/dict/$t.dict")
    log="$out/logs/$t.log"
    set +e
    "$out/fuzz/fuzz_$t" "${args[@]}" "$out/corpus/$t" "fuzz/corpus/$t" >"$log" 2>&1
    rc=$?
    set -e
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    cov=$(grep -oE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1)
    if [ "$rc" -eq 0 ]; then
        printf 'fuzz.sh: %-18s ok      %s s, %s runs, %s\n' "$t" "$seconds" "${runs:-?}" "${cov:-?}"
    else
        printf 'fuzz.sh: %-18s FAILED  (exit %s), see %s and %s\n' "$t" "$rc" "$log" "$out/artifacts/$t/" >&2
        grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error|.*ALARM|.*deadly signal)' "$log" | head -5 >&2 || true
        failed+=("$t")
    fi
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzz.sh: failed: ${failed[*]}" >&2
    exit 1
fi
