#!/usr/bin/env python3
"""The command bar by keyboard alone: what is typed, and what Return makes of it."""

import time
import unittest

from orvel_kit import Atspi, EndToEndTest, eventually

FIELD = "Search, enter address, or type 20+20…"


class CommandBarTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        for host in ("one", "two", "three"):
            self.web.site(f"{host}.test", f"<title>Page {host}</title>")
        self.program = self.start("http://one.test/")
        self.find("Page one")

    def bar(self):
        self.keys("ctrl+t")
        self.find(FIELD)

    def pick(self, text, row, choose=False):
        """Types into a new tab's bar and picks the row that reads so, or else the first."""
        self.bar()
        self.type(text)
        self.row(row)
        if choose:
            self.choose(self.rows().index(row))
        else:
            self.keys("Return")

    def choose(self, index):
        """Walks to the row, wherever the highlight is, and picks it."""
        def is_chosen(row):
            return row.get_state_set().contains(Atspi.StateType.SELECTED)

        rows = self.accessible("Suggestions", "list")
        chosen = [is_chosen(rows.get_child_at_index(i)) for i in range(rows.get_child_count())]
        way = index - chosen.index(True)
        self.keys(*["Down" if way > 0 else "Up"] * abs(way), "Return")

    def rows(self):
        """The names of the rows of the bar's list."""
        rows = self.accessible("Suggestions", "list")
        count = rows.get_child_count() if rows else 0
        return [rows.get_child_at_index(i).get_name() for i in range(count)]

    def row(self, name):
        eventually(lambda: name in self.rows(), f"a row “{name}”")

    def tab(self):
        """The selected tab in the session."""
        space = self.space()
        return next((t for t in space["today"] if t["id"] == space.get("selectedTabID")), {})

    def shows(self, title):
        eventually(lambda: self.tab().get("title") == title, f"{title} selected")

    def asks(self, address):
        eventually(lambda: self.tab().get("url") == address, f"{address} asked")

    def sidebar_is(self, is_visible):
        eventually(lambda: (self.program.session() or {}).get("isSidebarVisible") is is_visible,
                   f"sidebar: {is_visible}")

    def test_addresses_searches_and_keywords(self):
        self.pick("http://two.test/", "http://two.test/")
        self.shows("Page two")

        self.keys("ctrl+l")
        self.find("Enter address…")
        self.picture("bar-current")
        self.type("http://three.test/")
        self.keys("Return")
        self.session_is(["Page three", "Page one"])

        # Tried over https, which the host does not serve.
        self.web.site("router.test")
        self.pick("router.test", "https://router.test")
        self.shows("Router")

        for text, row, address in (
            ("spring tides", "spring tides", "https://www.google.com/search?q="),
            ("yt lofi", "lofi", "https://www.youtube.com/results?search_query="),
        ):
            self.pick(text, row)
            self.asks(address + row.replace(" ", "%20"))

    def test_keys_that_come_at_once_reach_what_the_first_has_opened(self):
        self.burst("ctrl+t", *"tides", "Return")
        self.asks("https://www.google.com/search?q=tides")

    def test_keys_behind_an_escape_reach_the_page(self):
        self.web.serve(
            "http://one.test/keys",
            "<title>Keys</title><script>onkeypress = event => document.title += event.key</script>")
        self.program.open_address("http://one.test/keys")
        self.find("Keys", "list item")
        seen = "Keys"
        for opens, letters in (("ctrl+t", "abc"), ("ctrl+l", "def"), ("ctrl+f", "ghi")):
            self.keys(opens)
            time.sleep(0.3)
            self.burst("x", "Escape", *letters)
            seen += letters
            self.find(seen, "list item")

    def test_answers_are_copied(self):
        for text, answer in (("2+2", "4"), ("10 km to mi", "6.21 mi")):
            self.pick(text, answer)
            self.find(f"Copied {answer}")
            self.bar()
            self.keys("ctrl+v")
            self.row(answer)
            self.keys("Escape")

    def test_open_tabs_and_visited_pages(self):
        self.pick("http://two.test/", "http://two.test/")
        self.shows("Page two")
        # An open tab: below the search, one key down.
        self.bar()
        self.type("page one")
        self.row("Page one")
        self.keys("Down", "Return")
        self.shows("Page one")
        self.assertEqual(self.today(), ["Page two", "Page one"])

        # A page that is open no more, found by a part of its address that is no beginning; picked
        # twice, it comes before the search.
        for place in (1, 1, 0):
            self.keys("ctrl+w")
            self.session_is(["Page two"])
            self.bar()
            self.type("p://o")
            eventually(lambda: len(self.rows()) == 2, "the visited page")
            self.assertIn("Page one", self.rows()[place])
            self.choose(place)
            self.shows("Page one")

    def test_commands(self):
        # By a beginning, by words of its title in any case; each does what it says.
        self.pick("toggle side", "Toggle Sidebar", choose=True)
        self.sidebar_is(False)
        self.pick("toggle SIDE", "Toggle Sidebar", choose=True)
        self.sidebar_is(True)
        # Twice picked, it is the first row, and typing need not wait for it.
        self.bar()
        self.type("toggle side")
        self.keys("Return")
        self.sidebar_is(False)
        self.pick("pin tab", "Pin Tab", choose=True)
        eventually(lambda: len(self.space().get("pinned", [])) == 1, "a pinned tab")


if __name__ == "__main__":
    unittest.main(verbosity=2)
