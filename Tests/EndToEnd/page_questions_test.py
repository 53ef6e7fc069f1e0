#!/usr/bin/env python3
"""Pages that ask, that guard what was entered, that hang and that fill the screen, from outside."""

import subprocess
import unittest

from orvel_kit import EndToEndTest, eventually

PAGES = {
    "loop": "<title>Loop</title><script>onload = () => {"
            "for (let i = 1;; ++i) alert('Message ' + i + ' of a page that does not stop') }</script>",
    "guard": "<title>Guard</title><body style='margin:0'><input id=i autofocus"
             " style='width:600px;height:400px'>"
             "<script>addEventListener('beforeunload', e => { e.preventDefault(); e.returnValue = 1 });"
             "i.oninput = () => document.title = 'Guard ' + i.value</script>",
    "hang": "<title>Hang</title><body style='margin:0'><h1>About to hang</h1><script>"
            "onkeydown = () => { document.title = 'Hung'; setTimeout(() => { for (;;); }, 100) }"
            "</script>",
    "film": "<title>Film</title><body style='margin:0'><div id=f style='background:#246;"
            "width:700px;height:500px'></div><script>f.onclick = () => f.requestFullscreen();"
            "(onresize = () => document.title = innerWidth < 1440 ? 'Film' : 'Whole film')()</script>",
    "prompt": "<title>Prompt</title><body style='margin:0'><div id=d style='height:600px'></div>"
              "<script>d.onclick = () => document.title = prompt('Your name?', 'none')</script>",
    "paper": "<title>Paper</title><script>setInterval(() => {"
             "new Image().src = 'http://beat.test/?' + Math.random(); print() }, 100)</script>",
    "fine": "<title>Fine</title><p>All is well",
}
PAGE = (600, 300)


class PageQuestionsTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        for name, body in PAGES.items():
            self.web.site(f"{name}.test", body)

    def open(self, name, title):
        self.program = self.start(f"http://{name}.test/")
        self.find(title)

    def click_page(self):
        self.click_at(*PAGE)

    def is_gone(self, name):
        eventually(lambda: not self.accessible(name), f"“{name}” gone")

    def test_a_page_that_alerts_without_end_blocks_itself_alone(self):
        self.open("loop", "OK")
        self.picture("alert")
        self.keys("Return")
        silence = self.find("Don’t let this page show more messages")
        self.picture("alert-silence")
        # The rest of the browser is alive, and the page still has its question when one comes back.
        self.program.open_address("http://fine.test/")
        self.find("Fine")
        self.is_gone("Don’t let this page show more messages")
        self.keys("ctrl+Next")
        silence = self.find("Don’t let this page show more messages")
        self.click(silence)
        self.keys("Return")
        self.find("loop.test isn’t answering")
        self.picture("unresponsive")
        self.keys("ctrl+w")
        self.is_gone("loop.test")

    def test_a_page_that_prints_without_end_is_heard_once(self):
        self.web.serve("http://beat.test/", "")
        self.open("paper", "Paper")
        self.find("Print", "dialog")
        self.act(self.find("_Cancel Cancel", "push button"))
        beats = len(self.web.requests("http://beat.test/"))
        eventually(lambda: len(self.web.requests("http://beat.test/")) > beats + 10, "the page")
        self.assertIsNone(self.accessible("Print", "dialog"))

    def test_a_question_gets_the_keyboard_that_is_meant_for_its_page(self):
        self.open("prompt", "Prompt")
        self.click_page()
        self.find("OK")
        self.keys("ctrl+l")
        self.find("Command bar")
        self.keys("Escape")
        self.is_gone("Command bar")
        self.type("Ada")
        self.keys("Return")
        self.find("Ada")

    def test_another_address_leads_away_from_a_page_that_alerts_without_end(self):
        self.open("loop", "OK")
        self.keys("ctrl+l")
        self.type("http://fine.test")
        self.keys("Return")
        self.find("Fine")
        self.is_gone("loop.test")

    def test_what_was_entered_is_guarded(self):
        self.open("guard", "Guard")
        self.click_page()
        self.type("ab")
        self.find("Guard ab")
        self.keys("ctrl+w")
        self.find("Leave this page?")
        self.picture("leave-page")
        self.keys("Escape")
        self.is_gone("Leave this page?")
        self.type("c")
        self.find("Guard abc")
        self.keys("ctrl+q")
        self.find("Leave this page?")
        self.keys("Return")
        self.is_gone("Leave this page?")
        self.type("d")
        self.find("Guard abcd")
        self.keys("ctrl+q")
        self.act(self.find("Leave"))
        self.assertEqual(self.program.process.wait(10), 0)

    def test_clearing_today_keeps_what_was_entered(self):
        self.open("guard", "Guard")
        self.click_page()
        self.type("ab")
        self.find("Guard ab")
        self.program.open_address("http://fine.test/")
        self.find("Fine", "list item")
        self.pointer_to(*self.middle(self.find("Today", "list item")))
        self.click(self.find("Clear", "push button"))
        self.find("Leave this page?")
        self.keys("Escape")
        self.is_gone("Leave this page?")
        self.find("Closed 1 tab")
        self.find("Guard ab", "list item")

    def test_a_page_that_hangs_can_be_left(self):
        self.open("hang", "Hang")
        self.click_page()
        self.keys("a")
        self.find("Hung")
        question = "hang.test isn’t answering"
        eventually(lambda: self.keys("b") or self.accessible(question), "the question")
        self.picture("hung")
        self.act(self.find("Stop"))
        self.find("Can’t open hang.test")
        self.picture("stopped")
        self.keys("ctrl+r")
        self.find("Hang")
        self.click_page()
        self.keys("a")
        self.find("Hung")
        # Without waiting for the question.
        self.keys("ctrl+l")
        self.type("http://fine.test")
        self.keys("Return")
        self.find("Fine")

    def test_an_element_fills_the_screen(self):
        # Only a window manager makes a window fill the screen.
        manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        self.addCleanup(manager.terminate)
        self.open("film", "Film")
        self.click_page()
        self.find("Whole film")
        self.picture("full-screen")
        self.keys("Escape")
        self.find("Film")
        self.click_page()
        self.find("Whole film")
        self.keys("ctrl+w")
        self.is_gone("Whole film")
        self.program.open_address("http://film.test/")
        self.find("Film")


if __name__ == "__main__":
    unittest.main(verbosity=2)
