#!/usr/bin/env python3
"""Mutation check: flips one comparison or operator at a time in the core and runs the suites
that should notice. A mutant the suites pass is a fault nobody would catch.

    tools/mutate.py --build build-coverage [--only NAME...] [--save results.json]
                    [--baseline results.json]

With --baseline the run fails if a mutant the baseline caught now survives, which is how a
slimmer suite shows it still catches what the old one did. The build directory must already be
configured; every source is put back however the run ends.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent

FORMATTING = ["formatting_tests", "cli_tests"]
ENTRY = ["entry_tests"]
MAP = ["map_tests"]
TILES = ["map_tests", "online_tiles_tests"]

# name, file, original text (unique in the file), mutated text, suites that should catch it
MUTANTS = [
    ("codec-longitude-offset", "src/formatting/VeltorFormatter.cpp",
     "(coordinate.longitude + 180.0) / 360.0", "(coordinate.longitude - 180.0) / 360.0", FORMATTING),
    ("codec-square-start", "src/formatting/VeltorFormatter.cpp",
     "(lonSquareFraction - squareStart", "(lonSquareFraction + squareStart", FORMATTING),
    ("codec-last-letter", "src/formatting/VeltorFormatter.cpp",
     "if (c < 'a' || c > 'x')", "if (c < 'a' || c >= 'x')", FORMATTING),
    ("codec-digit-width", "src/formatting/VeltorFormatter.cpp",
     "upper = lower + 0.1;", "upper = lower - 0.1;", FORMATTING),
    ("codec-field-letters", "src/formatting/VeltorFormatter.cpp",
     "if (index >= letterDivisor)", "if (index > letterDivisor)", FORMATTING),
    ("codec-centre", "src/formatting/VeltorFormatter.cpp",
     "{(latitude.min + latitude.max) * 0.5", "{(latitude.min - latitude.max) * 0.5", FORMATTING),
    ("coordinate-equator-hemisphere", "src/formatting/CoordinateFormatter.cpp",
     "return latitude < 0 ?", "return latitude <= 0 ?", FORMATTING),
    ("coordinate-decimal-minutes", "src/formatting/CoordinateFormatter.cpp",
     "(a - double(d)) * 60.0", "(a + double(d)) * 60.0", FORMATTING),
    ("coordinate-seconds", "src/formatting/CoordinateFormatter.cpp",
     "std::floor((f - m / 60.0) * 3600.0)", "std::floor((f + m / 60.0) * 3600.0)", FORMATTING),
    ("coordinate-parse-minutes", "src/formatting/CoordinateFormatter.cpp",
     "sum += doubleValue(number) / 60.0;", "sum -= doubleValue(number) / 60.0;", FORMATTING),
    ("distance-metre-limit", "src/formatting/DistanceFormatter.cpp",
     "m >= -999 && m <= 999", "m >= -999 && m < 999", FORMATTING),
    ("keypad-digits-after-decimal", "src/entry/LatitudeLongitudeKeypadStateMachine.cpp",
     "if (digitsAfterDecimal(component) >= maximumDigitsAfterDecimal())",
     "if (digitsAfterDecimal(component) > maximumDigitsAfterDecimal())", ENTRY),
    ("keypad-digits-before-decimal", "src/entry/LatitudeLongitudeKeypadStateMachine.cpp",
     "} else if (component.size() >= maximumDigitsBeforeDecimal()) {",
     "} else if (component.size() > maximumDigitsBeforeDecimal()) {", ENTRY),
    ("keypad-delete-last-digit", "src/entry/LatitudeLongitudeKeypadStateMachine.cpp",
     "if (component.size() >= 2) {", "if (component.size() > 2) {", ENTRY),
    ("keypad-decimal-count", "src/entry/LatitudeLongitudeKeypadStateMachine.cpp",
     "return component.size() - decimal - 1;", "return component.size() - decimal + 1;", ENTRY),
    ("grid-subsquare-zoom", "src/map/VeltorGridGeometry.cpp",
     "if (zoomScale > 0.0015 &&", "if (zoomScale < 0.0015 &&", MAP),
    ("grid-east-edge", "src/map/VeltorGridGeometry.cpp",
     "std::ceil(((rect.x + rect.width) / mapWorldWidth) * n)",
     "std::ceil(((rect.x - rect.width) / mapWorldWidth) * n)", MAP),
    ("cache-tile-that-fits-exactly", "src/map/TileCache.cpp",
     "if (image.isNull() || size > m_maxBytes)", "if (image.isNull() || size >= m_maxBytes)", TILES),
    ("cache-evict-at-limit", "src/map/TileCache.cpp",
     "while (m_bytes > maxBytes && !m_entries.empty())",
     "while (m_bytes >= maxBytes && !m_entries.empty())", TILES),
    ("cache-byte-count", "src/map/TileCache.cpp",
     "m_bytes -= entry->bytes;", "m_bytes += entry->bytes;", TILES),
]


def run(command, cwd, timeout):
    try:
        return subprocess.run(command, cwd=cwd, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return "timeout"


def suites_pass(build, suites):
    env_run = ["env", "QT_QPA_PLATFORM=offscreen", "QT_QUICK_BACKEND=software"]
    for suite in suites:
        binary = next(build.rglob(suite), None)
        if binary is None:
            sys.exit(f"{suite} is not built in {build}")
        # A hang is as much a catch as a failure: the mutant broke a loop.
        if run(env_run + [str(binary), "--gtest_brief=1"], build, 300) != 0:
            return False
    return True


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", default="build-coverage", type=pathlib.Path)
    parser.add_argument("--only", nargs="*")
    parser.add_argument("--save", type=pathlib.Path)
    parser.add_argument("--baseline", type=pathlib.Path)
    args = parser.parse_args()
    build = args.build if args.build.is_absolute() else ROOT / args.build
    chosen = [m for m in MUTANTS if not args.only or m[0] in args.only]

    for name, path, original, _, _ in chosen:
        if (ROOT / path).read_text().count(original) != 1:
            sys.exit(f"{name}: the text to mutate is not found exactly once in {path}")

    every_suite = sorted({s for m in chosen for s in m[4]})
    if run(["cmake", "--build", str(build), "--target", *every_suite], ROOT, 3600) != 0:
        sys.exit("the unmutated build fails")
    if not suites_pass(build, every_suite):
        sys.exit("the unmutated suites fail")

    results = {}
    for name, path, original, mutated, suites in chosen:
        source = ROOT / path
        text = source.read_text()
        started = time.monotonic()
        try:
            source.write_text(text.replace(original, mutated))
            built = run(["cmake", "--build", str(build), "--target", *suites], ROOT, 1800) == 0
            caught = not built or not suites_pass(build, suites)
        finally:
            source.write_text(text)
            # The restored file must be newer than the mutant's objects.
            os.utime(source)
        results[name] = "caught" if caught else "survived"
        print(f"{name:34} {results[name]:9} {time.monotonic() - started:5.0f} s", flush=True)
    run(["cmake", "--build", str(build), "--target", *every_suite], ROOT, 3600)

    caught = sum(1 for r in results.values() if r == "caught")
    print(f"{caught} of {len(results)} mutants caught")
    if args.save:
        args.save.write_text(json.dumps(results, indent=1) + "\n")
    if args.baseline:
        before = json.loads(args.baseline.read_text())
        lost = [n for n, r in results.items() if r == "survived" and before.get(n) == "caught"]
        if lost:
            print("caught before, survive now: " + ", ".join(lost))
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
