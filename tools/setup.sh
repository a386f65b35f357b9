#!/usr/bin/env bash
# Installs what building and testing the project needs (Debian 12). A second run, with everything
# present, only checks and returns.
set -euo pipefail

packages=(
    cmake ninja-build g++ qtbase5-dev qtbase5-dev-tools    # native build
    g++-mingw-w64-x86-64-posix xz-utils                    # Windows cross build
    wine wine64 fonts-wine                                 # running the Windows build
    xvfb xauth xdotool imagemagick x11-utils               # end-to-end run on a virtual display
    clang-14 libclang-rt-14-dev llvm-14                    # fuzzing and the sanitizer stage
    python3                                                # the update tests' HTTP server
)

missing=()
for p in "${packages[@]}"; do
    dpkg -s "$p" 2>/dev/null | grep -q '^Status: install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
    echo "setup.sh: all packages present"
    exit 0
fi

sudo=
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup.sh: need root or sudo to install: ${missing[*]}" >&2; exit 1; }
    sudo=sudo
fi
echo "setup.sh: installing ${missing[*]}"
$sudo apt-get update
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
