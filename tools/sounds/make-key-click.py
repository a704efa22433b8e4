#!/usr/bin/env python3
"""Writes the keypads' key click: 15 ms of a damped 2.4 kHz tone over a short noise tick.

Run from the project root: python3 tools/sounds/make-key-click.py
The output is deterministic (fixed seed), so the committed file can be re-made byte for byte.
"""
import math
import random
import struct
import wave

RATE = 44100
LENGTH_S = 0.015
OUT = "resources/sounds/key-click.wav"

random.seed(1104)
frames = bytearray()
for n in range(int(RATE * LENGTH_S)):
    t = n / RATE
    envelope = math.exp(-t / 0.0025)
    tone = math.sin(2 * math.pi * 2400 * t)
    tick = random.uniform(-1, 1) * math.exp(-t / 0.0006)
    sample = 0.45 * envelope * tone + 0.35 * tick
    frames += struct.pack("<h", int(max(-1.0, min(1.0, sample)) * 32767))

with wave.open(OUT, "wb") as out:
    out.setnchannels(1)
    out.setsampwidth(2)
    out.setframerate(RATE)
    out.writeframes(bytes(frames))
