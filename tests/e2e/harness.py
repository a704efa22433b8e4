"""Drives the real veltor binary the way a screen reader does: over the AT-SPI bus, finding every
control by its role and spoken name.

Each scenario gets its own virtual display, accessibility bus and settings file; the caller runs
it inside `dbus-run-session` so nothing reaches the desktop the tests were started from.
"""

import ctypes
import os
import pathlib
import signal
import subprocess
import tempfile
import time

# Imported once the session's own accessibility bus is up: importing it earlier has D-Bus start a
# shared one for it, outside the session's directory.
pyatspi = None

POLL = 0.05


class ScenarioFailed(AssertionError):
    pass


def wait_for(what, probe, timeout=10.0):
    """Polls probe until it returns something truthy; fails naming what never came."""
    end = time.monotonic() + timeout
    last = None
    while time.monotonic() < end:
        try:
            last = probe()
        except Exception as error:  # a node can vanish between the walk and the read
            last = error
        if last and not isinstance(last, Exception):
            return last
        time.sleep(POLL)
    raise ScenarioFailed(f"timed out waiting for {what} (last seen: {last!r})")


def expect(condition, message):
    if not condition:
        raise ScenarioFailed(message)


def walk(node):
    """Every showing node under node, depth first; hidden screens are skipped with their children."""
    try:
        if not node.getState().contains(pyatspi.STATE_SHOWING) and node.getRole() != pyatspi.ROLE_APPLICATION:
            return
        yield node
        for child in node:
            if child is not None:
                yield from walk(child)
    except Exception:
        return


class App:
    def __init__(self, process, settings):
        self.process = process
        self.settings = settings
        self.root = wait_for("the app on the accessibility bus", self._registered, timeout=20)
        # The window is on the bus before its screens are laid out.
        wait_for("the first screen", lambda: self.nodes("push button"))

    def _registered(self):
        if self.process.poll() is not None:
            raise ScenarioFailed(f"veltor exited with {self.process.returncode}")
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.get_process_id() == self.process.pid:
                return app
        return None

    def nodes(self, role, name=None, prefix=None):
        found = []
        for node in walk(self.root):
            if node.getRoleName() != role:
                continue
            if name is not None and node.name != name:
                continue
            if prefix is not None and not node.name.startswith(prefix):
                continue
            found.append(node)
        return found

    def find(self, role, name=None, prefix=None, timeout=10.0):
        """The one showing node of role with that spoken name; two would make the name ambiguous."""
        what = f"{role} {name if name is not None else (prefix or '') + '…'!r}"

        def probe():
            matches = self.nodes(role, name, prefix)
            expect(len(matches) <= 1, f"{len(matches)} nodes answer to {what}")
            return matches[0] if matches else None

        return wait_for(what, probe, timeout)

    def button(self, name=None, prefix=None):
        return self.find("push button", name, prefix)

    def press(self, name=None, prefix=None, role="push button"):
        press(self.find(role, name, prefix))

    def wait_spoken(self, role, name):
        """Waits until a node of role speaks exactly name, as it would after a change."""
        return self.find(role, name=name)

    def gone(self, role, name=None, prefix=None):
        wait_for(f"{role} {name or prefix!r} to go", lambda: not self.nodes(role, name, prefix))

    def quit(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            self.process.wait(timeout=10)
        expect(self.process.returncode == 0, f"veltor ended with {self.process.returncode}")


def press(node):
    action = node.queryAction()
    for index in range(action.nActions):
        if action.getName(index) == "Press":
            action.doAction(index)
            return
    raise ScenarioFailed(f"{node.getRoleName()} {node.name!r} has no Press action")


def checked(node):
    return node.getState().contains(pyatspi.STATE_CHECKED)


def showing(node):
    try:
        return node.getState().contains(pyatspi.STATE_SHOWING)
    except Exception:
        return False


def _die_with_parent():
    # Should the scenario itself be killed, nothing it started outlives it.
    ctypes.CDLL("libc.so.6", use_errno=True).prctl(1, signal.SIGTERM)  # PR_SET_PDEATHSIG


def stop(process, signal_number):
    """Signals the process, and its whole group where it leads one."""
    try:
        if os.getpgid(process.pid) == process.pid:
            os.killpg(process.pid, signal_number)
        elif process.poll() is None:
            process.send_signal(signal_number)
    except ProcessLookupError:
        pass


class Session:
    """A virtual display and accessibility bus, and every app started on them."""

    def __init__(self, binary, data):
        self.binary = binary
        self.data = pathlib.Path(data)
        self.directory = tempfile.TemporaryDirectory(prefix="veltor-e2e-")
        self.path = pathlib.Path(self.directory.name)
        self.settings = self.path / "veltor.conf"
        self.processes = []
        self.apps = []
        self.log = open(self.path / "veltor.log", "w")

    def __enter__(self):
        # The accessibility bus lives under the runtime directory: a private one keeps parallel
        # and earlier scenarios off it.
        runtime = self.path / "runtime"
        runtime.mkdir(mode=0o700)
        os.environ["XDG_RUNTIME_DIR"] = str(runtime)
        read, write = os.pipe()
        # -noreset: an X server resets when its last client leaves, and refuses the next one
        # while it does, which a client that only sets a property and goes would cause.
        xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24",
                                 "-nolisten", "tcp", "-noreset"], pass_fds=(write,), stderr=self.log,
                                preexec_fn=_die_with_parent)
        self.processes.append(xvfb)
        os.close(write)
        with os.fdopen(read) as displays:
            display = displays.readline().strip()
        expect(display, "Xvfb found no free display")
        os.environ["DISPLAY"] = ":" + display
        # In a group of its own, so that its bus daemon and registry go with it.
        self.processes.append(subprocess.Popen(
            ["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True,
            preexec_fn=_die_with_parent))
        wait_for("the accessibility bus", lambda: subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
             "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", "string:org.a11y.Bus"],
            capture_output=True, text=True).stdout.strip().endswith("true"))
        global pyatspi
        import pyatspi
        # A stand-in for the desktop's opener records what the app hands over.
        self.opened = self.path / "opened.txt"
        bin_dir = self.path / "bin"
        bin_dir.mkdir()
        opener = bin_dir / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >> "{self.opened}"\n')
        opener.chmod(0o755)
        self.environment = dict(
            os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QUICK_BACKEND="software", LANG="en_US.UTF-8", LANGUAGE="en",
            PATH=f"{bin_dir}:{os.environ.get('PATH', '/usr/bin:/bin')}",
            XDG_CONFIG_HOME=str(self.path / "config"), XDG_CACHE_HOME=str(self.path / "cache"),
            # Proofs go to the pictures folder under home: never the real one.
            HOME=str(self.path / "home"))
        (self.path / "home").mkdir()
        self.write_settings()
        return self

    def write_settings(self, lines=""):
        """A new installation's settings with lines added; past the first-run card, which
        first_run meets by removing the file."""
        self.settings.write_text("[General]\nWelcomeDismissed=true\n" + lines)

    def launch(self, *arguments, **environment):
        process = subprocess.Popen(
            [self.binary, "--settings", str(self.settings), "--size", "390x844", *arguments],
            env=dict(self.environment, **environment), stdout=subprocess.DEVNULL, stderr=self.log,
            preexec_fn=_die_with_parent)
        self.processes.append(process)
        app = App(process, self.settings)
        self.apps.append(app)
        return app

    def setting(self, key):
        """A key of the settings file as written, or None."""
        if not self.settings.exists():
            return None
        for line in self.settings.read_text().splitlines():
            name, _, value = line.partition("=")
            if name.strip() == key:
                return value.strip()
        return None

    def clipboard(self):
        result = subprocess.run(["xclip", "-o", "-selection", "clipboard"], capture_output=True,
                                text=True, env=self.environment, timeout=5)
        return result.stdout

    def __exit__(self, kind, *_):
        self.log.close()
        if kind is not None:
            # What the app said is the first thing to read when a scenario fails.
            print((self.path / "veltor.log").read_text(), end="")
        for process in reversed(self.processes):
            # Asked first, so Xvfb takes its lock file and socket with it.
            stop(process, signal.SIGTERM)
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                stop(process, signal.SIGKILL)
                process.wait()
        self.directory.cleanup()
