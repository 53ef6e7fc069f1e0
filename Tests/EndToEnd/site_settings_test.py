#!/usr/bin/env python3
"""What a site may use, and what it keeps: the card behind the address's sign."""

import unittest

from orvel_kit import EndToEndTest, eventually

ASKS = """<title>One</title><body style="margin:0"><script>
document.cookie = 'a=1; max-age=9999';
addEventListener('click', async () => {
  try {
    const stream = await navigator.mediaDevices.getUserMedia({video: true, audio: true});
    stream.getTracks().forEach((track) => { track.onended = () => { document.title = 'Ended'; }; });
    document.title = 'Granted';
  } catch (error) {
    document.title = error.name;
  }
});
</script>"""


class SiteSettingsTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.web.site("localhost", ASKS)
        self.program = self.start("http://localhost/", environment={"ORVEL_MOCK_CAPTURE": "1"})
        self.find("One")

    def ask(self):
        self.click_at(600, 300)

    def open_settings(self):
        self.act(self.find("Settings for This Site", "push button"))
        return self.find("Camera", "push button")

    def choose(self, device, answer):
        self.act(self.find(device, "push button"))
        self.act(self.find(answer, "menu item"))
        eventually(lambda: self.find(device, "push button").get_description() == answer, answer)

    def test_a_question_is_asked_once_and_its_answer_changed(self):
        self.ask()
        self.find("Allow “localhost” to use your camera and microphone?")
        self.picture("permission")
        # Nothing that was meant for the page answers.
        self.keys("Return", "space")
        self.act(self.find("Allow", "push button"))
        self.find("Granted")
        self.open_settings()
        self.find("Camera and microphone in use")
        self.picture("site-settings-in-use")
        self.act(self.find("Stop", "push button"))
        self.find("Ended")
        self.choose("Microphone", "Block")
        self.picture("site-settings")
        self.keys("Escape")
        self.ask()
        self.find("NotAllowedError")

    def test_what_a_site_stored_is_cleared(self):
        self.open_settings()
        self.act(self.find("Clear Cookies and Site Data…", "push button"))
        self.find("Clear cookies and data for localhost?")
        self.picture("clear-data")
        self.act(self.find("Clear Clear", "push button"))
        self.find("Cleared data for localhost")

    def test_zoom(self):
        self.open_settings()
        self.act(self.find("Zoom In", "push button"))
        self.find("110%", "label")
        self.act(self.find("Actual Size", "push button"))
        self.find("100%", "label")


if __name__ == "__main__":
    unittest.main(verbosity=2)
