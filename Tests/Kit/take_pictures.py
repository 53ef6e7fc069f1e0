#!/usr/bin/env python3
"""Takes the pictures of docs/screenshots from the running program, for the eye and not for a test.

    NO_AT_BRIDGE=0 scripts/with-display /usr/bin/python3 Tests/Kit/take_pictures.py
"""

import contextlib
import pathlib
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from orvel_kit import FRAME, ROOT, EndToEndTest, eventually  # noqa: E402

TARGET = ROOT / "docs" / "screenshots"
SIZE = "1270x810"  # of the window without its frame
SIDEBAR = "248x440"
HOST = "tidewater-almanac.example"
SITES = {
    HOST: ("Reading the water: a field guide", "#1e6f86"),
    "strand-radio.example": ("Strand Radio: Night Signals", "#2b6a52"),
    "kelp.example": ("Kelp & Co. Seaweed broth", "#2e5b45"),
    "slowtable.example": ("Slow Table: rye loaf with caraway", "#c9772c"),
    "harbour-post.example": ("The Harbour Post", "#23324d"),
    "norrland-line.example": ("Sailings and fares, Norrland Line", "#0f4c81"),
}
STYLE = """<style>
  body { font: 17px/28px Inter, sans-serif; margin: 0; color: #1c2427 }
  header { padding: 20px 48px; font-weight: 700; color: COLOR; border-bottom: 1px solid #0001 }
  svg { display: block; width: 100%; height: 260px } main { max-width: 600px; padding: 20px 48px }
  h1 { font-size: 38px; line-height: 46px; letter-spacing: -.02em; margin: 14px 0 }
  @media (prefers-color-scheme: dark) { body { background: #15181b; color: #e6e9ea } svg { opacity: .7 } }
</style>"""
SEA = """<svg viewBox='0 0 1000 260' preserveAspectRatio='none'><rect width='1000' height='260'
 fill='#f5dfc4'/><circle cx='700' cy='90' r='30' fill='#fff3d6'/><path fill='#9fb9b8' d='M0 170Q150 110
 320 160T660 140T1000 170V260H0Z'/><path fill='#5c8a8d' d='M0 210Q200 150 420 200T800 180T1000 210V260H0Z'/>
 <path fill='#2f626d' d='M0 240Q260 200 520 235T1000 240V260H0Z'/></svg>"""
TEXT = """<p>Every tide leaves a signature. Long before a harbour posts its table, the water itself has told
 you which way it means to go: a seam of foam off the breakwater, eelgrass combed flat.<p>Start with the
 slack. Twice each cycle the stream hesitates, and for some minutes the surface goes oddly smooth."""
KEYS = """<script>onkeydown = event => {
  if (event.key == 'c') confirm('The tide table of 24 May is not saved. Load it anew?');
  if (event.key == 'h') setTimeout(() => { for (;;); }, 100) }</script>"""


class Pictures(EndToEndTest):
    def setUp(self):
        super().setUp()
        settings = self.home / "config" / "gtk-4.0" / "settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text("[Settings]\ngtk-font-name=Inter 10\n")
        for host, (title, color) in SITES.items():
            self.web.site(
                host,
                f"<!doctype html><meta charset=utf-8><title>{title}</title>"
                f"{STYLE.replace('COLOR', color)}<header>{title.split(':')[0]}</header>{SEA}"
                f"<main><h1>{title}</h1>{TEXT}</main>{KEYS}")
        self.show("light", *reversed(SITES))
        for host in ("norrland-line.example", "harbour-post.example"):
            self.menu(host, "Pin Tab")
        self.menu("slowtable.example", "Move to Folder", "New Folder")
        time.sleep(0.5)
        self.type("Recipes")
        self.keys("Return")
        self.restart("light")

    def show(self, scheme, *hosts):
        self.program = self.start(environment={"ADW_DEBUG_COLOR_SCHEME": f"prefer-{scheme}"})
        self.find("New Tab", "list item")
        for host in hosts:
            self.program.open_address(f"http://{host}/")
            self.row(host)
        time.sleep(1)

    def restart(self, scheme):
        time.sleep(1.5)
        self.program.end()
        self.show(scheme)
        self.row(HOST)
        self.pointer_to(1420, 950)
        time.sleep(1)

    def row(self, host):
        return self.find(SITES[host][0], "list item")

    def menu(self, host, *entries):
        self.click(self.row(host), button=3)
        for entry in entries:
            self.act(self.find(entry, "menu item"))
        time.sleep(0.5)

    def click_page(self):
        self.click_at(1000, 700)
        time.sleep(0.3)

    def shoot(self, name, size=SIZE, wait=1.0):
        time.sleep(wait)
        subprocess.run(
            ["import", "-window", "root", "-crop", f"{size}+{FRAME}+{FRAME}", "+repage",
             str(TARGET / f"{name}.png")], check=True)

    @contextlib.contextmanager
    def held(self, item, target):
        self.pointer_to(*self.middle(item))
        subprocess.run(["xdotool", "mousedown", "1"], check=True)
        x, y = self.middle(target)
        for step in range(20, -1, -1):
            self.pointer_to(x + 100 + step, y - 8 - step)
            time.sleep(0.03)
        yield
        subprocess.run(["xdotool", "mouseup", "1"], check=True)

    def test_window_by_day_and_night(self):
        self.shoot("main-window-light")
        self.restart("dark")
        self.shoot("main-window-dark")

    def test_bars(self):
        self.keys("ctrl+t")
        time.sleep(0.5)
        self.type("tide")
        self.shoot("command-bar")
        self.keys("Escape", "Escape")
        self.keys("ctrl+f")
        time.sleep(0.5)
        self.type("slack")
        self.shoot("find-bar")

    def test_settings(self):
        self.keys("ctrl+comma")
        self.find("Default browser")
        self.shoot("settings", "560x460")

    def test_sheet_of_a_space(self):
        self.keys("ctrl+shift+n")
        self.set_text(self.find("Name", "text"), "Garden")
        self.click(self.find("Sage"))
        self.click(self.find("Leaf"))
        self.shoot("space-sheet")

    def test_states_of_the_sidebar(self):
        states = ("paused", "copied", "drop", "renaming")
        self.click(self.find("Pause blocking on this site"))
        self.pointer_to(1420, 950)
        self.shoot(states[0], SIDEBAR)
        self.click(self.find("Copy Link"))
        self.pointer_to(1420, 950)
        self.shoot(states[1], SIDEBAR, wait=0.4)
        with self.held(self.row("strand-radio.example"), self.row("norrland-line.example")):
            self.shoot(states[2], SIDEBAR)
        time.sleep(0.5)
        self.menu("kelp.example", "Move to Folder", "New Folder")
        self.pointer_to(1420, 950)
        self.shoot(states[3], SIDEBAR)
        pictures = [TARGET / f"{state}.png" for state in states]
        subprocess.run(["convert", *pictures, "+append", TARGET / "sidebar-states.png"], check=True)
        for picture in pictures:
            picture.unlink()

    def test_questions_of_a_page(self):
        self.click_page()
        self.keys("c")
        self.find("OK")
        self.shoot("page-dialog")
        self.keys("Escape")
        self.keys("h")
        time.sleep(0.3)
        question = f"{HOST} isn’t answering"
        eventually(lambda: self.keys("b") or self.accessible(question), "the question")
        self.shoot("page-unresponsive")


if __name__ == "__main__":
    unittest.main()
