"""The X server at first hand (libX11, libXtst): at a tap the time is taken to the millisecond, which starting a program
for each event does not allow."""

import ctypes
import time

OVERRIDE_REDIRECT = 1 << 9  # CWOverrideRedirect of X.h
BACKGROUND_PIXEL = 1 << 1  # CWBackPixel


class _WindowAttributes(ctypes.Structure):
    """XSetWindowAttributes of Xlib.h."""

    _fields_ = [("background_pixmap", ctypes.c_ulong), ("background_pixel", ctypes.c_ulong),
                ("border_pixmap", ctypes.c_ulong), ("border_pixel", ctypes.c_ulong), ("bit_gravity", ctypes.c_int),
                ("win_gravity", ctypes.c_int), ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int), ("event_mask", ctypes.c_long),
                ("do_not_propagate_mask", ctypes.c_long), ("override_redirect", ctypes.c_int),
                ("colormap", ctypes.c_ulong), ("cursor", ctypes.c_ulong)]


class Display:
    """A connection to the X server. To be used by one thread."""

    def __init__(self, name):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._test = ctypes.CDLL("libXtst.so.6")
        self._declare()
        self._display = self._x11.XOpenDisplay(name.encode())
        if not self._display:
            raise RuntimeError(f"no X server at {name}")
        self._root = self._x11.XDefaultRootWindow(self._display)

    def _declare(self):
        display, window, number, count = ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_uint
        self._x11.XOpenDisplay.restype = display
        self._x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
        self._x11.XCloseDisplay.argtypes = [display]
        self._x11.XDefaultRootWindow.restype = window
        self._x11.XDefaultRootWindow.argtypes = [display]
        self._x11.XSync.argtypes = [display, number]
        self._x11.XSetWindowBackground.argtypes = [display, window, ctypes.c_ulong]
        self._x11.XClearWindow.argtypes = self._x11.XMapWindow.argtypes = [display, window]
        self._x11.XDestroyWindow.argtypes = [display, window]
        self._x11.XCreateWindow.restype = window
        self._x11.XCreateWindow.argtypes = [display, window, number, number, count, count, count, number, count,
                                            ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(_WindowAttributes)]
        self._test.XTestFakeMotionEvent.argtypes = [display, number, number, number, ctypes.c_ulong]
        self._test.XTestFakeButtonEvent.argtypes = [display, count, number, ctypes.c_ulong]

    def close(self):
        self._x11.XCloseDisplay(self._display)

    def _sync(self):
        self._x11.XSync(self._display, 0)

    def paint_root(self, pixel):
        """What is to be seen where there is no window: 0xRRGGBB."""
        self._x11.XSetWindowBackground(self._display, self._root, pixel)
        self._x11.XClearWindow(self._display, self._root)
        self._sync()

    def open_window(self, box):
        """A bare black window, which no window manager touches, for another program to draw in."""
        left, top, width, height = box
        attributes = _WindowAttributes(background_pixel=0, override_redirect=1)
        window = self._x11.XCreateWindow(self._display, self._root, left, top, width, height, 0, 0, 0, None,
                                         BACKGROUND_PIXEL | OVERRIDE_REDIRECT, ctypes.byref(attributes))
        self._x11.XMapWindow(self._display, window)
        self._sync()
        return window

    def paint_window(self, window, pixel):
        """Fills a window that was opened here: 0xRRGGBB."""
        self._x11.XSetWindowBackground(self._display, window, pixel)
        self._x11.XClearWindow(self._display, window)
        self._sync()

    def close_window(self, window):
        self._x11.XDestroyWindow(self._display, window)
        self._sync()

    def move(self, place):
        x, y = place
        self._test.XTestFakeMotionEvent(self._display, -1, int(x), int(y), 0)
        self._sync()

    def press(self):
        self._test.XTestFakeButtonEvent(self._display, 1, 1, 0)
        self._sync()

    def release(self):
        """Answers when that was, by the monotonic clock."""
        moment = time.monotonic()
        self._test.XTestFakeButtonEvent(self._display, 1, 0, 0)
        self._sync()
        return moment

    def tap(self, place):
        """Answers when the finger was lifted."""
        self.move(place)
        self.press()
        time.sleep(0.03)
        return self.release()

    def drag(self, start_at, end_at, steps=12):
        """Answers when the finger was lifted, which is right after it arrived."""
        self.move(start_at)
        self.press()
        for step in range(1, steps + 1):
            part = step / steps
            self.move([begin + (finish - begin) * part for begin, finish in zip(start_at, end_at)])
            time.sleep(0.02)
        return self.release()
