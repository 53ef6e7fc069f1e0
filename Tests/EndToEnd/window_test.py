#!/usr/bin/env python3
"""The window as its user meets it: by keys, by pointer, and through the accessibility tree."""

import pathlib
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "Kit"))
from orvel_kit import Atspi, EndToEndTest, eventually  # noqa: E402


class WindowTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        for host in ("one", "two", "three"):
            self.web.serve(f"http://{host}.test/", f"<title>{host.title()}</title>")
            self.web.control("refuse", {"host": f"{host}.test", "port": 443})
        self.program = self.start("http://one.test/")
        self.find("One")

    def today(self):
        session = self.program.session()
        return [tab.get("title") for tab in session["spaces"][0]["today"]] if session else []

    def session_is(self, titles):
        eventually(lambda: self.today() == titles, f"{titles} in the session")

    def enter(self, text):
        """Types over the address, all of which is selected."""
        self.keys("ctrl+l")
        self.find("Enter address…")
        self.type(text)
        self.keys("Return")

    def test_everything_by_keys(self):
        self.enter("http://two.test/")
        self.find("Two")
        self.session_is(["Two"])
        self.keys("ctrl+t")
        self.find("Search, enter address, or type 20+20…")
        self.type("http://three.test/")
        self.keys("Return")
        self.find("Three")
        self.session_is(["Three", "Two"])
        self.picture("keys")

        # Back in the page's own history, and on.
        self.keys("ctrl+w")
        self.session_is(["Two"])
        self.keys("alt+Left")
        self.find("One")
        self.keys("alt+Right")
        self.find("Two")

        self.keys("ctrl+shift+t")
        self.session_is(["Three", "Two"])
        self.keys("ctrl+d")
        eventually(
            lambda: len(self.program.session()["spaces"][0]["pinned"]) == 1, "the pinned tab"
        )

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
        for host in ("two", "three"):
            self.program.open_address(f"http://{host}.test/")
            self.find(host.title())
        self.session_is(["Three", "Two", "One"])
        self.burst("ctrl+w", "ctrl+w")
        self.session_is(["One"])

    def test_by_pointer(self):
        self.program.open_address("http://two.test/")
        self.find("Two")
        self.session_is(["Two", "One"])
        self.click(self.find("One", "list item"))
        eventually(
            lambda: self.program.session()["spaces"][0].get("selectedTabID")
            == self.program.session()["spaces"][0]["today"][1]["id"],
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
        eventually(
            lambda: len(self.program.session()["spaces"][0]["pinned"]) == 1, "the pinned tab"
        )

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

    def test_side_buttons_go_back_and_on_and_the_wheel_zooms(self):
        self.enter("http://two.test/")
        self.find("Two")
        self.pointer_to(700, 400)
        for button, page in (("8", "One"), ("9", "Two")):
            subprocess.run(["xdotool", "click", button], check=True)
            self.find(page)
        for button, zoom in (("4", "110%"), ("5", "100%")):
            subprocess.run(["xdotool", "keydown", "ctrl", "click", button, "keyup", "ctrl"], check=True)
            self.find(zoom)

    def test_the_sidebar_hides_and_its_state_is_kept(self):
        def is_visible():
            return (self.program.session() or {}).get("isSidebarVisible")

        self.keys("ctrl+s")
        eventually(lambda: is_visible() is False, "hidden")
        self.keys("ctrl+s")
        eventually(lambda: is_visible() is True, "shown")

    def test_every_button_has_a_name(self):
        nameless = []
        waiting = [self.application()]
        while waiting:
            item = waiting.pop()
            if item.get_role_name() in ("push button", "toggle button") and not item.get_name():
                nameless.append(item.get_description() or item.get_role_name())
            waiting += [item.get_child_at_index(i) for i in range(item.get_child_count())]
        self.assertEqual(nameless, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
