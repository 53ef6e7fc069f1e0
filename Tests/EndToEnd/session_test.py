#!/usr/bin/env python3
"""The program as its user's other programs see it: starting, addresses, ending, coming back."""

import ctypes
import fcntl
import signal
import time
import unittest

from orvel_kit import EndToEndTest, Gio, GLib, eventually


def today(session):
    """The addresses of today's tabs; none while there is no session, or none that is whole."""
    spaces = (session or {}).get("spaces")
    return [tab.get("url") for tab in spaces[0]["today"]] if spaces else []


class SilentClipboardManager:
    """Is asked to take over the clipboard of programs that end, and does not answer."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = self.x.XDefaultRootWindow.restype = ctypes.c_void_p
        for answers in (self.x.XInternAtom, self.x.XCreateSimpleWindow, self.x.XGetSelectionOwner):
            answers.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        window = self.x.XCreateSimpleWindow(self.display, root, 0, 0, 1, 1, 0, 0, 0)
        self.x.XSetSelectionOwner(
            self.display, self.selection(b"CLIPBOARD_MANAGER"), ctypes.c_ulong(window),
            ctypes.c_ulong(0),
        )
        self.x.XSync(self.display, 0)

    def selection(self, name):
        return ctypes.c_ulong(self.x.XInternAtom(self.display, name, 0))

    def is_something_copied(self):
        return self.x.XGetSelectionOwner(self.display, self.selection(b"CLIPBOARD")) != 0

    def close(self):
        self.x.XCloseDisplay(self.display)


class SessionTest(EndToEndTest):
    def wait_for_page(self, url, count=1):
        eventually(lambda: len(self.web.requests(url)) >= count, f"a request for {url}", 15)

    def test_opens_the_address_it_is_started_with_and_those_of_later_starts(self):
        program = self.program = self.start("http://one.test/")
        self.wait_for_page("http://one.test/")
        request = self.web.requests("http://one.test/")[0]
        self.assertEqual(request["headers"].get("sec-gpc"), "1")
        self.session_is(["One"])
        code, said = program.second("http://two.test/")
        self.assertEqual(code, 0, said)
        self.wait_for_page("http://two.test/")
        self.assertIsNone(program.process.poll())
        self.session_is(["Two", "One"])

    def test_its_command_line_tells_and_refuses(self):
        program = self.start()
        for argument, code, said in (
            ("--version", 0, "Orvel "), ("--help", 0, "--new-tab"), ("--other", 2, "--other"),
            ("no address", 2, '“no address” is no address'),
        ):
            answer = program.second(argument)
            self.assertEqual(answer[0], code, answer)
            self.assertIn(said, answer[1])
        self.assertIsNone(program.process.poll())

    def test_without_its_window_it_lives_until_it_is_ended(self):
        program = self.start("http://one.test/")
        for _ in range(2):
            self.find("One")
            self.act(self.find("Close Window"))
            eventually(lambda: not self.accessible("Close Window"), "the window closed")
            self.assertEqual(program.second(), (0, ""))
        self.find("One")
        self.keys("ctrl+q")
        eventually(lambda: program.process.poll() == 0, "the end")
        program.end()

    def test_a_screen_reader_may_ask_while_there_is_no_window(self):
        program = self.start("http://one.test/")
        self.find("One")
        self.keys("ctrl+comma")
        self.find("General")
        self.keys("ctrl+w")
        eventually(lambda: not self.accessible("General"), "the settings closed")
        self.ask_for_window(1)
        self.act(self.find("Close Window"))
        eventually(lambda: not self.accessible("Close Window"), "the window closed")
        self.ask_for_window(0)
        self.assertEqual(program.second(), (0, ""))
        self.find("One")

    def ask_for_window(self, index):
        """Asks for the program's window of this number, as a screen reader does."""
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
            Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]
        flags = Gio.DBusConnectionFlags
        bus = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        root = "/org/a11y/atspi/accessible/root"

        def ask(name, method, arguments=None):
            return bus.call_sync(name, root, "org.a11y.atspi.Accessible", method, arguments, None,
                                 Gio.DBusCallFlags.NONE, 1000, None).unpack()[0]

        for name, _ in ask("org.a11y.atspi.Registry", "GetChildren"):
            try:
                ask(name, "GetChildAtIndex", GLib.Variant("(i)", (index,)))
            except GLib.Error:  # it has none to tell of
                pass

    def test_the_bus_starts_it_with_whatever_it_is_asked_first(self):
        program = self.start("--gapplication-service")
        self.ask(program, "open-address", GLib.Variant("s", "http://one.test/"))
        self.find("One")
        self.keys("F10")
        self.find("File")
        program.end()
        self.ask(self.start("--gapplication-service"), "new-tab")
        self.find("Search, enter address, or type 20+20…")

    def test_ends_by_signal_within_two_seconds_and_comes_back(self):
        program = self.start("http://one.test/")
        self.wait_for_page("http://one.test/")
        program.open_address("http://two.test/")
        self.wait_for_page("http://two.test/")
        # Less than the second that a save waits.
        took = program.end(signal.SIGTERM)
        self.assertEqual(program.process.returncode, 0)
        self.assertLess(took, 2.5)
        self.assertEqual(today(program.session()), ["http://two.test/", "http://one.test/"])

        again = self.start()
        self.wait_for_page("http://two.test/", 2)
        self.assertEqual(len(self.web.requests("http://one.test/")), 1, "only the selected tab")
        again.end(signal.SIGINT)
        self.assertEqual(today(again.session()), ["http://two.test/", "http://one.test/"])

    def test_history_and_place_on_the_page_come_back_from_the_files(self):
        scrolled = "<title>Long</title><body style='height:9000px'><script>%s</script>"
        report = "setInterval(() => fetch('/at?y=' + Math.round(scrollY)), 100)"
        self.web.site("long.test", scrolled % ("scrollTo(0, 1234);" + report))
        self.web.serve("http://long.test/at", "")
        program = self.start("http://one.test/")
        self.wait_for_page("http://one.test/")

        program.open_address("http://long.test/")
        at = "http://long.test/at?y=1234"
        reports = lambda: [r["url"] for r in self.web.requests("http://long.test/at")]  # noqa: E731
        eventually(lambda: at in reports(), "the page at its place", 10)
        time.sleep(0.3)
        program.end()
        # The page no longer scrolls by itself.
        self.web.serve("http://long.test/", scrolled % report)
        self.web.control("clear")
        self.start()
        eventually(lambda: at in reports(), "the page back at its place", 15)

    def test_waits_for_the_folder_of_one_that_is_ending_and_tells_of_one_that_stays(self):
        folder = self.home / "data" / "Orvel"
        folder.mkdir(parents=True)
        with open(folder / ".lock", "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            program = self.start("http://one.test/")
            time.sleep(1.5)
            self.assertIsNone(program.process.poll(), "it waits")
            fcntl.flock(lock, fcntl.LOCK_UN)
            self.wait_for_page("http://one.test/")
            program.end()

            fcntl.flock(lock, fcntl.LOCK_EX)
            program = self.start("http://two.test/")
            self.find("Orvel is already running")
            self.picture("already-running")
            self.keys("Return")
            self.assertEqual(program.process.wait(5), 1)
            self.assertIn("Another Orvel is using", (self.home / "log.txt").read_text())

    def test_without_a_bus_a_lock_decides(self):
        alone = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        program = self.start("http://one.test/", environment=alone)
        self.wait_for_page("http://one.test/")
        other = self.start("http://two.test/", environment=alone)
        eventually(lambda: "Another Orvel is using" in (self.home / "log.txt").read_text(), "a word")
        self.assertIsNone(program.process.poll())
        other.kill()
        program.end()
        self.assertEqual(today(program.session()), ["http://one.test/"])

    def test_the_end_does_not_wait_for_a_clipboard_manager(self):
        keeper = SilentClipboardManager()
        self.addCleanup(keeper.close)
        program = self.start("http://one.test/")
        self.wait_for_page("http://one.test/")
        self.find("One")
        self.keys("ctrl+shift+c")  # the clipboard is this program's from now on
        eventually(keeper.is_something_copied, "a copied link")
        program.open_address("http://two.test/")
        self.wait_for_page("http://two.test/")
        program.process.send_signal(signal.SIGTERM)
        log = self.home / "log.txt"
        eventually(lambda: "Quitting" in log.read_text(), "the end of the program's own", 4)
        both = ["http://two.test/", "http://one.test/"]
        eventually(lambda: today(program.session()) == both, "the session", 3)
        self.assertIsNone(program.process.poll(), "the toolkit still waits")
        program.kill()

    def test_a_kill_costs_nothing_that_was_saved(self):
        self.program = self.start("http://one.test/")
        self.session_is(["One"])
        self.program.open_address("http://two.test/")
        self.session_is(["Two", "One"])
        self.program.kill()
        self.program = self.start()
        self.find("Two")
        self.assertEqual(self.today(), ["Two", "One"])

    def ask(self, program, action, *parameter):
        """Asks a program that has only just been started for one of its actions."""

        def is_taken():
            try:
                program.activate(action, *parameter)
                return True
            except GLib.Error:  # not there yet
                return False

        eventually(is_taken, "the program on the bus", 15)


if __name__ == "__main__":
    unittest.main(verbosity=2)
