#!/usr/bin/env bash
# Veltor built for arm64 and run here under qemu-user-static: the suites that need no display
# (formatting, field geodesy, veltor-locate and its ADIF rewriting), then the app's screenshot
# from the arm64 build beside the native one, at the same size, zoom and settings.
# Usage: test-arm64.sh NATIVE_BUILD ARM64_BUILD
set -euo pipefail
native=$1 arm64=$2
emulator=/usr/bin/qemu-aarch64-static
# The pictures may differ by this share of their pixels (each by more than the fuzz): the two
# builds round antialiased edges and text differently, nothing more.
max_differing_share=0.5 # per cent
fuzz=8%

export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software
for suite in formatting_tests field_tests cli_tests; do
    echo "== $suite (arm64, emulated)"
    # Death tests fork without exec: the kernel here cannot start an arm64 binary by itself.
    "$emulator" "$arm64/tests/$suite" --gtest_brief=1 --gtest_death_test_style=fast
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work XDG_CACHE_HOME=$work
shoot() { # ARCH RUNNER... : a picture of a new installation's map at the sample point
    local arch=$1
    shift
    printf '[General]\nGridPositionPreference=true\n' >"$work/$arch.ini"
    "$@" --settings "$work/$arch.ini" --size 360x720 --zoom 11 --idiom phone \
        --screenshot "$work/$arch.png"
}
echo "== screenshot, amd64 and arm64 (emulated)"
shoot amd64 "$native/src/app/veltor"
started=$(date +%s)
shoot arm64 "$emulator" "$arm64/src/app/veltor"
echo "the arm64 app took $(($(date +%s) - started)) s to its picture under emulation"
mkdir -p "$arm64/screenshots"
cp "$work/amd64.png" "$work/arm64.png" "$arm64/screenshots/"
differing=$(compare -metric AE -fuzz "$fuzz" "$work/amd64.png" "$work/arm64.png" null: 2>&1 || true)
if ! [[ "$differing" =~ ^[0-9]+$ ]]; then
    echo "FAIL: the pictures could not be compared: $differing"
    exit 1
fi
total=$((360 * 720))
share=$(awk -v d="$differing" -v t="$total" 'BEGIN { printf "%.3f", 100 * d / t }')
echo "pixels differing by more than $fuzz: $differing of $total ($share%, at most $max_differing_share%)"
echo "both pictures are in $arm64/screenshots"
if awk -v s="$share" -v m="$max_differing_share" 'BEGIN { exit !(s > m) }'; then
    echo "FAIL: the arm64 picture differs from the amd64 one"
    exit 1
fi
echo "arm64: every suite passed and the picture agrees"
