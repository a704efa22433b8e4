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
# `arm64` adds what `make test-arm64` needs: Debian's cross compilers, qemu, and the arm64
# libraries beside the native ones (multiarch). `arm64-package` is what `make package ARCH=arm64`
# needs, and only that: Debian's GeographicLib -dev package cannot be installed for two
# architectures at once, so the package build takes the arm64 one, while `arm64` keeps the
# native one and links the arm64 library as cmake/arm64-toolchain.cmake says.
arm64_libraries=(
    pkgconf libc6-dev libstdc++-12-dev libgl-dev libsqlite3-dev libvulkan-dev libxkbcommon-dev
    qt6-base-dev qt6-declarative-dev qt6-multimedia-dev qt6-positioning-dev qt6-serialport-dev
    qt6-speech-dev qt6-tools-dev
)
case "${1:-}" in
coverage) packages+=(gcovr) ;;
package) packages+=(debhelper dpkg-dev fakeroot lintian) ;;
arm64)
    packages+=(crossbuild-essential-arm64 qemu-user-static imagemagick)
    # The suites that run under emulation, and what the app needs there for its screenshot.
    arm64_libraries+=(
        libgeographiclib23 libgtest-dev libgmock-dev
        libqt6positioning6-plugins libqt6sql6-sqlite qt6-qpa-plugins
        qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
        qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-templates
        qml6-module-qtquick-layouts qml6-module-qtquick-window
    )
    for library in "${arm64_libraries[@]}"; do packages+=("$library:arm64"); done
    ;;
arm64-package)
    packages=(debhelper dpkg-dev fakeroot lintian crossbuild-essential-arm64 cmake ninja-build
              qt6-base-dev-tools qt6-declarative-dev-tools qt6-l10n-tools qt6-tools-dev-tools)
    arm64_libraries+=(libgeographiclib-dev)
    for library in "${arm64_libraries[@]}"; do packages+=("$library:arm64"); done
    ;;
esac

# Installed for this machine's architecture (or for all), or for the one a name like
# qt6-base-dev:arm64 gives: with arm64 beside amd64, one name can be installed for either.
installed() {
    local name=${1%%:*} arch=${1#*:}
    [[ "$arch" == "$1" ]] && arch=$(dpkg --print-architecture)
    dpkg-query -W -f='${Status} ${Architecture}\n' "$name" 2>/dev/null |
        grep -qE "^install ok installed ($arch|all)\$"
}

missing=()
for package in "${packages[@]}"; do
    installed "$package" || missing+=("$package")
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
if [[ "${1:-}" == arm64* ]] && ! dpkg --print-foreign-architectures | grep -qx arm64; then
    "${sudo[@]}" dpkg --add-architecture arm64
fi
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
