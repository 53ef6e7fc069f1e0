#!/usr/bin/env python3
"""The icons of sites."""

import struct
import unittest
import zlib

from orvel_kit import EndToEndTest, eventually


def png(width, height):
    """A picture of one color, which packs well."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    rows = zlib.compress((b"\0" + b"\x80" * width) * height)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", rows) + chunk(b"IEND", b"")


LINKS = """<link rel=icon href=/drawn.svg><link rel=icon sizes=16x16 href=/small.png>
<link rel=apple-touch-icon href=/touch.png><link rel=icon sizes=512x512 href=/large.png>
<link rel=icon href=/plain.png>"""


class IconsTest(EndToEndTest):
    def icon(self, host):
        files = list(self.home.glob(f"data/*/Favicons/{host}"))
        return files[0].read_bytes() if files else None

    def asked(self, host):
        paths = ("drawn.svg", "small.png", "touch.png", "large.png", "plain.png", "favicon.ico")
        return [path for path in paths if self.web.requests(f"http://{host}/{path}")]

    def test_the_best_icon_is_kept(self):
        self.web.serve("http://one.test/large.png", png(512, 512))
        self.web.site("one.test", f"<title>One</title>{LINKS}")
        self.begin()
        eventually(lambda: self.icon("one.test") == png(512, 512), "the icon on the disk")
        self.assertEqual(self.asked("one.test"), ["large.png"])
        self.picture("icon")

    def test_hostile_icons_cost_nothing(self):
        hostile = {
            "one.test": png(5000, 5000),  # unpacks to more than is kept
            "two.test": b"x" * 2_000_000,
            "three.test": b"<html>",
        }
        for host, body in hostile.items():
            self.web.serve(f"http://{host}/large.png", body)
            self.web.serve(f"http://{host}/favicon.ico", png(16, 16))
            self.web.site(host, f"<title>{host}</title>{LINKS}")
        self.program = self.start(*(f"http://{host}/" for host in hostile))
        for host in hostile:
            eventually(lambda: self.icon(host) == png(16, 16), f"the other icon of {host}")
            self.assertEqual(self.asked(host), ["large.png", "favicon.ico"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
