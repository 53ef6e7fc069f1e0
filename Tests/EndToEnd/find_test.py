#!/usr/bin/env python3
"""Finding again: a word in the page, a page in the history. By keyboard alone."""

import unittest

from orvel_kit import EndToEndTest, eventually


class FindTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        for host in ("one", "two"):
            self.web.site(f"{host}.test", f"<title>Page {host}</title><p>a lighthouse")
        self.program = self.start("http://one.test/")
        self.find("Page one")

    def test_a_word_in_the_page(self):
        self.keys("ctrl+f")
        self.find("Find on page")
        self.type("lighthousekeeper")
        self.find("Not found")
        self.picture("not-found")
        self.keys(*["BackSpace"] * len("keeper"))
        eventually(lambda: not self.accessible("Not found"), "the word found")
        self.keys("ctrl+g", "shift+ctrl+g", "Return", "Escape")
        eventually(lambda: not self.accessible("Find on page"), "the bar closed")

    def test_a_page_in_the_history(self):
        self.program.open_address("http://two.test/")
        self.find("Page two")
        before = len(self.web.requests("http://one.test/"))
        self.keys("ctrl+h")
        self.find("Search history")
        self.type("one")
        eventually(lambda: self.visits() == ["Page one, one.test"], "the page that matches alone")
        self.picture("history")
        self.keys("Down", "Return")
        eventually(lambda: len(self.web.requests("http://one.test/")) > before, "the page opened")

    def visits(self):
        """The rows of the history window, without their times."""
        names = [item.get_name() or "" for item in self.everything()]
        return [name.rsplit(", ", 1)[0] for name in names if ".test, " in name]


if __name__ == "__main__":
    unittest.main(verbosity=2)
