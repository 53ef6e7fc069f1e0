#!/usr/bin/env python3
"""Start-up and memory of the browser, beside a bare window with one view, in one go.

Run under scripts/with-display with ORVEL_BUILD_DIR at a release build:

    ORVEL_BUILD_DIR=build/release scripts/with-display python3 Benchmarks/startup.py [ROUNDS]

Times run from exec until the page, painted, has asked the test web for one more thing. Memory is the
interface process's proportional set size. Prints medians and ratios.
"""

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
sys.path.insert(0, str(ROOT / "Tests" / "Kit"))
from orvel_kit import BUILD, Program, Web, eventually  # noqa: E402

PAGE = """<title>Painted</title><p>Hello<script>
requestAnimationFrame(() => requestAnimationFrame(() => fetch('/painted')))</script>"""
ADDRESS = "http://start.localhost/"


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


def measure(web, prepared, start):
    """One run: seconds until the page is painted, and the interface process's memory then."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-startup-")) / "home"
    shutil.copytree(prepared, folder)
    web.control("clear")
    begin = time.monotonic()
    process = start(folder)
    eventually(lambda: web.requests(f"{ADDRESS}painted"), "the page", 30)
    took = time.monotonic() - begin
    time.sleep(0.5)
    memory = memory_of(process)
    process.terminate()
    process.wait(10)
    shutil.rmtree(folder.parent, ignore_errors=True)
    return took, memory


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 7
    folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-startup-web-"))
    web = Web(folder / "web")
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
            figures = measure(web, prepared, start)
            if round_ > 0:  # the first round warms the disk's cache
                results[name].append(figures)
    base = None
    print(f"{'':16} {'ms':>8} {'ratio':>7} {'MB':>8} {'ratio':>7}   ({rounds} rounds, medians)")
    for name, figures in results.items():
        took = statistics.median(time_ for time_, _ in figures) * 1000
        memory = statistics.median(memory for _, memory in figures)
        base = base or (took, memory)
        print(f"{name:16} {took:8.0f} {took / base[0]:7.2f} {memory:8.1f} {memory / base[1]:7.2f}")
    web.stop()
    shutil.rmtree(folder, ignore_errors=True)


main()
