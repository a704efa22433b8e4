#!/usr/bin/env bash
# Renders the icon's PNG sizes from the SVG (needs librsvg2-bin); the PNGs are committed.
set -euo pipefail
cd "$(dirname "$0")"
for size in 16 22 24 32 48 64 128 256 512; do
    rsvg-convert -w "$size" -h "$size" org.veltor.Veltor.svg -o "org.veltor.Veltor-$size.png"
done
