"""Writes the outlines of icons in the form that the program draws: a line each, the symbol and its
path of absolute M, L, C and Z commands in a square of 256.

    icon-paths.py LIST FETCHED OUTPUT

LIST names a symbol and a drawing a line; FETCHED is the folder of drawings, which need not be there.
Path grammar and arcs: SVG 1.1, sections 8.3 and F.6.
"""

import math
import pathlib
import re
import sys

COUNTS = {"M": 2, "L": 2, "H": 1, "V": 1, "C": 6, "S": 4, "Q": 4, "A": 7, "Z": 0}
NUMBER = re.compile(r"[+-]?(?:\d*\.\d+|\d+\.?)(?:[eE][+-]?\d+)?")
FLAG = re.compile(r"[01]")


def commands(text):
    """Each command of a path with its numbers; repeated ones get their letter back."""
    at, letter = 0, None

    def take(pattern):
        nonlocal at
        at = re.compile(r"[\s,]*").match(text, at).end()
        found = pattern.match(text, at)
        if found:
            at = found.end()
        return found and found.group()

    while True:
        letter = take(re.compile(r"[A-Za-z]")) or letter
        count = COUNTS[letter.upper()]
        patterns = [FLAG if letter in "Aa" and i in (3, 4) else NUMBER for i in range(count)]
        yield letter, [float(take(pattern)) for pattern in patterns]
        if letter in "Mm":
            letter = "L" if letter == "M" else "l"
        at = re.compile(r"[\s,]*").match(text, at).end()
        if at == len(text):
            return


def arc(start, radii, turn, is_large, is_sweep, end):
    """An elliptic arc as cubic curves, none longer than a quarter."""
    if start == end or 0 in radii:
        return [("L", end)]
    cos, sin = math.cos(math.radians(turn)), math.sin(math.radians(turn))
    dx, dy = (start[0] - end[0]) / 2, (start[1] - end[1]) / 2
    x, y = cos * dx + sin * dy, -sin * dx + cos * dy
    rx, ry = map(abs, radii)
    reach = math.sqrt((x / rx) ** 2 + (y / ry) ** 2)
    if reach > 1:
        rx, ry = rx * reach, ry * reach
    rest = max(0.0, 1 / ((x / rx) ** 2 + (y / ry) ** 2) - 1)
    factor = math.sqrt(rest) * (-1 if is_large == is_sweep else 1)
    cx, cy = factor * rx * y / ry, -factor * ry * x / rx
    mx, my = (start[0] + end[0]) / 2, (start[1] + end[1]) / 2
    first = math.atan2((y - cy) / ry, (x - cx) / rx)
    span = math.atan2((-y - cy) / ry, (-x - cx) / rx) - first
    if is_sweep and span < 0:
        span += 2 * math.pi
    if not is_sweep and span > 0:
        span -= 2 * math.pi

    def point(u, v):
        px, py = cx + rx * u, cy + ry * v
        return (mx + cos * px - sin * py, my + sin * px + cos * py)

    count = math.ceil(abs(span) / (math.pi / 2) - 1e-9)
    step = span / count
    pull = 4 / 3 * math.tan(step / 4)
    curves = []
    for i in range(count):
        a, b = first + i * step, first + (i + 1) * step
        curves.append(("C", point(math.cos(a) - pull * math.sin(a), math.sin(a) + pull * math.cos(a)),
                       point(math.cos(b) + pull * math.sin(b), math.sin(b) - pull * math.cos(b)),
                       point(math.cos(b), math.sin(b))))
    return curves


def absolute(text):
    """The path in M, L, C and Z, with points instead of offsets."""
    here = begin = handle = (0.0, 0.0)
    result = []
    for letter, numbers in commands(text):
        kind = letter.upper()
        ox, oy = here if letter.islower() else (0.0, 0.0)
        points = [(ox + numbers[i], oy + numbers[i + 1]) for i in range(0, len(numbers) - 1, 2)]
        former, handle = handle, None
        if kind == "Z":
            new = [("Z",)]
        elif kind == "H":
            new = [("L", (ox + numbers[0], here[1]))]
        elif kind == "V":
            new = [("L", (here[0], oy + numbers[0]))]
        elif kind == "A":
            end = (ox + numbers[5], oy + numbers[6])
            new = arc(here, numbers[:2], numbers[2], numbers[3] == 1, numbers[4] == 1, end)
        elif kind == "Q":
            mid, end = points
            new = [("C", *[(p[0] + 2 / 3 * (mid[0] - p[0]), p[1] + 2 / 3 * (mid[1] - p[1]))
                           for p in (here, end)], end)]
        elif kind == "S":
            mirrored = (2 * here[0] - former[0], 2 * here[1] - former[1]) if former else here
            new = [("C", mirrored, *points)]
            handle = points[0]
        else:
            new = [(kind, *points)]
            if kind == "C":
                handle = points[1]
        result += new
        here = begin if kind == "Z" else new[-1][-1]
        if kind == "M":
            begin = here
    return result


def outline(drawing):
    paths = re.findall(r'<path d="([^"]+)"', drawing)
    if len(paths) != drawing.count("<path") or 'viewBox="0 0 256 256"' not in drawing:
        raise SystemExit("icon-paths: not a drawing of plain paths")
    parts = [command for path in paths for command in absolute(path)]
    return " ".join(
        " ".join([kind, *(f"{value:.6g}" for point in points for value in point)])
        for kind, *points in parts
    )


listed, fetched, output = map(pathlib.Path, sys.argv[1:])
lines = []
for line in listed.read_text().splitlines():
    symbol, drawing = line.split("\t")
    file = fetched / (drawing.replace("/", "-") + ".svg")
    if file.exists():
        lines.append(f"{symbol}\t{outline(file.read_text())}\n")
output.write_text("".join(lines))
