"""What a program plays on: a screen, a sound server and a session bus, all private."""

import os
import tempfile

from accessibility import AccessibilityBus
from processes import end, start
from screen import VirtualScreen
from sound import Recorder, SoundServer


class Stage:
    """Everything around the program. `log` is a file for what the servers say."""

    def __init__(self, log_path):
        os.makedirs(os.path.dirname(log_path), exist_ok=True)
        self._log = open(log_path, "w", encoding="utf-8")  # pylint: disable=consider-using-with
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-stage-")
        self._closing = [self._folder.cleanup, self._log.close]
        try:
            self.screen = self._kept(VirtualScreen(log=self._log))
            self.screen.manage_windows()
            self.sound_server = self._kept(SoundServer(log=self._log))
            self.sound = self._kept(Recorder(self.sound_server))
            address = self._start_session_bus()
            self.accessibility = self._kept(AccessibilityBus(address))
        except BaseException:
            self.close()
            raise
        self.environment = dict(self._bare_environment(), DBUS_SESSION_BUS_ADDRESS=address, **self.sound_server.environment)

    def _kept(self, part):
        self._closing.append(part.close)
        return part

    def close(self):
        while self._closing:
            self._closing.pop()()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def _bare_environment(self):
        """What any session has, and nothing of the session in which the tests run."""
        return dict(PATH=os.environ["PATH"], DISPLAY=self.screen.display, XDG_SESSION_TYPE="x11", HOME=self._folder.name,
                    XDG_RUNTIME_DIR=self._folder.name)

    def _start_session_bus(self):
        reader, writer = os.pipe()
        bus = start(["dbus-daemon", "--session", "--nofork", f"--print-address={writer}"], pass_fds=[writer],
                    env=self._bare_environment(), stdout=self._log, stderr=self._log)
        self._closing.append(lambda: end(bus))
        os.close(writer)
        with os.fdopen(reader) as pipe:
            address = pipe.readline().strip()
        if not address:
            raise RuntimeError("the session bus did not start")
        return address
