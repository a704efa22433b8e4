#!/usr/bin/python3
"""End-to-end scenarios: the real app, driven through its accessibility interface.

    dbus-run-session -- /usr/bin/python3 scenarios.py --app build/src/app/veltor \
        --data tests/data SCENARIO

Every control is found by its role and spoken name, as a screen-reader user finds it.
"""

import argparse
import os
import signal
import socket
import struct
import subprocess
import sys
import time

from harness import ScenarioFailed, Session, checked, expect, press, showing, walk, wait_for

# The point a new installation shows, and how each notation speaks its latitude.
FIRST_LOCATOR = "C N 8 7 t o 8 8 "
SAMPLE_BY_NOTATION = {
    "dms": "47 degrees 37 minutes 13 seconds north",
    "ddm": "47 degrees 37.2298 minutes north",
    "dd": "47.6205 degrees north",
}


def spelled(text):
    return "".join(c + " " for c in text)


def setting_close(session, key, expected):
    value = session.setting(key)
    return value is not None and abs(float(value) - expected) < 1e-9


def open_settings_picker(app, row, choice):
    """From the root: Settings, the row, the choice, which alone is checked and which the row then
    speaks; back to the root."""
    app.press("Menu")
    app.press("Settings")
    app.press(row)
    picker_choices = wait_for(f"the {row} choices", lambda: app.nodes("radio button"))
    app.press(choice, role="radio button")
    wait_for(f"{choice!r} alone checked", lambda: [n.name for n in app.nodes("radio button")
                                                    if checked(n)] == [choice])
    expect(len(picker_choices) >= 2, f"{row} offers {len(picker_choices)} choices")
    app.press("Back")
    wait_for(f"the {row} row to speak {choice!r}", lambda: app.button(row).description == choice)
    app.press("Done")
    app.gone("push button", "Done")


def locator_keypad(session):
    app = session.launch()
    app.press(FIRST_LOCATOR)
    typed = ""
    for key in "JN58td":
        app.press(key)
        typed += key
        app.find("label", prefix=spelled(typed))
    app.press("Done")
    app.gone("push button", "Done")

    # Shown at the default eight characters. The centre of the typed square is a corner of four
    # eight-character squares, and the decoder's rounding puts it a hair south-west of it: in 54,
    # a second short of 48° 8′ 45″ N, 11° 37′ 30″ E.
    def shows_munich(app):
        app.button(spelled("JN58td54"))
        app.button("veltor " + spelled("JN58td54") + ", button")
        app.button("latitude 48 degrees 8 minutes 44 seconds north, button")
        app.button("longitude 11 degrees 37 minutes 29 seconds east, button")

    shows_munich(app)
    wait_for("the point in the settings file",
             lambda: setting_close(session, "VeltorSavedLatitude", 48.145833333333336)
             and setting_close(session, "VeltorSavedLongitude", 11.625))
    app.quit()
    shows_munich(session.launch())


# Per notation, for the latitude and then the longitude keypad: each key with what the keypad's
# read-out speaks after it, and what the panel speaks after Done.
NOTATIONS = {
    "dms": [
        ([("5", "5 degrees north"), ("1", "51 degrees north"),
          ("degrees", "51 degrees 0 minutes north"), ("3", "51 degrees 3 minutes north"),
          ("0", "51 degrees 30 minutes north"), ("minutes", "51 degrees 30 minutes 0 seconds north"),
          ("1", "51 degrees 30 minutes 1 seconds north"),
          ("2", "51 degrees 30 minutes 12 seconds north"),
          ("delete", "51 degrees 30 minutes 1 seconds north"),
          ("8", "51 degrees 30 minutes 18 seconds north"),
          ("south", "51 degrees 30 minutes 18 seconds south")],
         "latitude 51 degrees 30 minutes 18 seconds south, button"),
        ([("1", "1 degrees west"), ("2", "12 degrees west"), ("degrees", "12 degrees 0 minutes west"),
          ("4", "12 degrees 4 minutes west"), ("5", "12 degrees 45 minutes west"),
          ("minutes", "12 degrees 45 minutes 0 seconds west"),
          ("4", "12 degrees 45 minutes 4 seconds west"), ("east", "12 degrees 45 minutes 4 seconds east")],
         "longitude 12 degrees 45 minutes 4 seconds east, button"),
    ],
    "ddm": [
        ([("1", "1 degrees north"), ("2", "12 degrees north"), ("degrees", "12 degrees 0 minutes north"),
          ("3", "12 degrees 3 minutes north"), ("0", "12 degrees 30 minutes north"),
          ("decimal point", "12 degrees 30. minutes north"), ("5", "12 degrees 30.5 minutes north"),
          ("south", "12 degrees 30.5 minutes south")],
         "latitude 12 degrees 30.5000 minutes south, button"),
        ([("9", "9 degrees west"), ("9", "99 degrees west"), ("delete", "9 degrees west"),
          ("degrees", "9 degrees 0 minutes west"), ("7", "9 degrees 7 minutes west"),
          ("decimal point", "9 degrees 7. minutes west"), ("2", "9 degrees 7.2 minutes west"),
          ("5", "9 degrees 7.25 minutes west")],
         "longitude 9 degrees 7.2500 minutes west, button"),
    ],
    "dd": [
        ([("4", "4 degrees north"), ("5", "45 degrees north"), ("decimal point", "45. degrees north"),
          ("2", "45.2 degrees north"), ("5", "45.25 degrees north"), ("south", "45.25 degrees south")],
         "latitude 45.2500 degrees south, button"),
        ([("1", "1 degrees west"), ("7", "17 degrees west"), ("0", "170 degrees west"),
          ("decimal point", "170. degrees west"), ("5", "170.5 degrees west")],
         "longitude 170.5000 degrees west, button"),
    ],
}


def coordinate_keypads(session):
    app = session.launch()
    # The longitude starts west, where the first point is.
    for notation, keypads in NOTATIONS.items():
        open_settings_picker(app, "Coordinates", SAMPLE_BY_NOTATION[notation])
        for (keys, panel), opener in zip(keypads, ["latitude ", "longitude "]):
            app.press(prefix=opener)
            for key, spoken in keys:
                app.press(key)
                app.wait_spoken("label", spoken)
            app.press("Done")
            app.gone("push button", "Done")
            app.button(panel)

    # Done with nothing typed leaves the point as it was, in the panel and on disk.
    before = session.settings.read_text()
    app.press(prefix="latitude ")
    app.press("Done")
    app.gone("push button", "Done")
    app.button(NOTATIONS["dd"][0][1])
    app.quit()
    expect(session.settings.read_text() == before, "Done with nothing typed changed the settings")


def settings_pickers(session):
    app = session.launch()
    locator_rows = {FIRST_LOCATOR[:4]: spelled("CN"), FIRST_LOCATOR[:8]: spelled("CN87"),
                    FIRST_LOCATOR[:12]: spelled("CN87to"), FIRST_LOCATOR: FIRST_LOCATOR}
    for choice in locator_rows:
        open_settings_picker(app, "Locator precision", choice)
        app.button(locator_rows[choice])
    for notation, sample in SAMPLE_BY_NOTATION.items():
        open_settings_picker(app, "Coordinates", sample)
        app.button("latitude " + sample + ", button")
    for units in ["Metric", "Imperial"]:
        open_settings_picker(app, "Distance units", units)
    for appearance in ["Night", "Red night", "Day"]:
        open_settings_picker(app, "Appearance", appearance)
    open_settings_picker(app, "Crossing alerts", "6 characters")
    # A map file must be named before it can be the map; until then the basemap stays.
    app.press("Menu")
    app.press("Settings")
    app.press("Map source")
    app.press("MBTiles File", role="radio button")
    app.find("label", name="Enter the path of an MBTiles file, then press Enter.")
    wait_for("the basemap still chosen", lambda: [n.name for n in app.nodes("radio button")
                                                  if checked(n)] == ["Offline Basemap"])
    app.press("Back")
    app.press("Done")
    app.gone("push button", "Done")
    wait_for("the choices on disk", lambda: session.setting("CoordinateFormatPreference")
             and session.setting("AppearancePreference")
             and session.setting("CrossingAlertPreference") == "VeltorFormatSixCharacters")

    app.press("Menu")
    app.press("Settings")
    grid = app.button("Show grid")
    expect(checked(grid), "the grid is shown by default")
    app.press("Show grid")
    wait_for("the grid switch off", lambda: not checked(app.button("Show grid")))
    wait_for("the grid choice on disk", lambda: session.setting("ShowGridPreference") == "false")
    # The grid position strip is off until asked for, then read out under the read-outs.
    expect(not app.nodes("label", prefix="Grid position:"), "the grid position shows unasked")
    app.press("Grid position")
    wait_for("the grid position switch on", lambda: checked(app.button("Grid position")))
    app.press("Done")
    # With a target as well, a phone keeps half its height for the map: the tools fold to a line.
    app.press(prefix="Field tools: ")
    strip = app.find("label", prefix="Grid position: north edge ")
    expect(strip.name.endswith(" meet."), f"the strip names no corner: {strip.name!r}")
    app.quit()


def live_tracking(session):
    app = session.launch("--gps", str(session.data / "nmea" / "greenwich-stroll.nmea"))
    off_hint = app.button("Tracking disabled").description
    expect(off_hint, "the tracking button has no hint")
    open_settings_picker(app, "Crossing alerts", "4 characters")
    app.press("Tracking disabled")
    wait_for("the hint for ending tracking",
             lambda: app.button("Tracking enabled").description not in ("", off_hint))
    # The walk crosses the prime meridian at Greenwich, from IO91 into JO01.
    app.button(prefix="latitude 51 degrees 28 minutes 40 seconds north")
    app.button(spelled("JO01al04"))
    # The crossing is seen and told to a screen reader as an alert, then leaves the map clear.
    app.find("alert", name="Entering J O 0 1")
    app.gone("alert", name="Entering J O 0 1")
    accuracy = wait_for("the accuracy in the toolbar",
                        lambda: [n.name for n in app.nodes("label") if "ft" in n.name])
    open_settings_picker(app, "Distance units", "Metric")
    wait_for("the accuracy in metres",
             lambda: [n.name for n in app.nodes("label") if n.name.endswith("\u00a0m")])
    expect(accuracy, "no accuracy was spoken")

    # The map's own action does what a long press does: tracking ends, the point stays put.
    app.press("Map")
    app.button("Tracking disabled")
    wait_for("the accuracy gone", lambda: not [n for n in app.nodes("label")
                                                if n.name.endswith("\u00a0m")])
    app.button(prefix="latitude 51 degrees 28 minutes")
    app.quit()

    # A car or kiosk set-up starts tracking with the app.
    app = session.launch("--gps", str(session.data / "nmea" / "greenwich-stroll.nmea"), "--track")
    app.button("Tracking enabled")
    app.quit()

    # From a cold start the receiver talks before it has a fix: tracking waits and says so; the
    # end of the log is said on screen, not only on standard output.
    log = session.data / "nmea" / "cold-start.nmea"
    app = session.launch("--gps", str(log), "--track")
    app.find("label", prefix="No fix yet, 0 of 4 satellites")
    app.find("label", name=f"The NMEA log {log} has ended.", timeout=15)
    app.button("Tracking disabled")
    app.quit()


def free_port(kind):
    with socket.socket(socket.AF_INET, kind) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wsjtx_string(text):
    """A string as WSJT-X's messages carry it: a 32-bit big-endian length, then UTF-8."""
    data = text.encode()
    return struct.pack(">I", len(data)) + data


def wsjtx_heartbeat(instance):
    """WSJT-X's Heartbeat (type 0) at schema 2: id, maximum schema, version, revision."""
    return (struct.pack(">III", 0xADBCCBDA, 2, 0) + wsjtx_string(instance) + struct.pack(">I", 3)
            + wsjtx_string("2.6.1") + wsjtx_string("e2e"))


def wsjtx_locations(stand_in):
    """The grids of the Location messages (type 11) that reached the stand-in so far."""
    grids = []
    while True:
        try:
            datagram = stand_in.recv(4096)
        except BlockingIOError:
            return grids
        magic, _, kind = struct.unpack_from(">III", datagram)
        if magic != 0xADBCCBDA or kind != 11:
            continue
        (length,) = struct.unpack_from(">I", datagram, 12)
        (grid_length,) = struct.unpack_from(">I", datagram, 16 + length)
        grids.append(datagram[20 + length:20 + length + grid_length].decode())


def station(session):
    """gpsd (a real one, fed by gpsfake) as the GPS source, and the live grid sent to a stand-in
    WSJT-X while tracking, and only then."""
    gpsd_port, wsjtx_port = free_port(socket.SOCK_STREAM), free_port(socket.SOCK_DGRAM)
    session.write_settings(f"GpsSourcePreference=gpsd://127.0.0.1:{gpsd_port}\n"
                           f"WsjtxAddressPreference=127.0.0.1:{wsjtx_port}\n")
    gpsfake = subprocess.Popen(
        # Paced near a real receiver's one fix a second; unpaced it floods the app.
        ["gpsfake", "-q", "-c", "0.15", "-P", str(gpsd_port),
         str(session.data / "nmea" / "gpsd-station.nmea")],
        stdout=subprocess.DEVNULL, stderr=session.log, start_new_session=True)
    stand_in = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    stand_in.setblocking(False)
    try:
        app = session.launch()
        app.press("Menu")
        app.press("Settings")
        app.press("Station")
        sources = ("System Positioning", "gpsd")
        wait_for("gpsd chosen", lambda: [n.name for n in app.nodes("radio button")
                                         if checked(n) and n.name in sources] == ["gpsd"])
        # Tracking waits a quarter of an hour for a fix unless told otherwise.
        wait_for("15 minutes to wait", lambda: [n.name for n in app.nodes("radio button")
                                               if checked(n) and n.name not in sources]
                 == ["15 Minutes"])
        app.press("System Positioning", role="radio button")
        wait_for("the system's positioning on disk",
                 lambda: session.setting("GpsSourcePreference") == "")
        app.press("gpsd", role="radio button")
        wait_for("gpsd on disk", lambda: session.setting("GpsSourcePreference")
                 == f"gpsd://127.0.0.1:{gpsd_port}")
        app.press("Send Grid to WSJT-X")
        wait_for("the WSJT-X switch on disk", lambda: session.setting("WsjtxPreference") == "true")
        app.press("Back")
        app.press("Done")
        app.gone("push button", "Done")

        app.press("Tracking disabled")
        app.find("label", prefix="3D fix, 8 of 11 satellites")
        app.button(prefix=spelled("JN58td"))
        stand_in.sendto(wsjtx_heartbeat("WSJT-X"), ("127.0.0.1", wsjtx_port))
        grids = wait_for("the grid at the stand-in WSJT-X", lambda: wsjtx_locations(stand_in))
        expect(grids == ["JN58td"], f"WSJT-X was sent {grids}")

        # gpsd goes away: tracking carries on and says so.
        os.killpg(gpsfake.pid, signal.SIGINT)
        gpsfake.wait(timeout=10)
        app.find("label", prefix="GPS source lost, reconnecting")
        app.button("Tracking enabled")

        app.press("Tracking enabled")
        app.button("Tracking disabled")
        stand_in.sendto(wsjtx_heartbeat("WSJT-X - second"), ("127.0.0.1", wsjtx_port))
        time.sleep(2)
        expect(not wsjtx_locations(stand_in), "a grid was sent while not tracking")
        app.quit()
    finally:
        stand_in.close()
        if gpsfake.poll() is None:
            os.killpg(gpsfake.pid, signal.SIGINT)
            gpsfake.wait(timeout=10)


def share(session):
    app = session.launch()
    for action, expected in [("Copy Locator", "CN87to88"),
                             ("Copy Latitude and Longitude", "47° 37′ 13″ N, 122° 20′ 57″ W")]:
        app.press("Share")
        app.press(action)
        app.gone("push button", action)
        wait_for(f"{expected!r} on the clipboard", lambda: session.clipboard() == expected)
    app.press("Share")
    app.press("Show in Maps")
    wait_for("the point handed to the desktop", lambda: session.opened.exists()
             and session.opened.read_text().strip() == "geo:47.620496,-122.349270?q=47.620496,-122.349270(CN87to88)")
    # The share sheet only shares; the other tools are in the menu.
    app.press("Share")
    app.gone("push button", "Set as Target")
    app.press("Cancel")
    app.gone("push button", "Cancel")
    # The point as the target: the way there is read out under the read-outs until cleared.
    app.press("Menu")
    app.press("Set as Target")
    app.find("label", prefix="Target C N 8 7 t o 8 8: ")
    app.press("Clear Target")
    app.gone("label", prefix="Target ")
    # A keypad left by its ✕ keeps nothing typed.
    app.press("Menu")
    app.press("Type Target Locator")
    app.press("J")
    app.press("Cancel")
    app.gone("push button", "Done")
    app.gone("label", prefix="Target ")
    # Typed on the locator keypad: the target is set, the point stays where it was.
    app.press("Menu")
    app.press("Type Target Locator")
    for key in "JO62":
        app.press(key)
    app.press("Done")
    app.gone("push button", "Done")
    app.find("label", prefix="Target " + spelled("JO62ll99").strip() + ": ")
    app.button(spelled("CN87to88"))
    app.press("Clear Target")
    # A proof of the position: a picture and a record in the pictures folder, and a message.
    app.press("Menu")
    app.press("Save Proof")
    app.find("label", prefix="Proof saved in ")
    proofs = session.path / "home" / "Pictures" / "Veltor"
    wait_for("the proof on disk", lambda: sorted(p.suffix for p in proofs.glob("veltor-*"))
             == [".png", ".txt"])
    app.press("Share")
    app.press("Cancel")
    app.gone("push button", "Cancel")
    app.quit()

    # A German desktop gets the German screens, read out and pressed by their German names.
    app = session.launch(LANG="de_DE.UTF-8", LC_ALL="de_DE.UTF-8", LANGUAGE="de")
    app.button("Verfolgung deaktiviert")
    app.press("Teilen")
    app.press("Locator kopieren")
    wait_for("the locator copied", lambda: session.clipboard() == "CN87to88")
    app.quit()


def tracking_alert(session):
    # No GPS named and no system positioning service to reach: nothing can give a position.
    app = session.launch(DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={session.path}/no-system-bus")
    app.press("Tracking disabled")
    alert = wait_for("the alert", lambda: [n for n in walk(app.root)
                                           if n.getRoleName() == "dialog" and n.name])[0]
    expect(alert.name == "Location Unavailable", f"the alert is titled {alert.name!r}")
    spoken = [n.name for n in walk(alert) if n.getRoleName() == "label"]
    expect("Veltor cannot use your position. Check that a GPS source is connected and that "
           "location access is allowed." in spoken, f"the alert says {spoken}")
    app.press("OK")
    wait_for("the alert dismissed", lambda: not [n for n in walk(app.root)
                                                 if n.getRoleName() == "dialog" and n.name])
    app.button("Tracking disabled")
    # Asked again, the alert leads to where a GPS source is chosen.
    app.press("Tracking disabled")
    app.press("GPS Settings")
    app.press("Back")
    app.press("Done")
    app.gone("push button", "Done")
    app.quit()


def first_run(session):
    # A first launch teaches, over everything else, and nothing behind the card can be reached.
    session.settings.unlink()
    app = session.launch()
    app.find("label", "Welcome to Veltor")
    app.find("label", prefix="Press and hold the map")
    behind = ["Menu", "Share", "Tracking disabled", "Zoom in",
              f"latitude {SAMPLE_BY_NOTATION['dms']}, button"]

    def reachable():
        return [n.name for n in walk(app.root)
                if n.getRoleName() == "push button" and n.name in behind]

    expect(not reachable(), f"behind the card a screen reader reaches {reachable()}")
    app.press("Got It")
    app.gone("label", "Welcome to Veltor")
    app.button("Menu")
    # A sheet hides what lies behind it in the same way, and gives it back when it closes.
    app.press("Menu")
    app.press("Settings")
    app.find("push button", "Done")
    wait_for("the menu gone and nothing behind Settings", lambda: not reachable())
    app.press("Done")
    app.gone("push button", "Done")
    wait_for("everything behind back", lambda: sorted(reachable()) == sorted(behind))
    app.quit()
    # Put away for good.
    app = session.launch()
    app.button("Menu")
    expect(not app.nodes("label", "Welcome to Veltor"), "the card came back")
    app.quit()


# Every screen, as the launch arguments and presses that reach it.
# Every screen: how it is reached (launch arguments, then presses), a button that shows it is
# there, and one of the screen below that must have gone. The presses leave every key something
# to do: a digit to follow, a hemisphere to change back.
SCREENS = [
    ("root", [], [], "Share", None),
    ("share sheet", [], ["Share"], "Cancel", None),
    ("locator keypad", ["--open", "locator-keypad"], ["J"], "Done", None),
    ("latitude keypad", ["--open", "latitude-keypad"], ["1", "south"], "Done", None),
    ("longitude keypad", ["--open", "longitude-keypad"], ["1", "east"], "Done", None),
    ("settings", ["--open", "settings"], [], "Show grid", None),
] + [(f"{row} picker", ["--open", "settings"], [row], "Back", "Show grid")
     for row in ["Locator precision", "Coordinates", "Distance units", "Appearance"]]

# Buttons whose effect a screen reader cannot see: the map's zoom, and a point placed at the
# centre, which is where the point already is.
SILENT = {"Zoom in", "Zoom out", "Map"}


def snapshot(app):
    return [(n.getRoleName(), n.name, n.description, checked(n)) for n in walk(app.root)]


def settled(app):
    """The tree once a screen's transition is over: the same twice in a row."""
    previous = None
    def same():
        nonlocal previous
        current = snapshot(app)
        unchanged, previous = current == previous, current
        return unchanged and current
    return wait_for("the screen to settle", same)


def every_button(session):
    root_buttons = None
    pressed = 0
    for screen, arguments, presses, landmark, covered in SCREENS:
        def reach():
            # Each screen as on a new installation, so that earlier presses cannot move the point.
            session.write_settings()
            app = session.launch(*arguments)
            for name in presses:
                app.press(name)
            app.button(landmark)
            if covered:
                app.gone("push button", covered)
            settled(app)
            return app, {n.name: n for n in app.nodes("push button")}

        app, buttons = reach()
        if root_buttons is None:
            root_buttons = set(buttons)
        names = [n for n in buttons if screen == "root" or n not in root_buttons]
        # A screen shows only what it has, named, and nothing twice.
        expect(names and all(n.strip() for n in names), f"unnamed push buttons on the {screen}")
        expect(len(app.nodes("push button")) == len(buttons),
               f"two push buttons share a name on the {screen}")
        unnamed = [n for n in app.nodes("radio button") if not n.name.strip()]
        expect(not unnamed, f"{len(unnamed)} unnamed choices on the {screen}")

        before = snapshot(app)
        for name in names:
            for attempt in range(2):
                if not showing(buttons[landmark]) or not showing(buttons[name]):
                    app.quit()
                    app, buttons = reach()
                    before = snapshot(app)
                press(buttons[name])
                if name in SILENT:
                    break
                try:
                    before = wait_for(f"{name!r} to do something",
                                      lambda: (lambda now: now != before and now)(snapshot(app)), 3)
                except ScenarioFailed:
                    # A key can have nothing left to do; on a fresh screen it must act.
                    if attempt == 1:
                        raise
                    app.quit()
                    app, buttons = reach()
                    before = snapshot(app)
                    continue
                # The key taken back, so that the next one has room for its digit or letter.
                if name != "delete" and "delete" in buttons and showing(buttons["delete"]):
                    press(buttons["delete"])
                    before = settled(app)
                break
            pressed += 1
        app.quit()
    expect(pressed >= 70, f"only {pressed} push buttons pressed")


SCENARIOS = {f.__name__: f for f in [locator_keypad, coordinate_keypads, settings_pickers,
                                      live_tracking, share, tracking_alert, every_button,
                                      station, first_run]}


def out_of_time(*_):
    raise ScenarioFailed("out of time")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--app", required=True)
    parser.add_argument("--data", required=True)
    parser.add_argument("scenario", choices=sorted(SCENARIOS))
    args = parser.parse_args()
    started = time.monotonic()
    # Well inside CTest's limit, so a hung scenario still reports what it saw and cleans up.
    signal.signal(signal.SIGALRM, out_of_time)
    signal.alarm(100)
    with Session(args.app, args.data) as session:
        try:
            SCENARIOS[args.scenario](session)
        except ScenarioFailed as failure:
            # What a screen reader could reach at that moment, to see what was there instead.
            for app in session.apps:
                if app.process.poll() is None:
                    for node in walk(app.root):
                        print(f"  {node.getRoleName()} {node.name!r} {node.description!r}",
                              file=sys.stderr)
            print(f"FAILED {args.scenario}: {failure}", file=sys.stderr)
            sys.exit(1)
    print(f"{args.scenario} passed in {time.monotonic() - started:.1f} s")


if __name__ == "__main__":
    main()
