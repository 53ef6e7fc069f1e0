#!/usr/bin/env python3
"""Two versions of the program, the older of which finds the newer one and gives way to it."""

import base64
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import unittest

from cryptography.hazmat.primitives import serialization
from cryptography.hazmat.primitives.asymmetric.ed25519 import Ed25519PrivateKey

import orvel_kit
from orvel_kit import BUILD, EndToEndTest, eventually

SKIPPED = 77  # what ctest takes for a skipped test
CORE = BUILD / "bin" / "orvel-core"
SEED = b"only the tests of Orvel use this"
TRUSTED = "/etc/ssl/certs/ca-certificates.crt"
# The program looks for a release ten seconds after its start.
LIMIT = 60.0


def in_own_namespace(*command):
    """The command where what it mounts is seen by nobody else."""
    return ["unshare", "-m" if os.geteuid() == 0 else "-rm", *command]


def obstacle():
    """Why the tests' authority cannot be made a trusted one; None when it can."""
    done = subprocess.run(
        in_own_namespace("mount", "--bind", "/dev/null", TRUSTED), capture_output=True, text=True)
    return done.stderr.strip() if done.returncode != 0 else None


class UpdateTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.key = Ed25519PrivateKey.from_private_bytes(SEED)
        self.app = self.folder / "some where" / "Orvel.app"
        self.addCleanup(self.end_all)
        self.former = orvel_kit.PROGRAM
        orvel_kit.PROGRAM = self.folder / "trusting"
        self.addCleanup(setattr, orvel_kit, "PROGRAM", self.former)

    def trusting(self, program):
        """What is started instead of the program, so that it trusts the tests' authority."""
        orvel_kit.PROGRAM.write_text(
            "#!/bin/sh\n"
            f"""exec {' '.join(in_own_namespace())} sh -c 'mount --bind "$0" {TRUSTED}; exec "$@"'"""
            f""" '{self.web_folder}/web/CA.pem' '{program}' "$@"\n""")
        orvel_kit.PROGRAM.chmod(0o755)

    def bundle(self, folder, build):
        """An application of this build, made as a release is."""
        for component in ("bundle", "bundle-of-tests"):
            done = subprocess.run(
                ["cmake", "--install", BUILD, "--component", component, "--strip", "--prefix",
                 folder], capture_output=True, text=True)
            self.assertEqual(done.returncode, 0, done.stderr)
        app = folder / "Orvel.app"
        (app / "Contents/Info.plist").write_bytes(plistlib.dumps({
            "CFBundleIdentifier": "com.brinemark.orvel", "CFBundleVersion": str(build),
            "CFBundleShortVersionString": f"{build}.0"}))
        return app

    def release(self, build, **changes):
        """Serves a build of the program as the newest release."""
        app = self.bundle(self.folder / f"release-{build}", build)
        encoding = serialization.Encoding.Raw
        raw = SEED + self.key.public_key().public_bytes(encoding, serialization.PublicFormat.Raw)
        (self.folder / "key").write_bytes(base64.b64encode(raw))
        subprocess.run([CORE, "sign-bundle", "--key", self.folder / "key", app], check=True)
        archive = self.folder / "orvel.zip"
        subprocess.run(
            ["cmake", "-E", "tar", "cf", archive, "--format=zip", "Orvel.app"], cwd=app.parent,
            check=True)
        message = subprocess.run(
            [CORE, "update-message", "--build", str(build), archive], check=True,
            capture_output=True, text=True)
        signature = self.key.sign(bytes.fromhex(message.stdout))
        self.web.control("serve", {
            "url": "https://updates.test/orvel.zip",
            "bodyBase64": base64.b64encode(archive.read_bytes()).decode()})
        self.web.control("serve", {"url": "https://updates.test/version.json", "body": str({
            "version": f"{build}.0", "build": build, "url": "http://two.test/",
            "archive": "https://updates.test/orvel.zip",
            "signature": base64.b64encode(signature).decode(), **changes}).replace("'", '"')})

    def processes(self):
        """The ids of the processes that run the program."""
        found = []
        for entry in pathlib.Path("/proc").iterdir():
            try:
                program = os.readlink(entry / "exe") if entry.name.isdigit() else ""
            except OSError:
                continue
            if program == str(self.app / "Contents/Linux/orvel"):
                found.append(int(entry.name))
        return found

    def uses(self, folder):
        """Whether some process has mapped a file of the folder."""
        for entry in pathlib.Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and f"{folder}/" in (entry / "maps").read_text():
                    return True
            except OSError:
                continue
        return False

    def end_all(self):
        for process in self.processes():
            os.kill(process, signal.SIGKILL)

    def check_now(self):
        """By the menu, where the command stands behind the eight menus and the settings."""
        self.keys("F10")
        self.find("Help")
        self.keys(*["Down"] * 9, "Return")

    def test_the_next_version_takes_the_place_of_this_one(self):
        self.assertEqual(self.bundle(self.app.parent, 1), self.app)
        self.release(2)
        self.trusting(self.app / "Contents/Linux/orvel")
        self.begin()
        self.find("Orvel 2.0 is ready", limit=LIMIT)
        self.picture("update-toast")
        self.check_now()
        detail = "You have 1.0. Your tabs and logins stay as they are."
        self.find(detail)
        self.picture("update-alert")
        self.keys("Escape")
        eventually(lambda: not self.accessible(detail), "the alert's end")
        first = self.processes()
        self.act(self.find("Restart", "push button"))
        self.program.process.wait(15)
        eventually(lambda: self.processes() and self.processes() != first, "the new version")
        self.find("One")
        self.assertEqual([file.name for file in self.app.parent.iterdir()], ["Orvel.app"])
        [now] = self.processes()
        self.assertEqual(os.path.realpath(f"/proc/{now}/exe"), f"{self.app}/Contents/Linux/orvel")
        self.session_is(["One"])
        version = subprocess.run([f"/proc/{now}/exe", "--version"], capture_output=True, text=True)
        self.assertEqual(version.stdout, "Orvel 2.0\n")

        # It works with its own parts.
        parts = self.app / "Contents/Resources/web-process"
        eventually(lambda: self.uses(parts), "what is loaded into pages' processes")
        rules = self.home / "cache/com.brinemark.orvel/ContentRules"
        eventually(lambda: rules.is_dir() and any(rules.iterdir()), "compiled lists", LIMIT)

        # It knows what it is.
        self.check_now()
        self.find("You’re up to date")
        self.find("Orvel 2.0 is the latest version.")
        self.picture("up-to-date")

    def test_a_program_that_its_sandbox_updates_offers_the_page(self):
        self.release(2)
        self.bundle(self.app.parent, 1)
        self.trusting(self.app / "Contents/Linux/orvel")
        self.begin(environment={"SNAP": str(self.app.parent)})
        self.find("Orvel 2.0 is available", limit=LIMIT)
        self.picture("update-available")
        self.act(self.find("Download", "push button"))
        self.find("Two")
        self.assertEqual(self.web.requests("https://updates.test/orvel.zip"), [])


if __name__ == "__main__":
    reason = obstacle()
    if reason:
        print(f"SKIPPED: no authority can be trusted for one program here: {reason}", flush=True)
        sys.exit(SKIPPED)
    unittest.main()
