#!/usr/bin/env python3
"""Start-up and memory of the browser, beside a bare window with one view, in one go.

Run under scripts/with-display with ORVEL_BUILD_DIR at a release build:

    ORVEL_BUILD_DIR=build/release scripts/with-display python3 Benchmarks/startup.py [ROUNDS]

Times run from exec until the page's title stands on its window, and until the page, painted, has asked
the test web for one more thing. Memory is the interface process's proportional set size. Prints
medians and ratios.
"""

import ctypes
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import uuid

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "Tests" / "EndToEnd"))
from orvel_kit import BUILD, Program, Web, eventually  # noqa: E402

PAGE = """<title>Painted</title><p>Hello<script>
requestAnimationFrame(() => requestAnimationFrame(() => fetch('/painted')))</script>"""
ADDRESS = "http://start.localhost/"


class Titles:
    """The titles of the display's windows, asked for directly: helper programs take too long."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        # Windows come and go between two questions.
        self.on_error = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(
            lambda *_: 0)
        self.x.XSetErrorHandler(self.on_error)
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))

    def __contains__(self, title):
        root, parent, count = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_uint()
        children = ctypes.POINTER(ctypes.c_ulong)()
        self.x.XQueryTree(self.display, self.root, ctypes.byref(root), ctypes.byref(parent),
                          ctypes.byref(children), ctypes.byref(count))
        found = False
        for child in children[: count.value]:
            name = ctypes.c_char_p()
            if self.x.XFetchName(self.display, ctypes.c_ulong(child), ctypes.byref(name)):
                found = found or name.value == title.encode()
                self.x.XFree(name)
        if children:
            self.x.XFree(children)
        return found


def write_session(home, count):
    """A session of `count` tabs whose selected one is the page that is measured."""
    ids = [str(uuid.uuid4()).upper() for _ in range(count)]
    tabs = [
        {"id": id_, "title": f"Tab {n}", "url": ADDRESS if n == 0 else f"https://site{n}.test/"}
        for n, id_ in enumerate(ids)
    ]
    profile, space = str(uuid.uuid4()).upper(), str(uuid.uuid4()).upper()
    record = {
        "schemaVersion": 2, "activeSpaceID": space, "isSidebarVisible": True, "sidebarWidth": 248,
        "profiles": [{"id": profile, "name": "Personal", "favorites": []}],
        "spaces": [{
            "id": space, "name": "Personal", "symbol": "person.fill", "hue": 0.94,
            "profileID": profile, "pinned": [], "today": tabs,
            **({"selectedTabID": ids[0]} if ids else {}),
        }],
    }
    folder = home / "data" / "Orvel"
    folder.mkdir(parents=True)
    (folder / "session.json").write_text(json.dumps(record))


def prepare(web, folder):
    """A home in which the filter lists have been compiled, as in every start but the very first."""
    home = folder / "prepared"
    home.mkdir()
    program = Program(home, web)
    rules = home / "cache" / "com.brinemark.orvel" / "ContentRules"
    compiled = lambda: len(list(rules.glob("ContentRuleList-*"))) >= 4  # noqa: E731
    eventually(compiled, "the compiled lists", 120)
    time.sleep(1)
    program.end()
    shutil.rmtree(home / "data")
    return home


def memory_of(process):
    lines = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) / 1024 for line in lines if line.startswith("Pss:"))


def bare(home, web):
    environment = dict(
        os.environ, HOME=str(home), http_proxy=web.address, no_proxy="",
        XDG_DATA_HOME=str(home / "data"), XDG_CACHE_HOME=str(home / "cache"),
        WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS="1", WEBKIT_DISABLE_DMABUF_RENDERER="1",
        GSK_RENDERER="cairo",
    )
    return subprocess.Popen([str(BUILD / "bin" / "bare-window"), ADDRESS], env=environment)


def measure(web, titles, prepared, start):
    """One run: seconds until the title shows and until the page is painted, and the memory then."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-startup-")) / "home"
    shutil.copytree(prepared, folder)
    web.control("clear")
    begin = time.monotonic()
    process = start(folder)
    while "Painted" not in titles:
        if time.monotonic() - begin > 30:
            raise SystemExit("startup: no window has the page's title")
        time.sleep(0.002)
    title = time.monotonic() - begin
    eventually(lambda: web.requests(f"{ADDRESS}painted"), "the page", 30)
    painted = time.monotonic() - begin
    time.sleep(0.5)
    memory = memory_of(process)
    process.terminate()
    process.wait(10)
    shutil.rmtree(folder.parent, ignore_errors=True)
    return title * 1000, painted * 1000, memory


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 7
    folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-startup-web-"))
    web = Web(folder / "web")
    titles = Titles()
    web.serve(ADDRESS, PAGE)
    web.serve(f"{ADDRESS}painted", "")

    prepared = prepare(web, folder)

    def with_session(count):
        def start(home):
            if count == 0:
                return Program(home, web, ADDRESS).process
            write_session(home, count)
            return Program(home, web).process

        return start

    subjects = {
        "bare window": lambda home: bare(home, web),
        "empty session": with_session(0),
        "1 tab": with_session(1),
        "1,000 tabs": with_session(1000),
    }
    results = {name: [] for name in subjects}
    for round_ in range(rounds + 1):
        for name, start in subjects.items():
            figures = measure(web, titles, prepared, start)
            if round_ > 0:  # the first round warms the disk's cache
                results[name].append(figures)
    columns = ("title ms", "painted ms", "MB")
    print(f"{'':14}" + "".join(f"{column:>12} {'ratio':>6}" for column in columns) +
          f"   ({rounds} rounds, medians)")
    medians = {name: [statistics.median(column) for column in zip(*figures)]
               for name, figures in results.items()}
    base = medians["bare window"]
    for name, figures in medians.items():
        print(f"{name:14}" + "".join(f"{figure:12.0f} {figure / against:6.2f}"
                                     for figure, against in zip(figures, base)))
    web.stop()
    shutil.rmtree(folder, ignore_errors=True)


main()
