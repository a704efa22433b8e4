#!/usr/bin/env python3
"""Writes the NMEA logs the location tests replay. Run from this directory after editing."""


def sentence(body):
    checksum = 0
    for character in body:
        checksum ^= ord(character)
    return "$%s*%02X" % (body, checksum)


def minutes(degrees, width, positive, negative):
    hemisphere = positive if degrees >= 0 else negative
    degrees = abs(degrees)
    whole = int(degrees)
    return "%0*d%07.4f,%s" % (width, whole, (degrees - whole) * 60, hemisphere)


def fix(second, latitude, longitude, hdop):
    """One fix: RMC (date and time) first, then GGA with the HDOP when there is one."""
    time = "1200%02d.00" % second
    position = minutes(latitude, 2, "N", "S") + "," + minutes(longitude, 3, "E", "W")
    lines = [sentence("GPRMC,%s,A,%s,1.1,90.0,010624,,,A" % (time, position))]
    if hdop is not None:
        lines.append(sentence("GPGGA,%s,%s,1,08,%.1f,45.0,M,47.0,M,," % (time, position, hdop)))
    return lines


def write(name, lines):
    with open(name, "w", newline="") as log:
        log.write("".join(line + "\r\n" for line in lines))


# Eastwards over the Greenwich meridian, from IO91 into JO01; the last fix has no HDOP.
walk = [(-0.0006, 0.9), (-0.0003, 1.2), (0.0003, 1.0), (0.0006, None)]
write("greenwich-walk.nmea",
      [line for second, (longitude, hdop) in enumerate(walk)
       for line in fix(second, 51.4779, longitude, hdop)])

# Good fixes, then a receiver that talks nonsense. Qt 6.4 drops the fix read just before the
# nonsense, so only the first two are sure to arrive.
write("turns-to-garbage.nmea",
      fix(0, 51.4779, -0.0006, 0.9) + fix(1, 51.4779, -0.0003, 1.2)
      + fix(2, 51.4779, 0.0003, 1.0) + [
          "$GPRMC,120003.00,A,5128.6740,N,00000.0360,E,1.1,90.0,010624,,,A*00",
          "GARBAGE GARBAGE GARBAGE",
          "$GPGGA,,,,,,,,,,,,,,*FF",
          "\x7f\x01\x02 not NMEA at all",
          "$$$$$$$$$$$$$$$$$$$$$$$$$$$$$$$$",
          "$GPXXX,120004.00,what,is,this*41",
      ])

# Two fixes, then the log simply ends.
write("ends-after-two-fixes.nmea",
      fix(0, 51.4779, -0.0006, 0.9) + fix(1, 51.4779, -0.0003, 1.2))

# Eastwards along 48.52° N over the line at 12° E between JN58 and JN68 (and JN58xm and JN68am),
# wiggling across it within the margin, then well into JN68; back west with a poor fix that stays
# within its own accuracy of the line, then firmly into JN58. Offsets are metres east of the line.
metres_per_degree = 73_950.0  # of longitude at 48.52° N, near enough for where the fixes lie
drive = [(-300, 1.0), (-50, 1.0), (-8, 1.0), (6, 1.0), (-4, 1.0), (9, 1.0), (3, 1.0), (25, 1.0),
         (12, 1.0), (-6, 1.0), (4, 1.0), (-40, 9.9), (-80, 9.9), (-200, 1.0)]
write("wiggle-drive.nmea",
      [line for second, (east, hdop) in enumerate(drive)
       for line in fix(second, 48.52, 12.0 + east / metres_per_degree, hdop)])

# The same walk for the end-to-end scenarios, then standing still with a good fix for a while:
# long enough for a screen reader to change the units while the fix is still live.
stroll = [(-0.0006, 0.9), (-0.0003, 1.2), (0.0003, 1.0)] + [(0.0006, 1.0)] * 20
write("greenwich-stroll.nmea",
      [line for second, (longitude, hdop) in enumerate(stroll)
       for line in fix(second, 51.4779, longitude, hdop)])

# A station receiver as gpsd sees it: each second RMC, GGA, then GSA with the 8 satellites in use
# and GSV with the 11 in view, standing at JN58td for a minute.
in_use = [2, 5, 7, 9, 13, 16, 20, 30]
in_view = in_use + [11, 23, 27]
def sky():
    used = ",".join("%02d" % prn for prn in in_use) + "," * (12 - len(in_use))
    lines = [sentence("GPGSA,A,3,%s,1.8,1.0,1.5" % used)]
    groups = [in_view[i:i + 4] for i in range(0, len(in_view), 4)]
    for number, group in enumerate(groups, 1):
        satellites = ",".join("%02d,45,%03d,40" % (prn, prn * 10) for prn in group)
        lines.append(sentence("GPGSV,%d,%d,%02d,%s" % (len(groups), number, len(in_view),
                                                      satellites)))
    return lines
write("gpsd-station.nmea",
      [line for second in range(60) for line in fix(second, 48.1467, 11.6083, 1.0) + sky()])

# Receivers as they really talk, one short log for each shape that trips a reader up. Epochs
# are a fifth of a second apart so that the tests replay them quickly; the fixes step east from
# JO01 by 0.0003° each, at HDOP 1.0.
def clock(seconds):
    seconds %= 24 * 3600
    hours, rest = divmod(seconds, 3600)
    minutes, seconds = divmod(rest, 60)
    return "%02d%02d%05.2f" % (hours, minutes, seconds)


NOON = 12 * 3600


def good(seconds, step, date="010624", gsa=False):
    time = clock(seconds)
    position = minutes(51.4779, 2, "N", "S") + "," + minutes(0.0003 * step, 3, "E", "W")
    lines = [sentence("GPRMC,%s,A,%s,0.5,90.0,%s,,,A" % (time, position, date)),
             sentence("GPGGA,%s,%s,1,05,1.0,45.0,M,47.0,M,," % (time, position))]
    if gsa:
        lines.append(sentence("GPGSA,A,3,02,05,07,09,,,,,,,,,1.8,1.0,1.5"))
    return lines


SKY = sentence("GPGSV,1,1,04,02,45,020,30,05,45,050,28,07,45,070,25,09,45,090,22")


def looking(seconds, position="", gsa=True):
    """A receiver without a fix: RMC void (with whatever coordinates it still sends)."""
    time = clock(seconds)
    position = position or ",,,"
    lines = [sentence("GPRMC,%s,V,%s,,,010624,,,N" % (time, position)),
             sentence("GPGGA,%s,,,,,0,00,99.99,,,,,," % time)]
    if gsa:
        lines += [sentence("GPGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99"), SKY]
    return lines


def steps(count, first=0.0, step=0):
    return [(NOON + first + 0.2 * i, step + i) for i in range(count)]


three = [line for t, k in steps(3) for line in good(t, k, gsa=True)]
last_position = minutes(51.4779, 2, "N", "S") + "," + minutes(0.0006, 3, "E", "W")
write("void-after-fixes.nmea",
      three + [line for t, _ in steps(6, 0.6) for line in looking(t, last_position)])
write("void-without-gsa.nmea",
      [line for t, k in steps(3) for line in good(t, k)]
      + [line for t, _ in steps(6, 0.6)
         for line in looking(t, "0000.0000,N,00000.0000,E", gsa=False)])
write("cold-start.nmea",
      [line for t, _ in steps(12) for line in looking(t)]
      + [line for t, k in steps(2, 2.4) for line in good(t, k, gsa=True)])
write("trailing-sentences.nmea",
      three + [sentence("GPVTG,90.0,T,,M,0.5,N,0.9,K,A"), SKY,
               sentence("PGRME,15.0,M,45.0,M,22.5,M")])
write("untimed-first.nmea",
      [sentence("GPRMC,,V,,,,,,,,,,N")] + [line for t, k in steps(3) for line in good(t, k)])
write("wrong-dates.nmea",
      good(NOON, 0, date="060180") + good(NOON + 0.2, 1, date="310524")
      + good(NOON + 0.4, 2))
write("zda-ahead.nmea",
      [line for t, k in steps(3)
       for line in [sentence("GPZDA,%s,01,06,2024,00,00" % clock(t + 1))] + good(t, k)])
write("joined-sessions.nmea",
      three + [line for t, k in steps(3, -3 * 3600, 3) for line in good(t, k, gsa=True)])
write("across-midnight.nmea",
      [line for t, k in steps(4, 12 * 3600 - 0.4) for line in
       good(t, k, date="010624" if t < 24 * 3600 else "020624")])

# A minute's drive at 1 Hz, north-east out of Seattle at 60 km/h, for the handheld benchmark.
step = 60 / 3.6 / 111_200 / 2 ** 0.5
write("seattle-drive-minute.nmea",
      [line for second in range(60)
       for line in fix(second, 47.6205 + second * step, -122.3493 + second * step / 0.674, 0.9)])
