"""A touchpad on a Wayland desktop without a screen.

`Desktop` runs sway with one virtual output; `Touchpad` is a pointer of it that moves by the protocol
for virtual pointers, with the phases of two fingers: a scroll begins with its first step and ends when
the fingers are lifted.
"""

import os
import pathlib
import shutil
import socket
import struct
import subprocess
import time

WIDTH, HEIGHT = 1280, 820
SWAY = f"""
output HEADLESS-1 resolution {WIDTH}x{HEIGHT}
default_border none
seat * hide_cursor 0
xwayland disable
"""
UNPRIVILEGED = "nobody"


def why_not():
    """What is missing for such a desktop; None when there is all."""
    missing = [name for name in ("sway", "grim") if not shutil.which(name)]
    return f"not installed: {', '.join(missing)}" if missing else None


class Desktop:
    def __init__(self, folder):
        folder = pathlib.Path(folder)
        folder.mkdir(mode=0o700)
        (folder / "config").write_text(SWAY)
        command = ["sway", "-c", str(folder / "config")]
        if os.geteuid() == 0:  # sway refuses to run as root
            shutil.chown(folder, UNPRIVILEGED)
            folder.parent.chmod(0o755)
            command = ["runuser", "-u", UNPRIVILEGED, "--", *command]
        environment = {
            "PATH": os.environ["PATH"], "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder),
            "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman",
        }
        self.log = open(folder.parent / "sway.log", "wb")
        self.process = subprocess.Popen(
            command, env=environment, stdout=self.log, stderr=subprocess.STDOUT
        )
        end = time.monotonic() + 10
        while not (sockets := [p for p in folder.glob("wayland-*") if p.suffix != ".lock"]):
            if time.monotonic() > end or self.process.poll() is not None:
                self.stop()
                raise RuntimeError("sway does not start: " + (folder.parent / "sway.log").read_text())
            time.sleep(0.05)
        self.display = str(sockets[0])

    def picture(self, path):
        subprocess.run(
            ["grim", str(path)], check=True, env=dict(os.environ, WAYLAND_DISPLAY=self.display)
        )

    def stop(self):
        self.process.terminate()
        self.process.wait(5)
        self.log.close()


class Touchpad:
    """Speaks the protocol itself: a message is an object, an operation and its arguments."""

    DISPLAY, REGISTRY, SYNC, MANAGER, POINTER = 1, 2, 3, 4, 5
    MOTION_ABSOLUTE, BUTTON, AXIS, FRAME, AXIS_SOURCE, AXIS_STOP = 1, 2, 3, 4, 5, 6
    INTERFACE = "zwlr_virtual_pointer_manager_v1"
    VERTICAL, HORIZONTAL, FINGER = 0, 1, 1

    def __init__(self, desktop):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(5)
        self.socket.connect(desktop.display)
        self.received = b""
        self.send(self.DISPLAY, 1, struct.pack("=I", self.REGISTRY))
        self.send(self.DISPLAY, 0, struct.pack("=I", self.SYNC))
        name = None
        while True:
            source, operation, body = self.receive()
            if source == self.SYNC:
                break
            if source == self.REGISTRY and operation == 0:
                length = struct.unpack_from("=I", body, 4)[0]
                if body[8 : 8 + length - 1].decode() == self.INTERFACE:
                    name = struct.unpack_from("=I", body)[0]
        if name is None:
            raise RuntimeError("the desktop has no virtual pointers")
        text = self.INTERFACE.encode() + b"\0"
        text += b"\0" * (-len(text) % 4)
        bind = struct.pack("=II", name, len(self.INTERFACE) + 1) + text
        self.send(self.REGISTRY, 0, bind + struct.pack("=II", 2, self.MANAGER))
        self.send(self.MANAGER, 0, struct.pack("=II", 0, self.POINTER))

    def send(self, target, operation, body=b""):
        self.socket.sendall(struct.pack("=II", target, (8 + len(body)) << 16 | operation) + body)

    def receive(self):
        def take(count):
            while len(self.received) < count:
                more = self.socket.recv(4096)
                if not more:
                    raise RuntimeError("the desktop has gone")
                self.received += more
            taken, self.received = self.received[:count], self.received[count:]
            return taken

        source, head = struct.unpack("=II", take(8))
        return source, head & 0xFFFF, take((head >> 16) - 8)

    def pointer(self, operation, *arguments):
        self.send(self.POINTER, operation, struct.pack(f"={len(arguments)}i", *arguments))

    @staticmethod
    def now():
        return int(time.monotonic() * 1000) & 0x7FFFFFFF

    def move(self, x, y):
        self.pointer(self.MOTION_ABSOLUTE, self.now(), x, y, WIDTH, HEIGHT)
        self.pointer(self.FRAME)

    def scroll(self, dx=0, dy=0, steps=1, pause=0.01):
        """Each step by dx or dy pixels; positive moves the view right or down."""
        for _ in range(steps):
            for axis, delta in ((self.VERTICAL, dy), (self.HORIZONTAL, dx)):
                if delta:
                    self.pointer(self.AXIS_SOURCE, self.FINGER)
                    self.pointer(self.AXIS, self.now(), axis, int(delta * 256))
                    self.axis = axis
            self.pointer(self.FRAME)
            time.sleep(pause)

    def lift(self):
        self.pointer(self.AXIS_SOURCE, self.FINGER)
        self.pointer(self.AXIS_STOP, self.now(), self.axis)
        self.pointer(self.FRAME)

    def close(self):
        self.socket.close()
