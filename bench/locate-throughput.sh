#!/usr/bin/env bash
# Lines per second of veltor-locate reading standard input.
#
# Usage: bench/locate-throughput.sh PATH/TO/veltor-locate [LINES] [RUNS]
#
# Generates LINES (default 2,000,000) queries with a fixed seed into a temporary directory, about
# 80% "LAT,LON" decimal coordinates and 20% 8-character locators, all valid so that the strict
# default mode converts every one. Then times `veltor-locate < file > /dev/null` RUNS times
# (default 3) without options and with --lenient, and prints the best lines/second of each.
set -euo pipefail

locate=${1:?usage: $0 PATH/TO/veltor-locate [LINES] [RUNS]}
lines=${2:-2000000}
runs=${3:-3}
target=2000000

if [[ ! -x $locate ]]; then
    echo "locate-throughput: $locate is not an executable" >&2
    exit 2
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/veltor-locate-bench.XXXXXX")
trap 'rm -rf "$work"' EXIT
input=$work/queries.txt

generate_python() {
    python3 - "$lines" "$input" <<'EOF'
import random
import sys

count, path = int(sys.argv[1]), sys.argv[2]
rng = random.Random(20240601)
letters = "ABCDEFGHIJKLMNOPQRSTUVWX"
out = []
for _ in range(count):
    if rng.random() < 0.8:
        out.append("%.6f,%.6f" % (rng.uniform(-90.0, 90.0), rng.uniform(-180.0, 180.0)))
    else:
        locator = (letters[rng.randrange(18)] + letters[rng.randrange(18)]
                   + str(rng.randrange(10)) + str(rng.randrange(10))
                   + letters[rng.randrange(24)].lower() + letters[rng.randrange(24)].lower()
                   + str(rng.randrange(10)) + str(rng.randrange(10)))
        out.append(locator)
with open(path, "w") as f:
    f.write("\n".join(out))
    f.write("\n")
EOF
}

generate_awk() {
    awk -v count="$lines" 'BEGIN {
        srand(20240601)
        letters = "ABCDEFGHIJKLMNOPQRSTUVWX"
        for (i = 0; i < count; ++i) {
            if (rand() < 0.8) {
                printf "%.6f,%.6f\n", rand() * 180 - 90, rand() * 360 - 180
            } else {
                printf "%s%s%d%d%s%s%d%d\n",
                    substr(letters, int(rand() * 18) + 1, 1), substr(letters, int(rand() * 18) + 1, 1),
                    int(rand() * 10), int(rand() * 10),
                    tolower(substr(letters, int(rand() * 24) + 1, 1)),
                    tolower(substr(letters, int(rand() * 24) + 1, 1)),
                    int(rand() * 10), int(rand() * 10)
            }
        }
    }' > "$input"
}

if command -v python3 >/dev/null 2>&1; then
    generate_python
else
    generate_awk
fi
generated=$(wc -l < "$input")
echo "veltor-locate throughput: $generated lines ($(du -h "$input" | cut -f1)), best of $runs runs"

now() { date +%s.%N; }

# Prints the best lines/second over the runs for the given options.
measure() {
    local best=0 start end status rate
    for ((run = 0; run < runs; ++run)); do
        start=$(now)
        status=0
        "$locate" "$@" < "$input" > /dev/null || status=$?
        end=$(now)
        if [[ $status -ne 0 ]]; then
            echo "locate-throughput: veltor-locate $* exited with status $status" >&2
            exit 1
        fi
        rate=$(awk -v n="$generated" -v s="$start" -v e="$end" 'BEGIN { printf "%.0f", n / (e - s) }')
        (( rate > best )) && best=$rate
    done
    echo "$best"
}

for options in "" "--lenient"; do
    # shellcheck disable=SC2086 # the empty option set must expand to no argument
    rate=$(measure $options)
    verdict=met
    (( rate < target )) && verdict=MISSED
    printf '  %-12s %12s lines/s   (%.3f s per million lines; goal %d lines/s: %s)\n' \
        "${options:-default}" "$rate" "$(awk -v r="$rate" 'BEGIN { print 1e6 / r }')" \
        "$target" "$verdict"
done
