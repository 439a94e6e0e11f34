"""How soon a program's main loop gets round to something: window managers ask a window now and then whether it is alive
(_NET_WM_PING of the Extended Window Manager Hints), and toolkits answer from their main loop, before anything else."""

import ctypes
import threading
import time

from watching import hurry

CLIENT_MESSAGE = 33  # X.h
# The answers are sent to the root window, by some to those who asked for the first, by others for the second.
STRUCTURE_NOTIFY, SUBSTRUCTURE_NOTIFY = 1 << 17, 1 << 19  # StructureNotifyMask, SubstructureNotifyMask
PAUSE = 0.002  # seconds between two questions
OURS = 0x51000000  # questions with these numbers are not the window manager's


class _ClientMessage(ctypes.Structure):
    """XClientMessageEvent of Xlib.h."""

    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]


class _Event(ctypes.Union):
    """XEvent of Xlib.h."""

    _fields_ = [("type", ctypes.c_int), ("message", _ClientMessage), ("pad", ctypes.c_long * 24)]


class Pings:
    """Asks a window until it is stopped. `waits` has (time of the question, seconds to the answer)."""

    def __init__(self, display_name, window):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._declare()
        self._display = self._x11.XOpenDisplay(display_name.encode())
        if not self._display:
            raise RuntimeError(f"no X server at {display_name}")
        self._window = window
        self._root = self._x11.XDefaultRootWindow(self._display)
        self._protocols = self._x11.XInternAtom(self._display, b"WM_PROTOCOLS", 0)
        self._ping = self._x11.XInternAtom(self._display, b"_NET_WM_PING", 0)
        self._x11.XSelectInput(self._display, self._root, STRUCTURE_NOTIFY | SUBSTRUCTURE_NOTIFY)
        self._asked = {}
        self._stopped = False
        self.waits = []
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def _declare(self):
        display, window = ctypes.c_void_p, ctypes.c_ulong
        self._x11.XOpenDisplay.restype = display
        self._x11.XDefaultRootWindow.restype = window
        self._x11.XDefaultRootWindow.argtypes = self._x11.XCloseDisplay.argtypes = [display]
        self._x11.XFlush.argtypes = self._x11.XPending.argtypes = [display]
        self._x11.XInternAtom.restype = ctypes.c_ulong
        self._x11.XInternAtom.argtypes = [display, ctypes.c_char_p, ctypes.c_int]
        self._x11.XSelectInput.argtypes = [display, window, ctypes.c_long]
        self._x11.XNextEvent.argtypes = [display, ctypes.POINTER(_Event)]
        self._x11.XSendEvent.argtypes = [display, window, ctypes.c_int, ctypes.c_long, ctypes.POINTER(_Event)]

    def _run(self):
        hurry()
        number = 0
        due = time.monotonic()
        while not self._stopped:
            self._hear()
            if time.monotonic() >= due:
                number += 1
                self._ask(OURS + number)
                due += PAUSE
            time.sleep(PAUSE / 8)

    def _ask(self, number):
        event = _Event()
        event.message = _ClientMessage(type=CLIENT_MESSAGE, window=self._window, message_type=self._protocols, format=32,
                                       data=(self._ping, number, self._window, 0, 0))
        self._asked[number] = time.monotonic()
        self._x11.XSendEvent(self._display, self._window, 0, 0, ctypes.byref(event))
        self._x11.XFlush(self._display)

    def _hear(self):
        event = _Event()
        while self._x11.XPending(self._display):
            self._x11.XNextEvent(self._display, ctypes.byref(event))
            message = event.message
            if event.type != CLIENT_MESSAGE or message.message_type != self._protocols or message.data[0] != self._ping:
                continue
            asked = self._asked.pop(message.data[1], None)
            if asked is not None:
                self.waits.append((asked, time.monotonic() - asked))

    def stop(self):
        """Waits for the answers that are still to come, as long as it takes a person to believe that nothing will."""
        end = time.monotonic() + 5
        self._stopped = True
        self._thread.join()
        while self._asked and time.monotonic() < end:
            self._hear()
            time.sleep(PAUSE)
        now = time.monotonic()
        self.waits += [(asked, now - asked) for asked in self._asked.values()]
        self._x11.XCloseDisplay(self._display)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()
