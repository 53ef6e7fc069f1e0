"""Drives the commands of self-update as another program does, with archives that are out to fool it.

usage: update_test.py PATH-OF-ORVEL-CORE
"""

import base64
import hashlib
import json
import os
import pathlib
import plistlib
import shutil
import stat
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

from cryptography.hazmat.primitives import serialization
from cryptography.hazmat.primitives.asymmetric.ed25519 import Ed25519PrivateKey

CORE = sys.argv.pop(1)
ID = "test.app"
BUILD = 123
FILE, FOLDER, LINK = stat.S_IFREG, stat.S_IFDIR, stat.S_IFLNK
SIGNATURE = "Orvel.app/Contents/CodeSignature"


def run(*arguments, **options):
    return subprocess.run([CORE, *map(str, arguments)], capture_output=True, **options)


class Key:
    def __init__(self):
        self.key = Ed25519PrivateKey.generate()
        self.public_raw = self.key.public_key().public_bytes(
            serialization.Encoding.Raw, serialization.PublicFormat.Raw)
        self.public = base64.b64encode(self.public_raw).decode()
        seed = self.key.private_bytes(
            serialization.Encoding.Raw, serialization.PrivateFormat.Raw,
            serialization.NoEncryption())
        self.file_contents = base64.b64encode(seed + self.public_raw)

    def sign(self, archive, build=BUILD):
        message = b"orvel-update-%d\n" % build + hashlib.sha256(archive).digest()
        return base64.b64encode(self.key.sign(message)).decode()


def zipped(entries, count=None):
    """A zip archive of (name, mode, contents, what its headers say otherwise)."""
    body = directory = b""
    for name, mode, contents, *said in entries:
        said = said[0] if said else {}
        name = name if isinstance(name, bytes) else name.encode()
        packer = zlib.compressobj(9, zlib.DEFLATED, -15)
        packed = packer.compress(contents) + packer.flush()
        fields = struct.pack(
            "<HHHHHIIIHH", 20, said.get("flags", 0), said.get("method", 8), 0, 0,
            said.get("sum", zlib.crc32(contents)), said.get("packed", len(packed)),
            said.get("size", len(contents)), len(name), 0)
        directory += (b"PK\1\2" + struct.pack("<BB", 20, said.get("system", 3)) + fields
                      + struct.pack("<HHHII", 0, 0, 0, mode << 16, len(body)) + name)
        body += b"PK\3\4" + fields + name + packed
    count = len(entries) if count is None else count
    return body + directory + b"PK\5\6" + struct.pack(
        "<HHHHIIH", 0, 0, count, count, len(directory), len(body), 0)


def plist(**values):
    return plistlib.dumps(values)


INFO = {"CFBundleIdentifier": ID, "CFBundleVersion": str(BUILD),
        "CFBundleShortVersionString": "1.2"}


def bundle(info=None, top="Orvel.app"):
    """The entries of an unsigned application."""
    return [
        [f"{top}/", FOLDER | 0o755, b""],
        [f"{top}/Contents/Info.plist", FILE | 0o644, plist(**INFO) if info is None else info],
        [f"{top}/Contents/Linux/orvel", FILE | 0o755, b"#!/bin/sh\nexit 7\n"],
        [f"{top}/Contents/Resources/empty/", FOLDER | 0o700, b""],
        [f"{top}/Contents/Resources/K\u0308\xe4 n.txt", FILE | 0o604, b"text" * 50],
        [f"{top}/Contents/Resources/latest", LINK | 0o777, b"../Linux/./orvel"],
    ]


def changed(entries, ending, **new):
    """The entries with another name, mode or contents for the one whose name ends so."""
    places = {"name": 0, "mode": 1, "contents": 2}
    copy = [list(entry) for entry in entries]
    [found] = [entry for entry in copy if entry[0].endswith(ending)]
    for part, value in new.items():
        found[places[part]] = value
    return copy


class UpdateTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvel-update-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.key = Key()
        self.key_file = self.folder / "key"
        self.key_file.write_bytes(self.key.file_contents + b"\n")

    def on_disk(self, entries):
        """The entries as files of their own; the path of their application."""
        place = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        for name, mode, contents, *_ in entries:
            path = place / name
            path.parent.mkdir(parents=True, exist_ok=True)
            if stat.S_ISLNK(mode):
                path.symlink_to(contents.decode())
            elif stat.S_ISDIR(mode):
                path.mkdir(exist_ok=True)
                path.chmod(mode & 0o777)
            else:
                path.write_bytes(contents)
                path.chmod(mode & 0o777)
        return place / entries[0][0].rstrip("/")

    def signed(self, entries, key_file=None):
        """The entries and that of their code signature."""
        app = self.on_disk(entries)
        self.assertEqual(run("sign-bundle", "--key", key_file or self.key_file, app).returncode, 0)
        top = entries[0][0].split("/")[0]
        contents = (app / "Contents/CodeSignature").read_bytes()
        return entries + [[f"{top}/Contents/CodeSignature", FILE | 0o644, contents]]

    def stage(self, archive, *, public=None, build=BUILD, signature=None, **options):
        """The answer to an archive, whose folder is gone after each error."""
        folder = self.folder / "stage"
        folder.mkdir(exist_ok=True)
        path = folder / "update.zip"
        if archive is not None:
            path.write_bytes(archive)
        done = run(
            "stage-update", "--folder", folder, "--bundle-id", ID, "--public-key",
            public or self.key.public, "--build", build, "--signature",
            self.key.sign(archive or b"") if signature is None else signature, path, **options)
        answer = json.loads(done.stdout)
        self.assertEqual(done.returncode, 1 if "error" in answer else 0, done)
        self.assertEqual(folder.exists(), "error" not in answer, answer)
        return answer

    def test_staging(self):
        entries = self.signed(bundle())
        # Entries in any order, without those of folders that say nothing of their own.
        self.stage(zipped(entries))
        for locale, umask in (("C", 0o77), ("C.UTF-8", 0)):
            answer = self.stage(
                zipped(entries[::-1]), env=dict(os.environ, LC_ALL=locale),
                preexec_fn=lambda: os.umask(umask))
            app = self.folder / "stage/unpacked/Orvel.app"
            self.assertEqual(answer, {"app": str(app), "version": "1.2", "build": BUILD})
            found = {
                os.fsencode(path.relative_to(app.parent)): path.lstat().st_mode
                for path in [app, *app.rglob("*")]}
            wanted = {entry[0].rstrip("/").encode(): entry[1] for entry in entries}
            for implied in (b"", b"/Linux", b"/Resources"):
                wanted[b"Orvel.app/Contents" + implied] = FOLDER | 0o755
            self.assertEqual(found, wanted)
            self.assertEqual((app / "Contents/Resources/latest").readlink().name, "orvel")
        # Bits that no archive may set are dropped; what has no version is "?".
        entries = self.signed(bundle(plist(**{**INFO, "CFBundleShortVersionString": 5})))
        bold = changed(entries, "/orvel", mode=FILE | 0o6755)
        bold = changed(bold, "empty/", mode=FOLDER | 0o1700)
        self.assertEqual(self.stage(zipped(bold))["version"], "?")
        program = self.folder / "stage/unpacked/Orvel.app/Contents/Linux/orvel"
        self.assertEqual(program.stat().st_mode & 0o7777, 0o755)
        # 65,535 entries are not too many.
        many = [[f"Orvel.app/{i}", FILE | 0o644, b""] for i in range(65535)]
        self.assertEqual(self.stage(zipped(many)), {"error": "wrongApp"})

    def test_hostile_archives(self):
        app = bundle()
        inside = "Orvel.app/Contents/"

        def file(name, mode=FILE | 0o644, contents=b"x", **said):
            return [app + [[name, mode, contents, said]]]

        def links(*pairs):
            return [app + [[inside + name, LINK | 0o777, to.encode()] for name, to in pairs]]

        small_bomb = zipped([["a.app/z", FILE | 0o644, bytes(1 << 20)]])
        cases = {
            "absolute": file("/etc/evil"), "upwards": file(inside + "../../../evil"),
            "dot": file("Orvel.app/./a"), "empty piece": file("Orvel.app//a"),
            "backslash": file("Orvel.app/..\\a"), "zero byte": file("Orvel.app/a\0b"),
            "no name": file(""), "dots alone": file(".."), "slash alone": file("/", FOLDER),
            "file with a slash": file("Orvel.app/a/"),
            "folder with contents": file("Orvel.app/a/", FOLDER | 0o755),
            "below a link": file(inside + "Resources/latest/a"),
            "below a file": file(inside + "Info.plist/a"),
            "device": file("Orvel.app/null", stat.S_IFCHR | 0o666, b""),
            "disk": file("Orvel.app/sda", stat.S_IFBLK | 0o666, b""),
            "pipe": file("Orvel.app/pipe", stat.S_IFIFO | 0o666, b""),
            "socket": file("Orvel.app/socket", stat.S_IFSOCK | 0o666, b""),
            "twice": file(inside + "Info.plist"), "folder twice": [app + [app[0]]],
            "by case": file(inside + "INFO.plist"), "by case beyond ASCII": [
                app + [["Orvel.app/\u03c3", FILE, b""], ["Orvel.app/\u03c2", FILE, b""]]],
            "folders by case": file("Orvel.app/contents/a"),
            "absolute link": links(("l", "/etc/passwd")), "link out": links(("l", "../../x")),
            "out and back": links(("l", "../../Orvel.app/Contents")), "empty link": links(("l", "")),
            "out through a link": links(("up", ".."), ("Linux/deep", "../up/../x")),
            "round and out": links(("a", "b/c"), ("b", "."), ("c", "b/b/../../x")),
            "zero byte in link": links(("l", "a\0b")), "long link": links(("l", "a" * 5000)),
            "top is a link": [[["Orvel.app", LINK | 0o777, b"Contents"]]],
            "encrypted": file("Orvel.app/a", flags=1),
            "strongly encrypted": file("Orvel.app/a", flags=1 << 6),
            "unknown method": file("Orvel.app/a", method=97),
            "rare method": file("Orvel.app/a", contents=b"", method=12),
            "deep folders without end": [[[f"{i}/" + "a/" * 2000 + "b", FILE | 0o644, b""]
                                          for i in range(32)]],
            "wrong checksum": file("Orvel.app/a", sum=5),
            "longer than said": file("Orvel.app/a", contents=bytes(1 << 20), size=10),
            "shorter than said": file("Orvel.app/a", size=10),
            "bomb of many": [[[f"a.app/{i}", FILE | 0o644, bytes(9), {"size": 1 << 30}]
                              for i in range(3)]],
            "65,536 entries": [[[f"a.app/{i}", FILE | 0o644, b""] for i in range(65536)], 0],
            "count": [app, 3], "count of none": [app, 0],
        }
        for name, arguments in cases.items():
            with self.subTest(name):
                self.assertEqual(self.stage(zipped(*arguments)), {"error": "unpackFailed"})
        good = zipped(app)
        for name, archive in {
            "empty": b"", "tar": subprocess.run(
                ["tar", "c", "-C", self.folder, "key"], capture_output=True).stdout,
            "cut off": good[:-1], "begun": good[:100], "something before": b"x" + good,
        }.items():
            with self.subTest(name):
                self.assertEqual(self.stage(archive), {"error": "unpackFailed"})
        # An archive in an archive is a file like any other.
        nested = app + [["Orvel.app/more.zip", FILE | 0o644, small_bomb]]
        self.assertIn("app", self.stage(zipped(self.signed(nested))))

    def test_wrong_applications(self):
        def info(**values):
            return self.signed(bundle(plist(**{**INFO, **values})))

        good = self.signed(bundle())
        other = self.folder / "other"
        other.write_bytes(Key().file_contents)
        outward = changed(good, "latest", contents=b"../Linux/orvel")
        cases = {
            "wrongArchive": {
                "second item": good + [["b.app/a", FILE, b""]],
                "hidden item": good + [[".hidden", FILE, b""]],
                "no item": [],
                "no application": bundle(top="Orvel"),
                "upper case": bundle(top="Orvel.APP"),
                "hidden name": bundle(top=".app"),
            },
            "wrongApp": {
                "no information": [["Orvel.app/a", FILE, b""]],
                "no list": self.signed(bundle(b"<plist")), "a file": [["Orvel.app", FILE, b""]],
                "no dictionary": bundle(plistlib.dumps(["a"])), "big": bundle(bytes(2 << 20)),
                "other": info(CFBundleIdentifier="other"), "none": info(CFBundleIdentifier=5),
            },
            "wrongBuild": {
                "zero before": info(CFBundleVersion="0123"), "number": info(CFBundleVersion=123),
                "other": info(CFBundleVersion="124"),
            },
            "badCodeSignature": {
                "contents": changed(good, "/orvel", contents=b"#!/bin/sh\nexit 8\n"),
                "mode": changed(good, "/orvel", mode=FILE | 0o777),
                "folder's mode": changed(good, "empty/", mode=FOLDER | 0o755),
                "top's mode": changed(good, "Orvel.app/", mode=FOLDER | 0o700),
                "target": outward, "name": changed(good, "n.txt", name="Orvel.app/Contents/n.txt"),
                "extra file": good + [["Orvel.app/Contents/a", FILE, b""]],
                "extra folder": good + [["Orvel.app/Contents/a/", FOLDER | 0o755, b""]],
                "missing file": [entry for entry in good if "n.txt" not in entry[0]],
                "missing folder": [entry for entry in good if "empty" not in entry[0]],
                "file for link": changed(good, "latest", mode=FILE | 0o777),
                "no signature": bundle(),
                "signature a folder": bundle() + [[SIGNATURE + "/", FOLDER | 0o755, b""]],
                "signature a link": changed(good, SIGNATURE, name=SIGNATURE + "s")
                + [[SIGNATURE, LINK | 0o777, b"CodeSignatures"]],
                "empty signature": changed(good, SIGNATURE, contents=b""),
                "other key": self.signed(bundle(), other),
            },
        }
        for error, archives in cases.items():
            for name, entries in archives.items():
                with self.subTest(f"{error}: {name}"):
                    self.assertEqual(self.stage(zipped(entries)), {"error": error})

    def test_wrong_signatures(self):
        archive = zipped(self.signed(bundle()))
        good = self.key.sign(archive)
        raw = base64.b64decode(good)
        cases = {
            "line break": {"signature": good[:40] + "\n" + good[40:]},
            "blank": {"signature": good + " "}, "none": {"signature": ""},
            "short": {"signature": base64.b64encode(raw[:63]).decode()},
            "address form": {"signature": base64.urlsafe_b64encode(b"\xff" * 64).decode()},
            "other build": {"build": BUILD + 1}, "other key": {"public": Key().public},
            "key of 31 bytes": {"public": base64.b64encode(bytes(31)).decode()},
            "key with a line feed": {"public": self.key.public + "\n"},
            "changed byte": {"signature": self.key.sign(archive + b"x")},
            "no archive": {"archive": None},
        }
        for name, options in cases.items():
            with self.subTest(name):
                given = {"archive": archive, "signature": good, **options}
                self.assertEqual(self.stage(given.pop("archive"), **given),
                                 {"error": "badSignature"})
        # A folder that cannot be made.
        (self.folder / "file").write_bytes(b"")
        path = self.folder / "update.zip"
        path.write_bytes(archive)
        done = run("stage-update", "--folder", self.folder / "file/stage", "--bundle-id", ID,
                   "--public-key", self.key.public, "--build", BUILD, "--signature", good, path)
        self.assertEqual((done.returncode, done.stdout), (1, b'{"error":"fileSystem"}\n'))

    def test_signing_bundles(self):
        def is_valid(app):
            return run("verify-bundle", "--public-key", self.key.public, app).returncode == 0

        def contents(app):
            return {path: (path.lstat().st_mode, path.lstat().st_mtime_ns)
                    for path in app.rglob("*")}

        app = self.on_disk(bundle())
        # A second signing replaces the first, and what a killed one has left.
        for _ in range(2):
            (app / "Contents/CodeSignature.new").write_bytes(b"half")
            self.assertEqual(run("sign-bundle", "--key", self.key_file, app).returncode, 0)
            self.assertTrue(is_valid(app))
        (app / "Contents/CodeSignature").chmod(0o600)
        self.assertTrue(is_valid(app))
        (app / "Contents/Linux/pipe\n").touch()
        self.assertFalse(is_valid(app))

        def pipe(app):
            (app / "Contents/CodeSignature").unlink(missing_ok=True)
            os.mkfifo(app / "Contents/CodeSignature")

        for name, spoil in {
            "pipe": lambda app: os.mkfifo(app / "Contents/pipe"), "signature a pipe": pipe,
            "link out": lambda app: (app / "l").symlink_to("../x"),
            "link out through another": lambda app: (
                (app / "Contents/Linux/up").symlink_to(".."),
                (app / "l").symlink_to("Contents/Linux/up/../../x")),
            "absolute link": lambda app: (app / "l").symlink_to(app / "Contents"),
        }.items():
            with self.subTest(name):
                app = self.on_disk(bundle())
                run("sign-bundle", "--key", self.key_file, app)
                spoil(app)
                before = contents(app)
                self.assertFalse(is_valid(app))
                self.assertNotEqual(run("sign-bundle", "--key", self.key_file, app).returncode, 0)
                self.assertEqual(contents(app), before)

        app = self.on_disk(bundle())
        before = contents(app)
        raw = base64.b64decode(self.key.file_contents)
        for key in (b"", raw, base64.b64encode(raw[:63]), self.key.file_contents + b"\n\n",
                    base64.b64encode(raw[:32] + Key().public_raw)):
            self.key_file.write_bytes(key)
            self.assertNotEqual(run("sign-bundle", "--key", self.key_file, app).returncode, 0)
        self.assertEqual(contents(app), before)
        for no_bundle in (self.folder / "none", self.key_file, self.folder):
            self.key_file.write_bytes(self.key.file_contents)
            self.assertNotEqual(
                run("sign-bundle", "--key", self.key_file, no_bundle).returncode, 0)

    def test_messages(self):
        archive = self.folder / "archive"
        archive.write_bytes(b"")
        for build in ("1234", "-9223372036854775808"):
            wanted = f"orvel-update-{build}\n".encode() + hashlib.sha256(b"").digest()
            done = run("update-message", "--build", build, archive)
            self.assertEqual((done.returncode, done.stdout.decode()), (0, wanted.hex() + "\n"))
        for build, path in (("9223372036854775808", archive), ("1x", archive), ("", archive),
                            ("+1", archive), ("1", self.folder), ("1", self.folder / "none")):
            done = run("update-message", "--build", build, path)
            self.assertEqual(done.stdout, b"")
            self.assertNotEqual(done.returncode, 0)
        # A large one takes no more memory, of which the process tells as long as there may be more.
        with subprocess.Popen([CORE, "update-message", "--build", "1", "/dev/stdin"],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as hashing:
            peaks = {}
            for written in range(1, (1 << 10) + 1):
                hashing.stdin.write(bytes(1 << 20))
                status = pathlib.Path(f"/proc/{hashing.pid}/status").read_text()
                peaks[written] = int(status.partition("VmHWM:")[2].split()[0])
            hashing.stdin.close()
            self.assertEqual(len(hashing.stdout.read()), 2 * (15 + 32) + 1)
        print(f"1 GiB hashed with {peaks[1024]} KiB of memory at most, 16 MiB with {peaks[16]}")
        self.assertLess(peaks[1024] - peaks[16], 1 << 10)

    def test_replaceable_places(self):
        place = self.folder / "place"
        place.mkdir()
        for path, wanted in {
            place / "Orvel.app": True, f"{place}/Orvel.app/": True, f"{place}/x/../Orvel.app": True,
            place / "Orvel": False, place / "Orvel.APP": False, place / ".app": False,
            place / "none/Orvel.app": False, "/Volumes/Orvel.app": False,
            "/tmp/AppTranslocation/x/Orvel.app": False, "/media/stick/Orvel.app": False,
        }.items():
            done = run("can-replace", path)
            self.assertEqual((done.returncode, done.stdout.strip()),
                             (0, str(wanted).lower().encode()), path)
        if os.geteuid() == 0:
            # Who is not root is asked for the folder's mode.
            place.chmod(0o755)
            self.folder.chmod(0o755)
            done = run("can-replace", place / "Orvel.app", user="nobody")
            self.assertEqual(done.stdout, b"false\n")
        mounts = [line.split() for line in pathlib.Path("/proc/mounts").read_text().splitlines()]
        for mount in (m[1] for m in mounts if m[3].startswith("ro,") and os.path.isdir(m[1])):
            self.assertEqual(run("can-replace", f"{mount}/Orvel.app").stdout, b"false\n", mount)


if __name__ == "__main__":
    unittest.main()
