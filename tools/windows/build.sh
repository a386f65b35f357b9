#!/usr/bin/env bash
# Cross build for Windows: autorun.exe, every test suite as .exe, and the deploy folder
# (autorun.exe with the DLLs it needs, ready to copy onto a medium).
#
#   tools/windows/build.sh [build-folder [target...]]
#
# The build folder defaults to build-win/ in the repository. Without targets everything is built
# and deploy/ is made; with targets only those are built (deploy/ follows when autorun is among them).
# KELPIE_QT_SDK names the Qt SDK archive (default ../shared/toolchains/ beside the repository).
# KELPIE_WIN_BUILD_TYPE sets CMAKE_BUILD_TYPE (default Release).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=${1:-$repo/build-win}
shift || true
targets=("$@")
mkdir -p "$build"
build=$(cd "$build" && pwd)

sdk=${KELPIE_QT_SDK:-$repo/../shared/toolchains/qt5-mingw-5.15.8-x86_64.tar.xz}
mingw_gcc=/usr/lib/gcc/x86_64-w64-mingw32/12-posix
mingw_lib=/usr/x86_64-w64-mingw32/lib

# A build folder inside the repository keeps itself out of git.
case "$build/" in
    "$repo"/*) [ -f "$build/.gitignore" ] || echo '*' > "$build/.gitignore" ;;
esac

# The SDK is unpacked once into a temporary folder outside the repository; the build folder
# points at it through the link qt5-mingw, so a second build reuses it and the CMake cache keeps
# one stable prefix.
prefix=$build/qt5-mingw
if [ ! -f "$prefix/lib/cmake/Qt5/Qt5Config.cmake" ]; then
    [ -f "$sdk" ] || { echo "build.sh: Qt SDK not found: $sdk" >&2; exit 1; }
    unpack=$(mktemp -d "${TMPDIR:-/tmp}/kelpie-qt5-mingw.XXXXXX")
    echo "build.sh: unpacking $(basename "$sdk") into $unpack"
    tar -C "$unpack" -xJf "$sdk"
    [ -f "$unpack/qt5-mingw/lib/cmake/Qt5/Qt5Config.cmake" ] \
        || { echo "build.sh: $sdk holds no qt5-mingw/ SDK" >&2; exit 1; }
    rm -rf "$prefix"
    ln -s "$unpack/qt5-mingw" "$prefix"
fi

cmake -S "$repo" -B "$build" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$repo/tools/windows/mingw-toolchain.cmake" \
    -DQT_MINGW_PREFIX="$prefix" \
    -DCMAKE_BUILD_TYPE="${KELPIE_WIN_BUILD_TYPE:-Release}"

if [ ${#targets[@]} -gt 0 ]; then
    cmake --build "$build" --target "${targets[@]}"
    [[ " ${targets[*]} " == *" autorun "* ]] || exit 0
else
    cmake --build "$build"
fi

# The deploy folder: the program, the Qt DLLs it links, the Windows platform plugin and the
# MinGW runtime. Made afresh so nothing stale stays behind.
exe=$(find "$build" -name autorun.exe -not -path "$build/deploy/*" -print -quit)
[ -n "$exe" ] || { echo "build.sh: autorun.exe was not built" >&2; exit 1; }
deploy=$build/deploy
rm -rf "$deploy"
mkdir -p "$deploy/platforms"
cp "$exe" "$deploy/"
for m in Core Gui Widgets Network; do
    cp "$prefix/bin/Qt5$m.dll" "$deploy/"
done
cp "$prefix/plugins/platforms/qwindows.dll" "$deploy/platforms/"
cp "$mingw_gcc/libgcc_s_seh-1.dll" "$mingw_gcc/libstdc++-6.dll" "$mingw_lib/libwinpthread-1.dll" "$deploy/"

# Every DLL that the program imports must be in the folder or be a system DLL.
missing=0
for f in "$deploy"/*.exe "$deploy"/*.dll "$deploy"/platforms/*.dll; do
    for dll in $(x86_64-w64-mingw32-objdump -p "$f" | awk '/DLL Name:/ {print $3}'); do
        case "$dll" in
            Qt5*|lib*)
                if [ ! -f "$deploy/$dll" ]; then
                    echo "build.sh: $(basename "$f") needs $dll, not in deploy/" >&2
                    missing=1
                fi ;;
        esac
    done
done
[ $missing -eq 0 ] || exit 1
echo "build.sh: deploy folder ready: $deploy"
