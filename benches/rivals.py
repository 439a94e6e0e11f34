"""What people would use in the program's place. Each shows two films in two views of one size, the sound of the first on
the left only and that of the second on the right only.
"""

import json
import os
import pwd
import socket
import subprocess
import tempfile
import uuid

from accounting import family
from films import link_or_copy
from processes import end, marked, start, until
from watching import BOXES, wait_for_pictures

ORDINARY_USER = "nobody"
RIVAL_MARK = "QUILLOP_BENCH"


class Rival:
    """Two processes of a player for one film, one for each view. Each kind knows how to `open` a film on a side."""

    name = None

    def __init__(self, ground):
        self._ground = ground
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-bench-")
        self._mark = uuid.uuid4().hex
        self._processes = []

    boxes = BOXES

    def play(self, paths):
        for side, path in enumerate(paths):
            self.open(side, path)
        wait_for_pictures(self._ground.stage.screen, self.boxes)

    def _start(self, command):
        environment = dict(self._ground.stage.environment, HOME=self._folder.name, XDG_RUNTIME_DIR=self._folder.name)
        environment[RIVAL_MARK] = self._mark
        log = self._ground.log(self.name)
        self._processes.append(start(command, env=environment, cwd=self._folder.name, stdout=log, stderr=log))
        return self._processes[-1]

    def processes(self):
        return family(marked(RIVAL_MARK, self._mark))

    def end(self):
        for process in self._processes:
            end(process)
        self._folder.cleanup()


class Mpv(Rival):
    """Pans with an audio filter."""

    name = "mpv"

    def open(self, side, path):
        """Plays a file, or waits with an empty window where `path` is None."""
        left, top, width, height = BOXES[side]
        heard = ("c0=0.5*c0+0.5*c1|c1=0*c0", "c0=0*c0|c1=0.5*c0+0.5*c1")[side]
        what = ["--idle", "--force-window"] if path is None else [path]
        self._start(["mpv", "--no-config", "--no-terminal", "--vo=x11", "--ao=pulse", "--hwdec=no", "--no-border",
                     f"--geometry={width}x{height}+{left}+{top}", f"--af=lavfi=[pan=stereo|{heard}]",
                     f"--input-ipc-server={self._socket(side)}", *what])

    def _socket(self, side):
        return os.path.join(self._folder.name, f"mpv{side}")

    def remote_control(self, side):
        return RemoteControl(self._socket(side))


class RemoteControl:
    """mpv's JSON IPC."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        until(lambda: self._socket.connect_ex(path) == 0, "mpv to listen")

    def command(self, *words):
        """Sends a command without waiting for what comes of it."""
        self._socket.sendall(json.dumps({"command": list(words)}).encode() + b"\n")

    def close(self):
        self._socket.close()


class Vlc(Rival):
    """Has no filter that pans, so the sound server does it; which is the cheaper way. Refuses to run as root."""

    name = "VLC"

    def __init__(self, ground):
        super().__init__(ground)
        self._windows = []
        if os.geteuid() == 0:
            os.chown(self._folder.name, pwd.getpwnam(ORDINARY_USER).pw_uid, -1)

    def open(self, side, path):
        inputs = self._sound_inputs()
        own = os.path.join(self._folder.name, os.path.basename(path))
        link_or_copy(path, own)
        self._windows.append(self._ground.display.open_window(BOXES[side]))
        self._start([*self._as_ordinary_user(), "cvlc", "--no-video-title-show", "--no-osd", "--vout=xcb_x11", "--aout=pulse",
                     "--avcodec-hw=none", f"--drawable-xid={self._windows[-1]}", own])
        mine = until(lambda: self._sound_inputs() - inputs, "VLC to be heard", 30.0)
        loud = ("100%", "0%") if side == 0 else ("0%", "100%")
        for sound in mine:
            self._pactl("set-sink-input-volume", str(sound), *loud)

    @staticmethod
    def _as_ordinary_user():
        if os.geteuid() != 0:
            return []
        return ["setpriv", f"--reuid={ORDINARY_USER}", "--regid=nogroup", "--clear-groups", "--pdeathsig=KILL", "--"]

    def _pactl(self, *words):
        return subprocess.run(["pactl", *words], env=self._ground.stage.environment, check=True, text=True, timeout=20,
                              stdout=subprocess.PIPE).stdout

    def _sound_inputs(self):
        return {int(line.split()[0]) for line in self._pactl("list", "short", "sink-inputs").splitlines()}

    def end(self):
        super().end()
        for window in self._windows:
            self._ground.display.close_window(window)


RIVALS = (Mpv, Vlc)
