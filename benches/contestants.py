"""Who plays: this program, and what people would use in its place. Each shows two films in two views of one size, the
sound of the first on the left only and that of the second on the right only.
"""

import json
import os
import pwd
import resource
import shutil
import socket
import subprocess
import tempfile
import time
import uuid

from gi.repository import GLib

from accounting import family, proportional_set_size
from processes import end, marked, start, until
from program import Film, Home, Program
from watching import wait_for_pictures

VIEW_WIDTH, VIEW_HEIGHT = 640, 360
BAR_HEIGHT = 56
BOXES = ((0, 0, VIEW_WIDTH, VIEW_HEIGHT), (VIEW_WIDTH, 0, VIEW_WIDTH, VIEW_HEIGHT))
ORDINARY_USER = "nobody"
RIVAL_MARK = "QUILLOP_BENCH"
TITLES = ("first", "second")


def decoding_floor(films, seconds):
    """The processor cores that decoding all the films for that long in real time takes, nothing shown."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    _finish(_decode(films, seconds), 10 * seconds + 60)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) / seconds


def memory_floor(films):
    """The MiB that decoding all the films in real time holds, nothing shown, each on one thread, since each further one
    holds frames of its own."""
    seconds = 8
    decoders = _decode(films, seconds, "-threads", "1")
    time.sleep(seconds / 2)
    mebibytes = proportional_set_size([decoder.pid for decoder in decoders])
    _finish(decoders, 60)
    return mebibytes


def _decode(films, seconds, *options):
    return [start(["ffmpeg", "-nostdin", "-loglevel", "error", *options, "-re", "-t", str(seconds), "-i", film, "-f", "null", "-"])
            for film in films]


def _finish(decoders, patience):
    for decoder in decoders:
        if decoder.wait(patience) != 0:
            raise RuntimeError("ffmpeg could not decode a film")


def seeking_floor(film, seconds):
    """How long decoding takes from the key frame before that place to the place itself, on all cores and without what no
    other picture needs."""
    began = time.monotonic()
    command = ["ffmpeg", "-nostdin", "-loglevel", "error", "-threads", str(os.cpu_count() + 1), "-skip_frame", "noref",
               "-ss", str(seconds), "-i", film, "-an", "-frames:v", "1", "-f", "null", "-"]
    subprocess.run(command, check=True, timeout=60, stdin=subprocess.DEVNULL)
    return time.monotonic() - began


class Ours:
    """This program, driven as a user drives it."""

    name = "ours"

    def __init__(self, path, ground):
        self._ground = ground
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-bench-")
        self._path = path
        self.home = None
        self.environment = {}  # what the program is to find in it beside what any session has
        self.program = None
        self.films = []

    def start(self, paths):
        """Starts it with these films in its library, and waits until it is ready for its user."""
        self.settle_in(paths)
        self.launch()
        self.program.wait_until_ready()

    def settle_in(self, paths):
        """Makes the home: the films, and where the window was left."""
        self.home = Home(self._folder.name)
        for path, title in zip(paths, TITLES):
            link_or_copy(path, os.path.join(self.home.videos, title + ".mp4"))
        state = os.path.join(self.home.environment["XDG_STATE_HOME"], "quillop")
        os.makedirs(state, exist_ok=True)
        with open(os.path.join(state, "window.ini"), "w", encoding="ascii") as file:
            file.write(f"[window]\ngeometry=@Rect(0 0 {2 * VIEW_WIDTH} {VIEW_HEIGHT + BAR_HEIGHT})\nfullScreen=false\n")

    def launch(self):
        self.program = Program(self._path, self._ground.stage, self.home, self.environment)
        self.films = [Film(self.program, 1), Film(self.program, 2)]

    def play(self, paths):
        """Starts it and has both films played, until nothing but the films is to be seen."""
        self.start(paths)
        self.choose_both()
        wait_for_pictures(self._ground.stage.screen, self.boxes)
        for film in self.films:
            self.program.wait_until_gone(film.closing, 30.0)

    def choose(self, film, title):
        place = self.program.choose(film, title)
        self.program.lines_up_to("setSlider", place, 30.0)
        self.program.wait_until_gone("Videos for film 2")

    def choose_both(self):
        for film, title in zip(self.films, TITLES):
            self.choose(film, title)

    def pause(self, film):
        """Until nothing but the picture that stands still is to be seen."""
        self._press(film, film.playing)
        self.program.wait_for(film.paused)
        self.program.wait_until_gone(film.closing, 30.0)

    def resume(self, film):
        self._press(film, film.paused)

    def close(self, film):
        self._press(film, film.closing)
        self.program.wait_until_gone(film.closing, 30.0)

    def _press(self, film, name):
        """Presses one of the film's controls, which hide themselves again and again."""
        def pressed():
            node = self.program.find(name)
            if node is None:
                film.tap()
                return False
            try:
                node.press()
                return True
            except GLib.Error:
                return False  # it hid itself meanwhile

        until(pressed, f"'{name}'", 30.0, pause=0.5)

    @property
    def boxes(self):
        """Where the views are. They have to be of the size that the others' have."""
        found = [tuple(self.program.wait_for(f"Film {film.number}").box) for film in self.films]
        for box in found:
            if abs(box[2] - VIEW_WIDTH) > 2 or abs(box[3] - VIEW_HEIGHT) > 2:
                raise RuntimeError(f"a view is {box[2]}x{box[3]} instead of {VIEW_WIDTH}x{VIEW_HEIGHT}")
        return [picture_in(box) for box in found]

    def processes(self):
        return family(self.program.left_running())

    def end(self):
        if self.program is not None:
            self.program.end()
        self._folder.cleanup()


def picture_in(box):
    """Where a picture of 16:9 is shown in a view."""
    left, top, width, height = box
    scale = min(width / 16, height / 9)
    return left + (width - 16 * scale) / 2, top + (height - 9 * scale) / 2, 16 * scale, 9 * scale


class Rival:
    """Two processes of a player for one film, one for each view."""

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

    def open(self, side, path):
        raise NotImplementedError

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


def link_or_copy(path, place):
    """The same file at another place, readable wherever that is."""
    try:
        os.link(path, place)
    except OSError:
        shutil.copyfile(path, place)
