"""The program in a made-up language: whatever a person reads has been looked up."""

import os
import re
import subprocess
import unittest

import orvel_kit
from orvel_kit import BUILD, ROOT, EndToEndTest, eventually

# What is nobody's to translate: keys, names of things, what pages and people wrote.
OWN = re.compile(r"\d+:\d+.*|[Oo]rvel|Gtk\w+|gtkmm__\w+|WebKitWebView|[A-Z]|F\d+|\W*|(Ctrl|Alt|Shift)\+.*|.*\.test.*|https?:.*|One|Personal|%s|"
                 r"Google|DuckDuckGo|Kagi|Bing|Ecosia|Startpage|[a-z]{1,4}|YouTube|GitHub|"
                 r"Wikipedia|Apple Maps|Amazon|Reddit|Google Images|Stack Overflow|what I typed")


def catalog(template):
    """The template as a catalog in which every text stands in brackets of its own."""
    plural = re.compile(r'msgid ("(?:.|\n(?="))*")\nmsgid_plural ("(?:.|\n(?="))*")\n'
                        r'msgstr\[0\] ""\nmsgstr\[1\] ""\n')
    single = re.compile(r'msgid ((?:".*"\n)+)msgstr ""\n')
    text = plural.sub(lambda m: f'msgid {m[1]}\nmsgid_plural {m[2]}\n'
                      f'msgstr[0] "⟦" {m[1]} "⟧"\nmsgstr[1] "⟦" {m[2]} "⟧"\n', template)
    head, rest = text.split("\n\n", 1)
    head = head.replace("CHARSET", "UTF-8").replace(
        "nplurals=INTEGER; plural=EXPRESSION;", "nplurals=2; plural=(n != 1);")
    return head + "\n\n" + single.sub(lambda m: f'msgid {m[1]}msgstr "⟦" {m[1]} "⟧"\n', rest)


class TextsTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        prefix = self.folder / "prefix"
        (prefix / "bin").mkdir(parents=True)
        for name in ("orvel", "orvel-rule-compiler"):
            os.link(BUILD / "bin" / name, prefix / "bin" / name)
        (prefix / "lib").symlink_to(BUILD / "lib")
        messages = prefix / "share" / "locale" / "qx" / "LC_MESSAGES"
        messages.mkdir(parents=True)
        (prefix / "share" / "orvel").symlink_to(BUILD / "share" / "orvel")
        (messages / "orvel.po").write_text(catalog((ROOT / "po" / "orvel.pot").read_text()))
        subprocess.run(["msgfmt", "-o", messages / "orvel.mo", messages / "orvel.po"], check=True)
        self.former, orvel_kit.PROGRAM = orvel_kit.PROGRAM, prefix / "bin" / "orvel"

    def tearDown(self):
        orvel_kit.PROGRAM = self.former
        super().tearDown()

    def strays(self):
        """The names of what is on screen that nobody looked up."""
        found = set()
        for item in self.everything():
            name = item.get_name() or ""
            if "document" in item.get_role_name() or "⟦" in name or OWN.fullmatch(name):
                continue
            found.add(name)
        return found

    def look(self, *keys, at):
        """Presses the keys, waits for a text and finds nothing that was not looked up."""
        self.keys(*keys)
        self.find(f"⟦{at}⟧")
        self.assertEqual(self.strays(), set(), at)

    def test_nothing_on_screen_escapes_the_catalog(self):
        self.begin(environment={"LANGUAGE": "qx", "LC_ALL": "C.UTF-8"})
        self.look(at="Today")
        self.look("ctrl+d", at="Undo")
        self.look("ctrl+f", at="Find on page")
        self.look("Escape", "ctrl+t", at="Command bar")
        self.type("sett")
        eventually(lambda: self.accessible("⟦Open Settings⟧"), "a command")
        self.assertEqual(self.strays(), set())
        self.look("Escape", "F10", at="File")
        self.look("Escape", "ctrl+comma", at="Search shortcuts")
        self.look("ctrl+w", "ctrl+y", at="Search history")
        self.look("ctrl+w", "ctrl+shift+n", at="Create Space")


if __name__ == "__main__":
    unittest.main(verbosity=2)
