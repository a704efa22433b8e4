#!/usr/bin/env python3
"""Writes the grid-crossing chime: two rising bell-like notes (E6 then A6), unlike the key click,
loud enough to hear in a moving car.

Run from the project root: python3 tools/sounds/make-crossing-chime.py
The output is deterministic, so the committed file can be re-made byte for byte.
"""
import math
import struct
import wave

RATE = 44100
NOTES = [(1318.5, 0.0), (1760.0, 0.18)]  # frequency in Hz, start in seconds
LENGTH_S = 0.7
OUT = "resources/sounds/grid-crossing.wav"

frames = bytearray()
for n in range(int(RATE * LENGTH_S)):
    t = n / RATE
    sample = 0.0
    for frequency, start in NOTES:
        if t >= start:
            u = t - start
            # A bell: the fundamental and a quieter octave, each decaying.
            sample += 0.42 * math.exp(-u / 0.16) * (math.sin(2 * math.pi * frequency * u)
                                                     + 0.3 * math.sin(4 * math.pi * frequency * u))
    # A 5 ms fade-in keeps the first sample from clicking.
    sample *= min(1.0, t / 0.005)
    frames += struct.pack("<h", int(max(-1.0, min(1.0, sample)) * 32767))

with wave.open(OUT, "wb") as out:
    out.setnchannels(1)
    out.setsampwidth(2)
    out.setframerate(RATE)
    out.writeframes(bytes(frames))
