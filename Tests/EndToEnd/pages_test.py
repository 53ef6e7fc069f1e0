#!/usr/bin/env python3
"""What pages do with windows, tabs, menus and processes, driven from outside."""

import os
import pathlib
import signal
import unittest

from orvel_kit import EndToEndTest, eventually

STYLE = "<style>body { margin: 0; font: 20px sans-serif } body > * { display: block; height: 60px; margin: 0 }</style>"
LEFT = 600


def middle(row):
    return 35 + 60 * row


class PagesTest(EndToEndTest):
    def open(self, body, title="One", host="one.test"):
        self.web.site(host, f"<title>{title}</title>{STYLE}{body}")
        self.program = self.start(f"http://{host}/")
        self.find(title)
        # Drawn, and ready for input.
        eventually(lambda: self.accessible(title), title)

    def click_row(self, row, button=1):
        self.click_at(LEFT, middle(row), button)

    def menu(self, row, first):
        self.click_row(row, 3)
        return self.find(first, "menu item")

    def close_menu(self, first):
        self.keys("Escape")
        eventually(lambda: not self.accessible(first, "menu item"), "the menu gone")

    def test_the_menu_of_what_is_under_the_pointer(self):
        picture = ("data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='200' height='60'>"
                   "<rect width='200' height='60' fill='teal'/></svg>")
        self.web.serve("http://one.test/next", "<title>Next</title>")
        self.open("<a href='/next?utm_source=x'>A link to the next page</a>"
                  f'<img alt="" style="width:700px" src="{picture}">'
                  "<p id=words onmousedown='getSelection().selectAllChildren(this)'>eelgrass combed flat</p>"
                  "<input style='width:700px' value='a field'>"
                  "<video style='width:700px;background:#246' loop muted></video>")
        for row, first, name in ((0, "Open in New Tab", "link"), (1, "Open Picture in New Tab", "picture"),
                                 (2, "Copy", "selection"), (3, "Undo", "field"), (4, "Play", "media"),
                                 (6, "Back", "page")):
            self.menu(row, first)
            self.picture(f"menu-{name}")
            self.close_menu(first)
        self.act(self.menu(0, "Open in New Tab"))
        eventually(lambda: self.web.requests("http://one.test/next"), "the link loaded behind")
        asked = self.web.requests("http://one.test/next")
        self.assertEqual([one["url"] for one in asked], ["http://one.test/next"])
        self.menu(6, "Back")
        self.act(self.find("View Source", "menu item"))
        self.find("Source of one.test")
        self.picture("source")

    def test_one_click_opens_one_window(self):
        self.web.serve("http://one.test/first", "<title>First</title>")
        self.web.serve("http://one.test/second", "<title>Second</title>")
        self.web.serve("http://one.test/third", "<title>Third</title>")
        self.open("<button style='width:700px' onclick=\"window.open('/first'); window.open('/second')\">Two</button>"
                  "<script>open('/third')</script>")
        self.find("Allow", "push button")
        self.assertFalse(self.web.requests("http://one.test/third"))
        self.click_row(0)
        eventually(lambda: self.web.requests("http://one.test/first"), "the first window")
        self.find("First")
        self.assertFalse(self.web.requests("http://one.test/second"))

    def test_tabs_that_a_click_opens_load_behind_two_at_a_time(self):
        for number in range(3):
            self.web.serve(f"http://one.test/{number}", f"<title>Behind {number}</title>", hold=10)
        self.open("".join(f"<a href='/{number}'>{number}</a>" for number in range(3)))
        for number in range(3):
            self.click_row(number, 2)
        asked = lambda number: self.web.requests(f"http://one.test/{number}")
        eventually(lambda: asked(0) and asked(1), "two of them")
        self.assertFalse(asked(2))
        self.web.release("http://one.test/0")
        eventually(lambda: asked(2), "the third")

    def web_processes(self):
        """Those of this browser, by their ids."""
        found = []
        for folder in pathlib.Path("/proc").iterdir():
            if not folder.name.isdigit():
                continue
            try:
                command = (folder / "cmdline").read_bytes().split(b"\0")[0]
                environment = (folder / "environ").read_bytes()
            except OSError:
                continue
            if command.endswith(b"WebKitWebProcess") and str(self.home).encode() in environment:
                found.append(int(folder.name))
        return found

    def test_a_page_whose_process_dies_twice_is_not_loaded_again(self):
        self.open("<p>All is well</p>")
        loads = lambda: len(self.web.requests("http://one.test/"))
        for expected in (2, 2):
            for process in self.web_processes():
                os.kill(process, signal.SIGKILL)
            eventually(lambda: loads() == expected, f"{expected} loads")
        self.find("Can’t open one.test")
        self.picture("error-crash")
        self.assertEqual(loads(), 2)

    def test_what_cannot_be_shown_says_why(self):
        self.web.control("refuse", {"host": "closed.test", "port": 80})
        self.web.control("refuse", {"host": "closed.test", "port": 443})
        self.web.serve("http://empty.test/", "", status=503)
        self.web.control("refuse", {"host": "empty.test", "port": 443})
        self.web.serve("http://denied.test/", "<title>Over http</title>")
        self.open("<p>One</p>")
        self.program.open_address("http://closed.test/")
        self.find("Can’t open closed.test")
        self.picture("error")
        self.program.open_address("http://empty.test/")
        self.find("Can’t open empty.test")
        self.program.open_address("http://one.test:25/")
        self.find("Can’t open one.test")
        self.program.open_address("http://denied.test/")
        self.find("Over http")
        self.assertEqual(list((self.home / "Downloads").glob("*")) if (self.home / "Downloads").exists() else [], [])


if __name__ == "__main__":
    unittest.main()
