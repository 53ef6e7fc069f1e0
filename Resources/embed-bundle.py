"""Writes TEMPLATE to TARGET with the script BUNDLE in its place.

    embed-bundle.py BUNDLE TEMPLATE TARGET

The letters beyond ASCII, which stand in strings and patterns only, become escapes: the engine keeps a
text of ASCII in half the space, and takes it without converting it.
"""

import pathlib
import re
import sys


def escaped(match):
    units = match.group().encode("utf-16-be")
    return "".join(f"\\u{units[i:i + 2].hex()}" for i in range(0, len(units), 2))


bundle, template, target = map(pathlib.Path, sys.argv[1:])
text = template.read_text("utf-8").replace("@AUTOCONSENT_BUNDLE@", bundle.read_text("utf-8"))
target.write_text(re.sub(r"[^\x00-\x7f]", escaped, text), "ascii")
