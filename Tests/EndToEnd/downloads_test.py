#!/usr/bin/env python3
"""Downloads, from the click to the file."""

import unittest

from orvel_kit import EndToEndTest, eventually

# What a server suggests, and the file that comes of it: the engine cleans names, too.
NAMES = (
    ("plain.txt", "plain.txt"),
    ("../../escape.txt", "escape.txt"),
    ("..", "2"),
    (".hidden", "hidden"),
    ("launch.desktop", "launch.desktop"),
    ("invoice\u202egpj.exe", "invoice_gpj.exe"),
    ("tab\there.txt", "tab_here.txt"),
    ("x" * 296 + ".zip", "x" * 251 + ".zip"),
)


class DownloadsTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.folder_of_files = self.home / "Downloads"

    def files(self):
        folder = self.folder_of_files
        return sorted(file.name for file in folder.iterdir()) if folder.exists() else []

    def serve(self, path, name, body="x", **page):
        disposition = "attachment; filename*=UTF-8''" + "".join(
            f"%{byte:02X}" for byte in name.encode()
        )
        self.web.serve(
            f"http://one.test/{path}", body,
            headers={"Content-Type": "application/octet-stream",
                     "Content-Disposition": disposition}, **page,
        )

    def state_of(self, name):
        row = self.accessible(name, "list item")
        return row.get_description() if row else None

    def click_links(self, *paths):
        links = "".join(f'<a href="/{path}">{path}</a>' for path in paths)
        style = "<style>body { margin: 0 } a { display: block; height: 40px }</style>"
        self.web.site("one.test", f"<title>One</title>{style}{links}")
        self.begin()
        for number, path in enumerate(paths):
            self.click_at(600, 30 + 40 * number)
            eventually(lambda: self.web.requests(f"http://one.test/{path}"), f"{path} asked for")

    def test_from_a_click_to_the_file(self):
        self.serve("slow", "slow.bin", "x" * 100000, hold=60000)
        self.serve("unknown", "unknown.bin", "x" * 1000, hold=600, endless=True)
        self.serve("cut", "cut.bin", "x" * 1000, truncate=500)
        self.serve("none", "none.bin", "")
        self.click_links("slow", "unknown", "cut", "none")
        eventually(lambda: "none.bin" in self.files(), "the empty file")
        eventually(lambda: "slow.bin.part" in self.files(), "a partial file")
        self.assertNotIn("slow.bin", self.files())
        self.act(self.find("Download", "push button"))
        for name, state in (("slow.bin", "Downloading"), ("unknown.bin", "Downloading"),
                            ("cut.bin", "Failed"), ("none.bin", "Finished")):
            eventually(lambda: self.state_of(name), f"{name} in the list")
            eventually(lambda: self.state_of(name) == state, f"{name} {state}")
        self.picture("downloads")
        self.assertNotIn("cut.bin", self.files())
        for path in ("slow", "unknown"):
            self.web.release(f"http://one.test/{path}")
            eventually(lambda: self.state_of(f"{path}.bin") == "Finished", f"{path} finished")
        self.assertEqual((self.folder_of_files / "slow.bin").stat().st_size, 100000)
        self.picture("downloads-finished")
        self.act(self.find("Clear", "push button"))
        self.find("Nothing downloaded yet.")
        self.picture("downloads-empty")

    def test_cancelled(self):
        self.serve("slow", "slow.bin", "x" * 100000, hold=60000)
        self.click_links("slow")
        eventually(lambda: "slow.bin.part" in self.files(), "a partial file")
        self.act(self.find("Download", "push button"))
        self.act(self.find("Cancel", "push button"))
        self.find("Nothing downloaded yet.")
        eventually(lambda: not self.files(), "nothing left")

    def test_names(self):
        for number, (suggested, _) in enumerate(NAMES):
            self.serve(str(number), suggested)
        self.click_links(*[str(number) for number in range(len(NAMES))])
        wanted = sorted(name for _, name in NAMES)
        eventually(lambda: len(self.files()) == len(wanted), f"{wanted}")
        self.assertEqual(self.files(), wanted)

    def test_a_tab_for_a_download_alone_goes(self):
        self.serve("file", "file.bin")
        self.begin()
        self.program.open_address("http://one.test/file")
        eventually(lambda: self.files() == ["file.bin"], "the file")
        self.session_is(["One"])
        self.find("One", "list item")
        self.assertEqual(len(self.web.requests("http://one.test/file")), 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
