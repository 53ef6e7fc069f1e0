#!/usr/bin/env python3
"""The program with the engine's sandbox on, as nobody; skipped aloud where that cannot be."""

import os
import pathlib
import subprocess
import sys
import unittest

from orvel_kit import BUILD, KIT, PROGRAM, ROOT, EndToEndTest, eventually

SKIPPED = 77  # what ctest takes for a skipped test
OFF = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"
NOBODY = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", "--no-new-privs"]


def as_user(*command):
    """The command as somebody without rights: nobody when this is root, else this user."""
    return [*(NOBODY if os.geteuid() == 0 else []), *command]


def obstacle():
    """Why the sandbox cannot be set up here; None when it can."""
    for path in (PROGRAM, BUILD / "lib" / "web-process", KIT):
        if subprocess.run(as_user("test", "-r", str(path))).returncode != 0:
            return f"an unprivileged user cannot read {path}"
    probe = as_user(
        "bwrap", "--unshare-user", "--unshare-pid", "--ro-bind", "/", "/", "--proc", "/proc",
        "--dev", "/dev", "true",
    )
    try:
        done = subprocess.run(probe, capture_output=True, text=True)
    except FileNotFoundError as missing:
        return str(missing)
    return f"bwrap: {done.stderr.strip()}" if done.returncode != 0 else None


class SandboxTest(EndToEndTest):
    def web_processes(self):
        """The ids of the program's processes that run pages."""
        children = {}
        for entry in pathlib.Path("/proc").iterdir():
            if entry.name.isdigit():
                try:
                    stat = (entry / "stat").read_text()
                except OSError:
                    continue
                name, rest = stat[stat.index("(") + 1 :].rsplit(")", 1)
                children.setdefault(int(rest.split()[1]), []).append((int(entry.name), name))
        found, waiting = [], [self.program.process.pid]
        while waiting:
            for child, name in children.get(waiting.pop(), []):
                waiting.append(child)
                if name.startswith("WebKitWebProces"):
                    found.append(child)
        return found

    def test_a_page_shows_and_its_process_is_shut_in(self):
        secret = self.home / "secret.txt"
        secret.write_text("nobody's business")
        self.program = self.start("http://one.test/", environment={OFF: None})
        self.find("One", limit=20)
        # The program's own object was loaded through the sandbox's walls: it writes this header.
        request = self.web.requests("http://one.test/")[0]
        self.assertEqual(request["headers"].get("sec-gpc"), "1")
        self.picture("sandbox")

        process = pathlib.Path("/proc") / str(eventually(self.web_processes, "a web process")[0])
        status = dict(
            line.split(":", 1) for line in (process / "status").read_text().splitlines()
        )
        self.assertEqual(status["Seccomp"].strip(), "2", "system calls are filtered")
        self.assertGreater(len(status["NSpid"].split()), 1, "sees no process of the user")
        self.assertNotEqual(os.readlink(process / "ns" / "mnt"), os.readlink("/proc/self/ns/mnt"))
        inside = process / "root"
        self.assertTrue((inside / "usr").exists())
        self.assertFalse(pathlib.Path(f"{inside}{secret}").exists(), "sees no file of the user")


def main():
    reason = obstacle()
    if reason:
        print(f"SKIPPED, the engine's sandbox is NOT tested here: {reason}", file=sys.stderr)
        return SKIPPED
    if os.geteuid() == 0:
        # A display and a bus of the other user's own; a home is made by the test.
        return subprocess.run(
            as_user(str(ROOT / "scripts" / "with-display"), sys.executable, __file__),
            env={**os.environ, "HOME": "/nonexistent"}, cwd="/",
        ).returncode
    unittest.main(verbosity=2)


if __name__ == "__main__":
    sys.exit(main())
