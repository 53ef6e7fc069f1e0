"""Runs the script that swaps applications, and kills it at every step.

usage: swap_test.py PATH-OF-ORVEL-CORE
"""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

CORE = sys.argv.pop(1)
SCRIPT = subprocess.run([CORE, "swap-script"], capture_output=True, text=True, check=True).stdout
# A number that no process has.
NOBODY = 2 ** 22 + 1

# Stands before the system's mv, rm and sleep: does what it is told to at the call of this number.
STEP = """#!/bin/sh
name=${0##*/}
echo "$name" >>"$STEPS/calls"
number=$(wc -l <"$STEPS/calls")
act() { [ "$ACT" = "$1" ] && [ "$number" = "$AT" ]; }
act before && kill -9 $PPID
act fail && exit 1
[ "$name" = sleep ] && [ -n "$HURRY" ] && exit 0
act other && { ACT= sh -c "$SCRIPT" orvel-update "$NOBODY" "$APP" "$OTHER" 0; }
PATH=$SYSTEM_PATH "$name" "$@"
status=$?
act after && kill -9 $PPID
exit $status
"""


class SwapTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-swap-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.steps = self.folder / "steps"
        self.steps.mkdir()
        for name in ("mv", "rm", "sleep"):
            (self.steps / name).write_text(STEP)
            (self.steps / name).chmod(0o755)
        self.place = self.folder / "a place"
        self.app = self.place / "-Or*el.app"
        self.begin()

    def begin(self):
        shutil.rmtree(self.place, ignore_errors=True)
        self.make(self.app, "old")
        shutil.rmtree(self.folder / "stage", ignore_errors=True)
        self.staged = self.make(self.folder / "stage/Orvel.app", "new")
        self.other = self.make(self.folder / "stage/other/Orvel.app", "other")

    def make(self, app, version):
        """An application that notes, beside it, its version and how it was started."""
        program = app / "Contents/Linux/orvel"
        program.parent.mkdir(parents=True)
        program.write_text(f"""#!/bin/sh
{{ echo {version} $# $INVOCATION_ID; grep SigIgn /proc/self/status; }} >"$STARTED"
PATH=$SYSTEM_PATH mv "$STARTED" "$STARTED.done"
""")
        program.chmod(0o755)
        for i in range(3):
            (app / f"Contents/part{i}").write_text(version)
        return app

    def version(self, app):
        """Whose parts are all there; None for no whole application."""
        parts = {file.read_text() for file in app.glob("Contents/part?")}
        names = {str(file.relative_to(app)) for file in app.rglob("*") if file.is_file()}
        is_whole = len(parts) == 1 and names == {
            "Contents/Linux/orvel", *(f"Contents/part{i}" for i in range(3))}
        return parts.pop() if is_whole else None

    def start(self, pid=NOBODY, relaunch="0", staged=None, **environment):
        (self.steps / "calls").write_text("")
        return subprocess.Popen(
            ["/bin/sh", "-c", SCRIPT, "orvel-update", str(pid), self.app, staged or self.staged,
             relaunch],
            env=dict(os.environ, PATH=f"{self.steps}:{os.environ['PATH']}", SCRIPT=SCRIPT,
                     SYSTEM_PATH=os.environ["PATH"], STEPS=str(self.steps), APP=str(self.app),
                     OTHER=str(self.other), NOBODY=str(NOBODY), STARTED=str(self.folder / "started"),
                     **{name: str(value) for name, value in environment.items()}),
            stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def run_script(self, **options):
        return self.start(**options).wait(60)

    def beside(self):
        return sorted(file.name for file in self.place.iterdir())

    def expect_whole(self):
        """Afterwards a whole application stands in its place, or beside it."""
        places = [self.app, *self.place.glob("*.outgoing.*")]
        self.assertTrue(any(map(self.version, places)), self.beside())

    def started(self):
        """What the application noted of its start."""
        note = self.folder / "started.done"
        end = time.monotonic() + 15
        while not note.exists() and time.monotonic() < end:
            time.sleep(0.01)
        text = note.read_text()
        note.unlink()
        return text.split()

    def test_swap(self):
        for relaunch in ("0", "1", "10"):
            with self.subTest(relaunch=relaunch):
                self.begin()
                signal.signal(signal.SIGTERM, signal.SIG_IGN)  # as it may come to the script
                try:
                    self.run_script(relaunch=relaunch, INVOCATION_ID="x")
                finally:
                    signal.signal(signal.SIGTERM, signal.SIG_DFL)
                self.assertEqual(self.beside(), [self.app.name])
                self.assertEqual(self.version(self.app), "new")
                if relaunch == "1":
                    version, arguments, _, ignored = self.started()
                    self.assertEqual((version, arguments), ("new", "0"))
                    ends = (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)
                    mask = sum(1 << number - 1 for number in ends)
                    self.assertEqual(int(ignored, 16) & mask, 0)
                else:
                    self.assertFalse((self.folder / "started.done").exists())

    def test_waiting(self):
        # For the end of the process, whatever signals come meanwhile; a zombie has ended.
        for has_parent in (True, False):
            with self.subTest(has_parent=has_parent):
                self.begin()
                old = subprocess.Popen(["sleep", "60"])
                script = self.start(pid=old.pid)
                while "sleep" not in (self.steps / "calls").read_text():
                    time.sleep(0.01)
                for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
                    script.send_signal(number)
                self.assertEqual(self.version(self.app), "old")
                old.kill()
                if has_parent:
                    old.wait()
                self.assertEqual(script.wait(30), 0)
                self.assertEqual(self.version(self.app), "new")
                old.wait()
        # For a minute, and then no more.
        self.begin()
        self.assertEqual(self.run_script(pid=os.getpid(), relaunch="1", HURRY=1), 1)
        self.assertEqual((self.steps / "calls").read_text().split(), ["sleep"] * 1200)
        self.assertEqual((self.beside(), self.version(self.app)), ([self.app.name], "old"))
        self.assertEqual(self.version(self.staged), "new")
        self.assertFalse((self.folder / "started.done").exists())

    def every_step(self, act, **options):
        """Runs the script anew for each of its steps; a turn of the loop for each."""
        for at in range(1, 100):
            with self.subTest(act=act, at=at):
                self.begin()
                status = self.run_script(ACT=act, AT=at, **options)
                if len((self.steps / "calls").read_text().split()) < at:
                    self.assertGreater(at, 5)
                    return
                yield status

    def test_kill_at_every_step(self):
        for act in ("before", "after"):
            for status in self.every_step(act):
                self.assertEqual(status, -signal.SIGKILL)
                self.expect_whole()
                # The next swap is hindered by nothing, and leaves nothing.
                self.assertEqual(self.run_script(staged=self.other), 0)
                self.assertEqual((self.beside(), self.version(self.app)),
                                 ([self.app.name], "other"))

    def test_kills_one_after_the_other(self):
        # What a run has left does not cost the next one its way back.
        for first in range(1, 8):
            for _ in self.every_step("after"):
                self.run_script(ACT="before", AT=first, staged=self.other)
                self.expect_whole()
                self.run_script()
                self.assertIsNotNone(self.version(self.app))

    def test_failure_of_every_step(self):
        # A move that is refused, or finds no room: what is there starts.
        for _ in self.every_step("fail", relaunch="1"):
            self.expect_whole()
            if self.version(self.app):
                self.assertEqual(self.started()[0], self.version(self.app))

    def test_two_at_once(self):
        # The other one runs as a whole before each step of this one.
        for _ in self.every_step("other"):
            self.assertIn(self.version(self.app), ("new", "other"))
            self.assertEqual(self.beside(), [self.app.name])

    def test_strangers(self):
        # Names that only look like leftovers are somebody's own.
        self.make(self.place / f"{self.app.name}.incoming.x", "mine")
        self.run_script()
        self.assertEqual(len(self.beside()), 2)

    @unittest.skipUnless(os.geteuid() == 0, "only root can become somebody else, and mount")
    def test_refusing_places(self):
        script = ["/bin/sh", "-c", SCRIPT, "orvel-update", str(NOBODY)]
        with self.subTest("a folder that may not be written to"):
            subprocess.run([*script, self.app, self.staged, "0"], user="nobody",
                           stderr=subprocess.DEVNULL)
            self.assertEqual((self.beside(), self.version(self.app)), ([self.app.name], "old"))
        with self.subTest("a full disk"):
            disk = self.folder / "disk"
            disk.mkdir()
            (self.staged / "Contents/part0").write_bytes(bytes(1 << 20))
            result = subprocess.run(
                ["unshare", "-m", "sh", "-ec", """
                    mount -t tmpfs -o size=256k none "$1"
                    cp -a "$2" "$1/Orvel.app"
                    sh -c "$0" orvel-update "$4" "$1/Orvel.app" "$3" 0 || echo failed
                    cat "$1"/*/Contents/part0; ls "$1"
                """, SCRIPT, disk, self.app, self.staged, str(NOBODY)], capture_output=True)
            if b"mount" in result.stderr:
                self.skipTest("nothing can be mounted here")
            self.assertEqual(result.stdout, b"oldOrvel.app\n", result)


if __name__ == "__main__":
    unittest.main()
