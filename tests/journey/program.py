"""The program as a user has it: a home, a window, a console, and two films."""

import json
import os
import signal
import subprocess
import threading
import uuid

from gi.repository import GLib

from accessibility import STATE_ENABLED
from clips import View
from processes import NotInTime, end, marked, start, until

MARK = "QUILLOP_JOURNEY"
LIBRARY_IS_OPEN = "posso accedere alla libreria"


class Home:
    """A home folder with a videos folder, such as a new user has."""

    def __init__(self, path):
        self.path = path
        self.videos = os.path.join(path, "Videos")
        self.environment = {
            "HOME": path,
            "XDG_CONFIG_HOME": os.path.join(path, ".config"),
            "XDG_DATA_HOME": os.path.join(path, ".local/share"),
            "XDG_STATE_HOME": os.path.join(path, ".local/state"),
            "XDG_CACHE_HOME": os.path.join(path, ".cache"),
            "XDG_RUNTIME_DIR": os.path.join(path, "runtime"),
        }
        for folder in (self.videos, *self.environment.values()):
            os.makedirs(folder, mode=0o700, exist_ok=True)
        with open(os.path.join(path, ".config", "user-dirs.dirs"), "w", encoding="ascii") as file:
            file.write('XDG_VIDEOS_DIR="$HOME/Videos"\n')

    def add(self, clip_path, name):
        """Puts a file into the videos folder, under a name of its own."""
        os.link(clip_path, os.path.join(self.videos, name))

    @property
    def defaults(self):
        """What the app has put down for its next start."""
        with open(os.path.join(self.environment["XDG_CONFIG_HOME"], "quillop", "defaults.json"), encoding="utf-8") as file:
            return json.load(file)

    def know_the_app(self):
        """Whoever lives here has met the hint and the tutorial already."""
        folder = os.path.join(self.environment["XDG_CONFIG_HOME"], "quillop")
        os.makedirs(folder, mode=0o700, exist_ok=True)
        with open(os.path.join(folder, "defaults.json"), "w", encoding="ascii") as file:
            json.dump({"primoAvvio": "2", "primoAvvio2": "2"}, file)


class Program:
    """One start of the program."""

    def __init__(self, path, stage, home, environment=None, root=None):
        """In `root`, where one is given, is the file system in which the program has the path `path`."""
        self.stage = stage
        self.lines = []
        self.errors = []
        self._name = os.path.basename(path)
        self._mark = uuid.uuid4().hex
        self._grown = threading.Condition()
        own = {MARK: self._mark, "LANG": "C.UTF-8", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        self._process = start(
            [path] if root is None else ["chroot", root, path], cwd=home.path, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, encoding="utf-8",
            env={**stage.environment, **home.environment, **own, **(environment or {})},
        )
        self._readers = [self._reader(self._process.stdout, self.lines), self._reader(self._process.stderr, self.errors)]
        self._root = None

    def _reader(self, stream, lines):
        def read():
            for line in stream:
                with self._grown:
                    lines.append(line.rstrip("\n"))
                    self._grown.notify_all()

        thread = threading.Thread(target=read, daemon=True)
        thread.start()
        return thread

    # Its life

    def end(self):
        """Makes it end, however it fares."""
        end(self._process)
        for process_id in self.left_running():
            os.kill(process_id, signal.SIGKILL)
        for reader in self._readers:
            reader.join()
        self._process.stdout.close()
        self._process.stderr.close()

    def terminate(self):
        self._process.terminate()

    def exit_status(self, deadline=15.0):
        """Waits for it to end by itself; negative for a signal."""
        try:
            status = self._process.wait(deadline)
        except subprocess.TimeoutExpired as late:
            raise NotInTime("the program does not end") from late
        for reader in self._readers:
            reader.join(5)
        return status

    @property
    def is_running(self):
        return self._process.poll() is None

    def left_running(self):
        """The ids of all processes that came of this start and are still there, itself included."""
        return marked(MARK, self._mark)

    def others_running(self):
        """The paths of the other programs among them. Its indexer comes and goes, and so does what looks through its
        libraries' plugins at the first start in a home."""
        found = set()
        for process_id in self.left_running():
            try:
                path = os.readlink(f"/proc/{process_id}/exe")
            except OSError:
                continue  # it has ended meanwhile
            if os.path.basename(path) not in (self._name, f"{self._name}-indexer", "gst-plugin-scanner"):
                found.add(path)
        return found

    @property
    def process_id(self):
        return self._process.pid

    # Its console

    def mark(self):
        """A place in the console: where it ends now."""
        return len(self.lines)

    def lines_up_to(self, line, since, deadline=15.0):
        """The console lines after the place `since` up to the first that reads `line`."""
        with self._grown:
            if not self._grown.wait_for(lambda: line in self.lines[since:], deadline):
                raise NotInTime(f"the console never said {line!r}, but {self.lines[since:]}")
            return self.lines[since : self.lines.index(line, since) + 1]

    def wait_until_ready(self):
        """Until it has said all that a start says, has access to the media library, and is past the tutorial."""
        self.lines_up_to("viewDidAppear", 0, deadline=30.0)
        self.allow_library()
        self.lines_up_to(LIBRARY_IS_OPEN, 0, deadline=30.0)
        if "tutorial" in self.lines:
            self.pass_first_start()

    # Its window

    @property
    def root(self):
        if self._root is None:
            self._root = self.stage.accessibility.program(self._process.pid)
        return self._root

    def find(self, name):
        return self.root.find(name)

    def wait_for(self, name, deadline=15.0):
        """The object of that name, once it is on the screen."""
        return until(lambda: self.find(name), lambda: f"'{name}' on the screen, where there is {self.root.shown_names()}",
                     deadline)

    def wait_until_gone(self, name, deadline=15.0):
        until(lambda: self.find(name) is None, f"'{name}' to leave the screen", deadline)

    def press(self, name):
        """Presses a control as assistive technology does, once it is there and takes presses."""
        node = self.wait_for(name)
        until(lambda: node.has_state(STATE_ENABLED), f"'{name}' to take presses")
        node.press()

    def press_until(self, name, is_done):
        """Presses a control until it works: a screen that still moves takes no presses."""
        def pressed():
            if is_done():
                return True
            try:
                self.find(name).press()
            except (AttributeError, GLib.Error):
                pass  # it has left the screen, or never came to it yet
            return False

        until(pressed, f"'{name}' to work", pause=0.1)

    def tap(self, node, across=0.5, down=0.5):
        self.stage.screen.click(*node.at(across, down))

    def focus(self, name):
        """Moves the focus with the Tab key until it is on the control of that name."""
        passed = [self.root.focused_name()]
        while passed[-1] != name:
            if len(passed) > 40:
                raise NotInTime(f"the Tab key never comes to '{name}', only to {passed}")
            self.stage.screen.key("Tab")
            # A key that is pressed before the last one was served would lead past the control.
            passed.append(until(lambda: self._focus_other_than(passed[-1]), f"the focus to leave '{passed[-1]}'"))

    def focus_table(self, film):
        """Moves the focus with the Tab key into the film's table, onto its current row."""
        for _ in range(4):
            table = self.find(f"Videos for film {film.number}")
            if table.is_focused or any(row.is_focused for row in table.children()):
                return
            before = self.root.focused_path()
            self.stage.screen.key("Tab")
            until(lambda: self.root.focused_path() not in (None, before), "the focus to move on")
        raise AssertionError(f"the Tab key never comes to the table of film {film.number}")

    def _focus_other_than(self, name):
        focused = self.root.focused_name()
        return focused if focused != name else None

    @property
    def window(self):
        """The number of its window."""
        found = until(lambda: self.stage.screen.windows_of(self._process.pid), "the program's window")
        return found[0]

    @property
    def is_in_sight(self):
        """Whether its window is neither minimised nor gone."""
        return bool(self.stage.screen.windows_of(self._process.pid))

    # What its user does

    def allow_library(self):
        """Gives it access to the media library, where it asks: it asks a new user."""
        until(lambda: LIBRARY_IS_OPEN in self.lines or self.find("Allow"), "the question for access", 30.0)
        if LIBRARY_IS_OPEN not in self.lines:
            self.press("Allow")
            self.wait_until_gone("Allow")

    def pass_first_start(self):
        """Goes through the tutorial, which a new user is shown a second after the start."""
        self.wait_for("next")

        def is_past():
            button = self.find("next") or self.find("start")
            if button is not None:
                button.press()
            return self.find("Choose videos")

        until(is_past, "the end of the tutorial", pause=0.3)

    def open_list(self):
        self.press("Choose videos")
        self.wait_for("Videos for film 2")

    def choose(self, film, title):
        """Opens the list and taps a row of the film's table. Answers the console place before that tap."""
        self.open_list()
        row = self.row(film, title)
        place = self.mark()
        self.tap(row)
        return place

    def row(self, film, title):
        """The row of that title in the film's table, once it lies still."""
        table = self.wait_for(f"Videos for film {film.number}")
        row = until(lambda: self._row_in(table, title), lambda: f"'{title}' in the list, which is\n{table.outline()}")
        boxes = []

        def lies_still():
            boxes.append(row.box)
            return len(boxes) > 3 and len(set(boxes[-3:])) == 1

        until(lies_still, "the list to lie still")
        return row

    @staticmethod
    def _row_in(table, title):
        return next((row for row in table.children() if row.name.startswith(title + ", ")), None)


class Film:
    """One of the two films: its view, its controls, its channel."""

    def __init__(self, program, number):
        self.program = program
        self.number = number
        self.channel = number - 1
        self._box = None

    def view(self):
        """What its view shows now."""
        # An alert over the screen takes the view out of the tree, but not out of sight.
        found = self.program.find(f"Film {self.number}") if self._box else self.program.wait_for(f"Film {self.number}")
        if found is not None:
            self._box = found.box
        return View(self.program.stage.screen.picture().crop(self._box))

    def wait_for_view(self, condition, what, deadline=15.0):
        """The first look at its view that fulfils `condition`."""
        last = [None]

        def seen():
            last[0] = self.view()
            return last[0] if condition(last[0]) else None

        return until(seen, lambda: f"{what}, but film {self.number} shows {last[0]}", deadline)

    def wait_for_clip(self, clip):
        """Until the clip is seen in its view."""
        return self.wait_for_view(lambda view: view.border == clip.border and view.time is not None, clip.title)

    def tap(self):
        self.program.tap(self.program.wait_for(f"Film {self.number}"), 0.5, 0.4)

    def show_controls(self):
        """Taps until its controls have been shown just now, so that they stay for seconds."""
        if self.program.find(self.closing) is not None:
            self.tap()
            self.program.wait_until_gone(self.closing)
        self.tap()
        self.program.wait_for(self.closing)

    def hide_controls(self):
        """Lets them leave before they hide themselves, which the console would tell."""
        if self.program.find(self.closing) is not None:
            self.tap()
        self.program.wait_until_gone(self.closing)

    def key_on(self, name, key):
        """Presses a key on one of its controls. Where the Tab key takes too long to get there, the controls hide
        themselves on the way, and it begins again."""
        for _ in range(4):
            self.show_controls()
            try:
                self.program.focus(name)
            except NotInTime:
                continue
            self.program.stage.screen.key(key)
            if self.program.find(self.closing) is not None:
                return
        raise AssertionError(f"the controls of film {self.number} always hide before the key is pressed")

    @property
    def closing(self):
        return f"Close film {self.number}"

    @property
    def playing(self):
        """The name of its play/pause button while it plays."""
        return f"Pause film {self.number}"

    @property
    def paused(self):
        """The name of its play/pause button while it does not."""
        return f"Play film {self.number}"

    @property
    def volume(self):
        return f"Volume of film {self.number}"

    @property
    def position(self):
        return f"Position in film {self.number}"
