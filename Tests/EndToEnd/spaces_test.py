#!/usr/bin/env python3
"""Spaces, the sidebar's tabs and the settings, by keys, pointer, touchpad and accessibility tree."""

import sys
import time
import unittest

import touchpad
from orvel_kit import FRAME, PICTURES, EndToEndTest, eventually


class SidebarTest(EndToEndTest):
    def session_holds(self, condition, what):
        def holds():
            try:
                return condition()
            except (KeyError, IndexError, TypeError):  # not written yet
                return False

        eventually(holds, what)

    def active_name(self):
        session = self.program.session()
        names = {space["id"]: space["name"] for space in session["spaces"]}
        return names[session["activeSpaceID"]]

    def name(self):
        """The first space's, once it is saved."""
        return eventually(lambda: self.space().get("name"), "a session")

    def make_space(self, name):
        self.act(self.find("New Space", "push button"))
        self.set_text(self.find("Name", "text"), name)
        self.act(self.find("Create Space", "push button"))
        self.session_holds(lambda: self.active_name() == name, f"the space {name}")


class SpacesTest(SidebarTest):
    def setUp(self):
        super().setUp()
        self.begin()

    def titles(self, items):
        """Of tabs, and of pinned items; a folder has its name."""
        return [
            item["folder"]["name"] if "folder" in item else item.get("tab", item).get("title")
            for item in items
        ]

    def menu(self, item, *entries):
        self.click(item, button=3)
        for entry in entries:
            self.act(self.find(entry, "menu item"))

    def test_a_space_is_made_switched_to_and_deleted(self):
        first = self.name()
        self.keys("ctrl+shift+n")
        self.has_keyboard("Name", "text")
        self.type("Garden")
        self.click(self.find("Sage"))
        self.click(self.find("Leaf"))
        self.act(self.find("Create Space", "push button"))
        self.session_holds(lambda: self.active_name() == "Garden", "the new space")
        made = self.space(1)
        self.assertEqual((made["symbol"], round(made["hue"], 2)), ("leaf.fill", 0.3))
        self.assertNotEqual(made["profileID"], self.space()["profileID"])
        self.picture("space-made")

        self.click(self.find(first, "push button"))
        self.session_holds(lambda: self.active_name() == first, "the first space")
        self.keys("alt+2")
        self.session_holds(lambda: self.active_name() == "Garden", "the second space")

        # What cannot be undone is not what Return means.
        self.menu(self.find("Garden", "push button"), "Delete Space…")
        self.find("Delete Space Delete Space", "push button")
        time.sleep(0.3)
        self.keys("Return")
        eventually(lambda: not self.accessible("Delete Space Delete Space"), "the dialog gone")
        self.keys("ctrl+shift+n")
        self.find("Create Space", "push button")
        self.keys("Escape")
        self.assertEqual(len(self.program.session()["spaces"]), 2)

        self.menu(self.find("Garden", "push button"), "Delete Space…")
        # A dialog's button is named by its label and by itself.
        self.act(self.find("Delete Space Delete Space", "push button"))
        self.session_holds(lambda: len(self.program.session()["spaces"]) == 1, "one space")
        self.assertEqual(self.active_name(), first)

    def test_a_tab_dropped_on_a_space_moves_there(self):
        first = self.name()
        # One that shares its logins.
        self.keys("ctrl+shift+n")
        self.set_text(self.find("Name", "text"), "Orchard")
        self.click(self.find("Logins: Separate (new profile)", "push button"))
        self.act(self.find("Shared with " + first, "menu item"))
        time.sleep(0.3)
        self.act(self.find("Create Space", "push button"))
        self.session_holds(lambda: self.active_name() == "Orchard", "the new space")
        self.click(self.find(first, "push button"))
        self.session_holds(lambda: self.active_name() == first, "the first space")
        self.drag(self.find("One", "list item"), self.find("Orchard", "push button"))
        self.session_holds(
            lambda: [self.titles(self.space(i)["today"]) for i in (0, 1)] == [[], ["One"]], "moved"
        )

    def test_a_pages_link_is_dragged_to_the_sidebar(self):
        self.web.serve(
            "http://two.test/",
            "<title>Two</title><a href='http://three.test/' draggable=true style='font-size:60px;"
            "position:absolute;left:40px;top:40px'>Link</a>",
        )
        self.program.open_address("http://two.test/")
        self.find("Two", "list item")
        x, y = self.middle(self.find("One", "list item"))
        self.drag_to(360, 90, x, y + 8)
        # It loads when it is looked at.
        self.session_holds(
            lambda: [tab["url"] for tab in self.space()["today"]]
            == [f"http://{host}.test/" for host in ("two", "three", "one")], "a tab there"
        )

    def test_tabs_are_pinned_filed_and_dragged(self):
        for name in ("two", "three"):
            self.program.open_address(f"http://{name}.test/")
            self.find(name.title())
        self.keys("ctrl+d")
        self.session_holds(lambda: self.titles(self.space()["pinned"]) == ["Three"], "pinned")

        self.menu(self.find("Two", "list item"), "Move to Folder", "New Folder")
        time.sleep(0.4)
        self.keys("ctrl+a")
        self.type("Reading")
        self.keys("Return")
        self.session_holds(lambda: "Reading" in self.titles(self.space()["pinned"]), "the folder")

        def favorites():
            return self.titles(self.program.session()["profiles"][0]["favorites"])

        self.menu(self.find("Three", "list item"), "Add to Favorites")
        self.session_holds(lambda: favorites() == ["Three"], "a favorite")
        self.drag(self.find("One", "list item"), self.find("Three", "push button"))
        self.session_holds(lambda: sorted(favorites()) == ["One", "Three"], "two favorites")
        self.picture("favorites")
        self.drag(self.find("One", "push button"), self.find("New Tab", "list item"))
        self.session_holds(lambda: self.titles(self.space()["today"]) == ["One"], "back in Today")

    def test_the_sidebar_is_resized_hidden_and_peeks(self):
        edge = self.find("Sidebar Width")
        x, y = self.middle(edge)
        self.drag_to(x, y, x + 60, y)
        self.session_holds(
            lambda: abs(self.program.session()["sidebarWidth"] - 308) < 4, "a wider sidebar"
        )
        self.drag_to(x + 60, y, x + 400, y)
        self.session_holds(lambda: self.program.session()["sidebarWidth"] == 420, "the widest")

        self.pointer_to(700, 400)
        self.keys("ctrl+s")
        toggle = self.find("Toggle Sidebar")
        eventually(lambda: not self.is_in_window(toggle), "a hidden sidebar")
        self.pointer_to(FRAME + 2, 400)
        eventually(lambda: self.is_in_window(toggle), "a peeking sidebar")
        self.picture("peek")
        self.pointer_to(700, 400)
        eventually(lambda: not self.is_in_window(toggle), "the peek's end")
        self.session_holds(
            lambda: not self.program.session()["isSidebarVisible"], "the hidden sidebar saved"
        )

    def show_page(self, title):
        self.act(self.find(title, "page tab"))
        time.sleep(0.5)

    def choose(self, setting, choice):
        buttons = lambda: [
            item for item in self.everything() if item.get_name().startswith(f"{setting}: ")
        ]
        self.act(eventually(lambda: buttons(), setting)[0])
        self.act(self.find(choice, "menu item"))
        self.find(f"{setting}: {choice}")

    def test_each_setting_is_found_again_after_a_restart(self):
        choices = {
            "Search engine": "DuckDuckGo",
            "Archive Today tabs after": "7 days",
            "Quick search from any app": "Ctrl+Shift+Space",
            "Links from other apps open in": "The current space",
        }
        switches = {
            "Show DuckDuckGo suggestions": "General",
            "Block ads and trackers": "Privacy",
            "Reject cookie pop-ups automatically": "Privacy",
        }
        self.keys("ctrl+comma")
        for setting, choice in choices.items():
            self.show_page("Links" if setting.startswith("Links") else "General")
            self.choose(setting, choice)
        # There is no such key here, and the row says so.
        eventually(
            lambda: any("already used by the desktop" in i.get_name() for i in self.everything()),
            "the note on the key",
        )
        before = {name: self.is_checked(self.find(name)) for name in switches}
        for name, page in switches.items():
            self.show_page(page)
            self.act(self.find(name))
            eventually(lambda: self.is_checked(self.find(name)) != before[name], name)
        for page, button in (("General", "Add Shortcut"), ("Links", "Add Rule")):
            self.show_page(page)
            self.act(self.find(button, "push button"))
        time.sleep(0.5)
        removes = lambda: sum(
            i.get_name() in ("Remove Shortcut", "Remove Rule") for i in self.everything()
        )
        count = removes()
        self.picture("settings")

        self.program.end()
        self.program = self.start()
        self.find("One")
        self.keys("ctrl+comma")
        for setting, choice in choices.items():
            self.find(f"{setting}: {choice}")
        for name in switches:
            self.assertNotEqual(self.is_checked(self.find(name)), before[name], name)
        self.assertEqual(removes(), count)


@unittest.skipIf(touchpad.why_not(), f"SKIPPED, no touchpad here: {touchpad.why_not()}")
class SwipeTest(SidebarTest):
    """Two fingers over the sidebar, with the phases that a touchpad tells."""

    def setUp(self):
        super().setUp()
        self.desktop = touchpad.Desktop(self.folder / "wayland")
        self.addCleanup(self.desktop.stop)
        self.begin(environment={"GDK_BACKEND": "wayland", "WAYLAND_DISPLAY": self.desktop.display})
        self.fingers = touchpad.Touchpad(self.desktop)
        self.addCleanup(self.fingers.close)

    def test_the_pages_follow_two_fingers(self):
        first = self.name()
        self.make_space("Garden")
        time.sleep(0.6)
        self.fingers.move(120, 500)
        time.sleep(0.2)

        def is_shown(name):
            heading = self.accessible(name, "list item")
            return heading is not None and self.is_in_window(heading)

        # While they rest on the pad both pages are there; a short way leads back.
        self.fingers.scroll(dx=-5, steps=14)
        eventually(lambda: is_shown(first) and is_shown("Garden"), "two pages side by side")
        if PICTURES:
            self.desktop.picture(f"{PICTURES}/swipe.png")
        time.sleep(0.3)
        self.fingers.lift()
        eventually(lambda: not is_shown(first), "the return")
        self.assertEqual(self.active_name(), "Garden")

        # Up and down is scrolling.
        self.fingers.scroll(dy=12, steps=20)
        self.fingers.lift()
        self.assertFalse(is_shown(first))

        # Far enough, and on to the neighbor.
        self.fingers.scroll(dx=-8, steps=25)
        self.fingers.lift()
        self.session_holds(lambda: self.active_name() == first, "the previous space")
        eventually(lambda: is_shown(first) and not is_shown("Garden"), "its page alone")
        self.fingers.scroll(dx=8, steps=25)
        self.fingers.lift()
        self.session_holds(lambda: self.active_name() == "Garden", "the next space")


if __name__ == "__main__":
    if touchpad.why_not():
        print(f"!!! The swipe is NOT tested: {touchpad.why_not()}", file=sys.stderr)
    unittest.main(verbosity=2)
