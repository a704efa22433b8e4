#!/usr/bin/env bash
# Installs the build into a scratch DESTDIR and checks what the desktop and the packages rely on:
# the desktop entry and the AppStream data validate, the man pages render, every icon size is
# there, and veltor-locate needs Qt Core only.
# Usage: check-install.sh BUILD_DIR VERSION SOURCE_DIR
set -uo pipefail
build=$1 version=$2 source=$3
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
failed=0
fail() { echo "FAIL: $*"; failed=1; }

DESTDIR=$root cmake --install "$build" --prefix /usr >/dev/null || { echo "FAIL: cmake --install"; exit 1; }
usr=$root/usr
id=org.veltor.Veltor

out=$(desktop-file-validate "$usr/share/applications/$id.desktop" 2>&1)
grep -E 'error|warning' <<<"$out" && fail "desktop-file-validate"
# Phosh lists an app on a phone only when its entry says it fits one.
grep -qx 'X-Purism-FormFactor=Workstation;Mobile;' "$usr/share/applications/$id.desktop" ||
    fail "the desktop entry does not declare the phone form factor"

out=$(appstreamcli validate-tree --no-net "$root/usr" 2>&1) || fail "appstreamcli validate-tree: $out"
grep -E '^[EW]:' <<<"$out" && fail "appstreamcli reports errors or warnings"
grep -q "<release version=\"$version\"" "$usr/share/metainfo/$id.metainfo.xml" ||
    fail "the metainfo has no release notes for $version"
head -n 1 "$source/debian/changelog" | grep -qF "($version)" ||
    fail "debian/changelog's newest entry is not $version"

for page in veltor veltor-locate; do
    file=$usr/share/man/man1/$page.1
    [[ -f $file ]] || { fail "no man page for $page"; continue; }
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$file" 2>&1 >/dev/null)
    [[ -z $warnings ]] || fail "man $page: $warnings"
    grep -qF "Veltor $version" "$file" || fail "man $page does not carry version $version"
done

[[ -f $usr/share/icons/hicolor/scalable/apps/$id.svg ]] || fail "no scalable icon"
for size in 16 22 24 32 48 64 128 256 512; do
    [[ -f $usr/share/icons/hicolor/${size}x${size}/apps/$id.png ]] || fail "no ${size}px icon"
done

for binary in veltor veltor-locate; do
    [[ -x $usr/bin/$binary ]] || fail "no $binary in bin"
done
libraries=$(ldd "$usr/bin/veltor-locate")
grep -q 'libQt6Core' <<<"$libraries" || fail "veltor-locate does not link Qt Core"
grep -E 'libQt6(Gui|Quick|Qml|Network|Positioning|Multimedia)' <<<"$libraries" &&
    fail "veltor-locate links more of Qt than Core"
[[ $("$usr/bin/veltor-locate" --version) == "veltor-locate $version" ]] || fail "veltor-locate --version"

exit $failed
