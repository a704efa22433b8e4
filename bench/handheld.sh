#!/usr/bin/env bash
# Veltor on a small board: start-up to the first complete frame (the median of 9 launches), and
# over a replayed one-minute drive at 1 Hz with the map on screen (a 360 x 720 phone window),
# the app's share of one core and its resident memory, sampled each second from the 5th to the
# 55th.
# Usage: bench/handheld.sh [APP]   (APP: build/src/app/veltor by default)
# Targets on the 2-core development machine: start-up 250 ms, tracking 2% of a core, 150 MiB.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
app=${1:-$here/../build/src/app/veltor}
drive=$here/../tests/data/nmea/seattle-drive-minute.nmea
work=$(mktemp -d)
pid=
trap '[[ -n $pid ]] && kill "$pid" 2>/dev/null; rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software
export XDG_CONFIG_HOME=$work XDG_CACHE_HOME=$work
settings=$work/veltor.ini
# Past the first-run card, so the map is what is on screen.
printf '[General]\nWelcomeDismissed=true\n' >"$settings"
window=(--settings "$settings" --size 360x720 --idiom phone)

# The app writes "ready" at its first complete frame, then quits; the time to that line counts.
startup=$(for _ in $(seq 9); do
    start=$(date +%s%N)
    { read -r _ && echo $((($(date +%s%N) - start) / 1000000)); cat >/dev/null; } \
        < <("$app" "${window[@]}" --exit-when-ready 2>/dev/null)
done | sort -n | sed -n 5p)

"$app" "${window[@]}" --gps "$drive" --track >/dev/null 2>&1 &
pid=$!
sleep 5
cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$pid/stat"; }
rss_kib() { awk '/^VmRSS:/ { print $2 }' "/proc/$pid/status"; }
ticks=$(cpu_ticks)
began=$(date +%s%N)
peak=0 total=0 samples=0
for _ in $(seq 50); do
    sleep 1
    rss=$(rss_kib)
    ((rss > peak)) && peak=$rss
    total=$((total + rss)) samples=$((samples + 1))
done
used=$(($(cpu_ticks) - ticks))
elapsed_ms=$((($(date +%s%N) - began) / 1000000))
hz=$(getconf CLK_TCK)

printf 'start-up to the first complete frame   %d ms (median of 9)\n' "$startup"
awk -v t="$used" -v hz="$hz" -v ms="$elapsed_ms" \
    'BEGIN { printf "CPU while tracking                     %.2f%% of one core\n", 100 * t / hz / (ms / 1000) }'
printf 'resident memory while tracking         %d MiB mean, %d MiB peak\n' \
    $((total / samples / 1024)) $((peak / 1024))
