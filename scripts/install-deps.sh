#!/usr/bin/env bash
# Installs, from Debian's packages, whatever this machine lacks to build, test
# and run Ombrel. Does nothing when all is there.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev libgl-dev
    # A font, so that windows rendered offscreen (tests, screenshots) draw text.
    fonts-dejavu-core
    # An X server of its own for the end-to-end test of the ombrel binary and
    # for the startup benchmark; xvfb-run needs xauth.
    xvfb xauth
    clang libclang-rt-14-dev
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
        missing+=("$package")
done
# npm comes with some builds of Node.js and as a package of its own with Debian's.
command -v npm >/dev/null 2>&1 || missing+=(nodejs npm)

[ ${#missing[@]} -eq 0 ] && exit 0

sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
echo "Installing: ${missing[*]}" >&2
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >&2
