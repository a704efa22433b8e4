#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing Veltor need, and only the
# ones that are missing. Nothing else is downloaded.
set -euo pipefail

packages=(
    cmake ninja-build g++ make pkg-config
    qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools
    qt6-positioning-dev libqt6positioning6-plugins qt6-serialport-dev qt6-multimedia-dev
    qt6-speech-dev
    qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools qt6-qpa-plugins
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-templates
    qml6-module-qtquick-layouts qml6-module-qtquick-window qml6-module-qttest
    libgl-dev libvulkan-dev libxkbcommon-dev fonts-dejavu-core
    libgtest-dev libgmock-dev libbenchmark-dev libhamlib-dev libgeographiclib-dev
    # The end-to-end suite drives the real app through the accessibility bus on a virtual display.
    xvfb xauth xclip dbus dbus-x11 at-spi2-core python3-pyatspi
    # A real gpsd, fed a receiver's log by gpsfake, for the gpsd tests.
    gpsd gpsd-clients
    # The install tree's check validates the desktop entry, the AppStream data and the man pages.
    desktop-file-utils appstream man-db groff-base
    # MBTiles map files: Qt SQL's SQLite driver (and SQLite's own header for the time limit on
    # reads), and the WebP decoder for their tiles.
    libqt6sql6-sqlite libsqlite3-dev
    qt6-image-formats-plugins
)
# `install-deps.sh coverage` adds what `make coverage` needs, `package` what `make package` does.
[[ "${1:-}" == coverage ]] && packages+=(gcovr)
[[ "${1:-}" == package ]] && packages+=(debhelper dpkg-dev fakeroot lintian)

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing missing packages: ${missing[*]}"
if [[ $(id -u) -eq 0 ]]; then
    sudo=()
elif command -v sudo >/dev/null 2>&1; then
    sudo=(sudo)
else
    echo "These Debian packages are missing and there is no root or sudo to install them:" >&2
    echo "  ${missing[*]}" >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
