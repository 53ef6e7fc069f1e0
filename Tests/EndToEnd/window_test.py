#!/usr/bin/env python3
"""The window as its user meets it: by keys, by pointer, and through the accessibility tree."""

import subprocess
import time
import unittest

from orvel_kit import Atspi, EndToEndTest, eventually


class WindowTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.begin()

    def test_the_page_undoes_and_redoes(self):
        self.web.serve(
            "http://two.test/",
            "<input id=field oninput=\"document.title='<'+value+'>'\">"
            "<script>onload = () => { field.focus(); document.title = 'Ready'; }</script>",
        )
        self.program.open_address("http://two.test/")
        self.find("Ready")
        self.burst(*"abc")
        self.find("<abc>")
        self.keys("ctrl+z")
        self.find("<>")
        self.keys("ctrl+shift+z")
        self.find("<abc>")

    def test_emoji_are_chosen_in_a_field_alone(self):
        told = "<script>onkeydown = e => { if (e.key != 'Control') document.title += e.key }</script>"
        self.web.serve("http://two.test/", f"<title>Two</title>{told}")
        self.web.serve("http://three.test/", "<title>Three</title><input autofocus oninput='document.title = value'>")
        self.program.open_address("http://two.test/")
        self.find("Two")
        self.keys("ctrl+period")
        self.find("Two.")
        # The page has the keyboard still.
        time.sleep(0.5)
        self.keys("x")
        self.find("Two.x")
        self.program.open_address("http://three.test/")
        self.find("Three")
        self.keys("ctrl+period")
        self.find("Smileys & People")
        self.type("grinning")
        time.sleep(0.5)
        self.keys("Down", "Return")
        eventually(
            lambda: any(item.get_role_name() == "list item" and item.get_name() > "\U0001f000"
                        for item in self.everything()),
            "an emoji in the field",
        )

    def test_no_key_of_a_burst_is_lost(self):
        self.open_three()
        self.burst("ctrl+w", "ctrl+w")
        self.session_is(["One"])
        self.keys("ctrl+shift+t")
        self.session_is(["Two", "One"])

    def test_by_pointer(self):
        self.program.open_address("http://two.test/")
        self.find("Two")
        self.session_is(["Two", "One"])
        self.click(self.find("One", "list item"))
        eventually(
            lambda: self.space().get("selectedTabID") == self.space()["today"][1]["id"],
            "the first tab selected",
        )
        # The middle button closes.
        self.click(self.find("Two", "list item"), button=2)
        self.session_is(["One"])

    def open_three(self):
        for host in ("two", "three"):
            self.program.open_address(f"http://{host}.test/")
            self.find(host.title())
        self.session_is(["Three", "Two", "One"])

    def test_tabs_close_one_after_another_under_a_resting_pointer(self):
        self.open_three()
        row = self.find("Three", "list item")
        box = row.get_component_iface().get_extents(Atspi.CoordType.WINDOW)
        x, y = self.middle(row)
        self.pointer_to(x, y)
        time.sleep(0.3)
        self.pointer_to(x + box.width // 2 - 15, y)
        for left in (["Two", "One"], ["One"], []):
            time.sleep(0.6)  # what is below the pointer comes to rest
            subprocess.run(["xdotool", "click", "1"], check=True)
            self.session_is(left)

    def test_a_rows_menu_by_keys(self):
        self.open_three()
        self.keys("F6")
        self.keys("End", "Up")
        self.keys("shift+F10")
        self.find("Add to Favorites", "menu item")
        time.sleep(0.3)
        self.keys("Down", "Return")
        eventually(lambda: len(self.space()["pinned"]) == 1, "the pinned tab")

    def test_a_toasts_undo_by_its_key(self):
        field = "<input id=field oninput=\"document.title='<'+value+'>'\" autofocus>"
        self.web.serve("http://two.test/", "<title>Two</title>" + field)
        self.open_three()
        self.keys("ctrl+d")
        self.session_is(["Two", "One"])
        self.keys("ctrl+z")
        self.session_is(["Three", "Two", "One"])
        # A field of the page has its own.
        self.click(self.find("Two", "list item"))
        self.burst(*"abc")
        self.find("<abc>")
        self.keys("ctrl+d")
        self.session_is(["Three", "One"])
        self.keys("ctrl+z")
        self.find("<>")
        self.session_is(["Three", "One"])

    def test_the_find_field_tells_its_text(self):
        self.keys("ctrl+f")
        field = self.find("Find on page", "entry")
        self.type("tide")
        eventually(lambda: field.get_text_iface() and Atspi.Text.get_text(field, 0, 4) == "tide",
                   "the field's text")

    def test_keys_and_side_buttons_go_back_and_on_and_the_wheel_zooms(self):
        self.keys("ctrl+l")
        self.find("Enter address…")
        self.type("http://two.test/")
        self.keys("Return")
        self.session_is(["Two"])
        for key, page in (("alt+Left", "One"), ("alt+Right", "Two")):
            self.keys(key)
            self.find(page)
        for button, page in ((8, "One"), (9, "Two")):
            self.click_at(700, 400, button)
            self.find(page)
        for button, zoom in (("4", "110%"), ("5", "100%")):
            subprocess.run(["xdotool", "keydown", "ctrl", "click", button, "keyup", "ctrl"], check=True)
            self.find(zoom)


if __name__ == "__main__":
    unittest.main(verbosity=2)
