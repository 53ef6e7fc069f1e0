#!/usr/bin/env python3
"""The main menu and the keys, as they are pressed."""

import time
import unittest

from orvel_kit import EndToEndTest, eventually

MENUS = ["File", "Edit", "View", "History", "Tabs", "Spaces", "Window", "Help"]


class MenuTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        field = "<textarea autofocus oninput=\"document.title = 'Long ' + value.length\">"
        self.web.site("one.test", f"<title>One</title>{field}http://two.test/</textarea>")
        self.begin()

    def choose(self, menu, row):
        """Opens the menu by its key and walks to the row, counted without separators from 0."""
        self.keys("F10")
        self.find(menu)
        self.keys(*["Down"] * MENUS.index(menu), "Right")
        time.sleep(0.3)
        self.keys(*["Down"] * row, "Return")
        time.sleep(0.3)

    def test_every_kind_of_key(self):
        for key, said in (
            ("alt+shift+equal", "Split view isn’t available yet"),
            ("ctrl+shift+r", "The reader isn’t available yet"),
            ("ctrl+shift+2", "Capture copied"),
            ("ctrl+plus", "110%"),
            ("ctrl+KP_Add", "120%"),
            ("ctrl+minus", "110%"),
            ("ctrl+0", "100%"),
            ("ctrl+alt+n", "Little windows aren’t available yet"),
        ):
            with self.subTest(key=key):
                self.keys(key)
                self.find(said)

    def test_the_small_windows_close_alone(self):
        for opening, content in (("ctrl+comma", "Default browser"), ("ctrl+h", "Clear History…")):
            for key in ("ctrl+w", "Escape"):
                self.keys(opening)
                self.find(content)
                self.keys(key)
                eventually(lambda: not self.accessible(content), f"closed by {key}")
                self.find("One", "list item")

    def test_the_menu_by_keys(self):
        self.choose("View", 4)
        self.find("Ad & tracker blocking off")
        self.picture("menu")
        # Editing reaches the page's field, which had the keyboard before the menu.
        self.choose("Edit", 7)
        self.choose("Edit", 3)
        # The page's own key, or else ours: pasted once.
        self.keys("End", "ctrl+shift+v")
        self.find("Long 32")
        self.keys("ctrl+l")
        time.sleep(0.3)
        self.keys("ctrl+a", "ctrl+v", "Return")
        self.find("Two")

    def test_escape_stops_what_loads(self):
        self.web.site("slow.test", delay=30)
        self.program.open_address("http://slow.test/")
        self.find("Stop")
        self.keys("Escape")
        self.find("Reload")


if __name__ == "__main__":
    unittest.main(verbosity=2)
