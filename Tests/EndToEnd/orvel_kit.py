"""What the end-to-end tests stand on: a web, a browser with folders of its own, and eyes and hands.

Run under scripts/with-display, which gives a display and a session bus. Each browser that is started
has its own XDG folders and reaches nothing but the test web.
"""

import collections
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
KIT = ROOT / "Tests" / "Kit"
BUILD = pathlib.Path(os.environ.get("ORVEL_BUILD_DIR", ROOT / "build" / "dev"))
PROGRAM = BUILD / "bin" / "orvel"
# Without a compositor the toolkit draws a frame of so many pixels around a window.
FRAME = 5
# Seconds that anything may take: only a failure waits so long, also on a busy machine.
LIMIT = 15.0
PICTURES = os.environ.get("ORVEL_PICTURES")


def eventually(condition, what="the condition", limit=LIMIT):
    """The first truthy value of `condition()`; fails after `limit` seconds."""
    end = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"{what} did not come about in {limit} s")
        time.sleep(0.02)


class Web:
    """The test server (test_server.py), which is also the browser's proxy."""

    def __init__(self, folder):
        folder.mkdir()
        self.process = subprocess.Popen(
            [sys.executable, str(KIT / "test_server.py"), str(folder)],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
        )
        self.address = f"http://127.0.0.1:{int(self.process.stdout.readline())}"
        self.direct = urllib.request.build_opener(urllib.request.ProxyHandler({}))

    def control(self, operation, value=None):
        request = urllib.request.Request(
            f"{self.address}/__kit__/{operation}", json.dumps(value).encode(), method="POST"
        )
        return json.loads(self.direct.open(request).read())

    def serve(self, url, body, **page):
        self.control("serve", {"url": url, "body": body, **page})

    def site(self, host, body=None, **page):
        """A page of a host that has no https; its title is the host's first word."""
        self.control("refuse", {"host": host, "port": 443})
        title = host.partition(".")[0].title()
        self.serve(f"http://{host}/", body or f"<title>{title}</title>", **page)

    def release(self, url):
        self.control("release", {"url": url})

    def requests(self, url):
        """What was asked of `url`, whatever its query."""
        seen = self.control("requests")
        return [r for r in seen if r["url"] == url or r["url"].split("?")[0] == url]

    def stop(self):
        self.process.stdin.close()
        self.process.wait(5)
        self.process.stdout.close()


class Program:
    """One run of the browser on the folders of `home`; in `environment`, None takes a name away."""

    def __init__(self, home, web, *arguments, environment=None):
        self.home = home
        self.environment = dict(
            os.environ,
            XDG_DATA_HOME=str(home / "data"),
            XDG_CACHE_HOME=str(home / "cache"),
            XDG_CONFIG_HOME=str(home / "config"),
            XDG_DOWNLOAD_DIR=str(home / "downloads"),
            HOME=str(home),
            http_proxy=web.address,
            https_proxy=web.address,
            no_proxy="",
            WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS="1",
            WEBKIT_DISABLE_DMABUF_RENDERER="1",
            GSK_RENDERER="cairo",
        )
        for name, value in (environment or {}).items():
            if value is None:
                self.environment.pop(name, None)
            else:
                self.environment[name] = value
        self.arguments = arguments
        self.log = open(home / "log.txt", "a+b")
        self.process = subprocess.Popen(
            [str(PROGRAM), *arguments], env=self.environment, stdout=self.log,
            stderr=subprocess.STDOUT,
        )

    def second(self, *arguments):
        """Starts the program again beside this run; its exit code and what it said."""
        done = subprocess.run(
            [str(PROGRAM), *arguments], env=self.environment, capture_output=True, text=True,
            timeout=20,
        )
        return done.returncode, done.stdout + done.stderr

    def session(self):
        """The session file's contents; None while there is none."""
        try:
            return json.loads((self.home / "data" / "Orvel" / "session.json").read_text())
        except FileNotFoundError:
            return None

    def open_address(self, address):
        """Asks the running program to open an address, as another application does."""
        self.activate("open-address", GLib.Variant("s", address))

    def activate(self, action, *parameter):
        """Asks the running program for one of its actions, as the desktop does."""
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        bus.call_sync(
            "com.brinemark.orvel", "/com/brinemark/orvel", "org.freedesktop.Application",
            "ActivateAction", GLib.Variant("(sava{sv})", (action, parameter, {})),
            None, Gio.DBusCallFlags.NONE, 5000, None,
        )

    def end(self, number=signal.SIGTERM, limit=5):
        """Sends a signal and waits for the end; answers the seconds that it took."""
        begin = time.monotonic()
        if self.process.poll() is None:
            self.process.send_signal(number)
        self.process.wait(limit)
        self.log.close()
        return time.monotonic() - begin

    def kill(self):
        self.end(signal.SIGKILL)


class EndToEndTest(unittest.TestCase):
    """A home for each test, gone afterwards, and a web with three sites."""

    @classmethod
    def setUpClass(cls):
        cls.web_folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-web-"))
        cls.web = Web(cls.web_folder / "web")

    @classmethod
    def tearDownClass(cls):
        cls.web.stop()
        shutil.rmtree(cls.web_folder, ignore_errors=True)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-e2e-"))
        self.home = self.folder / "home"
        self.home.mkdir()
        self.web.control("reset")
        for host in ("one", "two", "three"):
            self.web.site(f"{host}.test")
        self.programs = []
        self.addCleanup(self.clean_up)  # also after a setUp that fails

    def clean_up(self):
        for program in self.programs:
            if program.process.poll() is None:
                program.kill()
        result = self._outcome.result
        if any(test is self for test, _ in result.failures + result.errors):
            print((self.home / "log.txt").read_text(errors="replace"))
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, *arguments, **options):
        program = Program(self.home, self.web, *arguments, **options)
        self.programs.append(program)
        return program

    def begin(self, **options):
        """Starts the program on the first site."""
        self.program = self.start("http://one.test/", **options)
        self.find("One")

    def picture(self, name):
        """A picture of the whole display into ORVEL_PICTURES, when that is set."""
        if PICTURES:
            subprocess.run(["import", "-window", "root", f"{PICTURES}/{name}.png"], check=True)

    # What the program of the test has saved.

    def space(self, index=0):
        """A space of the session; an empty one before the first save."""
        session = self.program.session()
        spaces = session["spaces"] if session else []
        return spaces[index] if index < len(spaces) else {"today": []}

    def today(self):
        return [tab.get("title") for tab in self.space()["today"]]

    def session_is(self, titles):
        eventually(lambda: self.today() == titles, f"{titles} in the session")

    # Eyes: the accessibility tree.

    def application(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            if child and child.get_name() in ("Orvel", "orvel", "com.brinemark.orvel"):
                return child
        return None

    def accessible(self, name, role=None):
        """The first accessible object below the windows of this name and role; None without one."""
        root = self.application()
        for item in self.everything():
            try:
                is_window = item is root or item.get_role_name() == "frame"
                if not is_window and item.get_name() == name:
                    if role is None or item.get_role_name() == role:
                        return item
            except GLib.Error:  # it went while it was asked
                continue
        return None

    def everything(self):
        """Every accessible object of the program that answers, the outer ones first."""
        root = self.application()
        waiting = collections.deque([root] if root else [])
        while waiting:
            item = waiting.popleft()
            try:
                children = [item.get_child_at_index(i) for i in range(item.get_child_count())]
            except GLib.Error:  # it went while it was asked
                continue
            waiting.extend(child for child in children if child)
            yield item

    def is_in_window(self, item):
        """Whether some of the object lies right of the window's left edge."""
        box = item.get_component_iface().get_extents(Atspi.CoordType.WINDOW)
        return box.width > 0 and box.x + box.width > 0

    def is_checked(self, item):
        states = item.get_state_set()
        return states.contains(Atspi.StateType.CHECKED) or states.contains(Atspi.StateType.PRESSED)

    def has_keyboard(self, name, role=None):
        """Waits until the object has the keyboard."""
        def has():
            item = self.accessible(name, role)
            return item and item.get_state_set().contains(Atspi.StateType.FOCUSED)

        eventually(has, f"the keyboard in “{name}”")

    def find(self, name, role=None, limit=LIMIT):
        return eventually(lambda: self.accessible(name, role), f"“{name}” on screen", limit)

    # Hands: real input events.

    def keys(self, *names):
        for name in names:
            subprocess.run(["xdotool", "key", "--clearmodifiers", name], check=True)
            time.sleep(0.05)

    def burst(self, *names):
        """Keys that come all at once, as from a quick hand on a busy machine."""
        subprocess.run(["xdotool", "key", "--delay", "0", *names], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "8", text], check=True)

    def middle(self, item):
        """Where the middle of the object comes to rest, on the display."""
        def extents():
            box = item.get_component_iface().get_extents(Atspi.CoordType.WINDOW)
            return box.x, box.y, box.width, box.height

        def at_rest():
            before = extents()
            time.sleep(0.15)
            return before if extents() == before else None

        x, y, width, height = eventually(at_rest, f"“{item.get_name()}” at rest")
        return FRAME + x + width // 2, FRAME + y + height // 2

    def click(self, item, button=1):
        self.click_at(*self.middle(item), button)

    def click_at(self, x, y, button=1):
        self.pointer_to(x, y)
        subprocess.run(["xdotool", "click", str(button)], check=True)

    def pointer_to(self, x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True)

    def drag(self, item, target):
        self.drag_to(*self.middle(item), *self.middle(target))

    def drag_to(self, x, y, to_x, to_y, steps=12):
        self.pointer_to(x, y)
        subprocess.run(["xdotool", "mousedown", "1"], check=True)
        for step in range(1, steps + 1):
            self.pointer_to(x + (to_x - x) * step // steps, y + (to_y - y) * step // steps)
            time.sleep(0.03)
        # Also a place that has only just opened gets to know the pointer.
        time.sleep(0.3)
        self.pointer_to(to_x + 1, to_y)
        time.sleep(0.1)
        subprocess.run(["xdotool", "mouseup", "1"], check=True)

    # Hands of assistive technology.

    def act(self, item):
        """Does what a click on the object does."""
        if not item.get_action_iface().do_action(0):
            raise AssertionError(f"“{item.get_name()}” does not act")

    def set_text(self, item, text):
        item.get_editable_text_iface().set_text_contents(text)
