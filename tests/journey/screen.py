"""A screen that exists in memory only, with a window manager, a pointer and a keyboard."""

import mmap
import os
import struct
import subprocess
import tempfile
import time
import zlib

import numpy

from processes import end, start, until


class Picture:
    """Pixels of a screen: rows of red, green, blue."""

    def __init__(self, pixels):
        self.pixels = pixels

    def crop(self, box):
        x, y, width, height = (int(round(number)) for number in box)
        return Picture(self.pixels[max(y, 0) : y + height, max(x, 0) : x + width])

    def has_frame(self, box):
        """Whether a white line runs along each side of the box, or within a little distance of it."""
        x, y, width, height = (int(round(number)) for number in box)
        rows = slice(y + height // 5, y + height - height // 5)
        columns = slice(x + width // 5, x + width - width // 5)
        white = self.pixels.min(axis=2) > 240

        def found(lines):
            return any(line.size and line.mean() > 0.9 for line in lines)

        near = range(-8, 28)
        return (found(white[y + way, columns] for way in near) and found(white[y + height - way, columns] for way in near)
                and found(white[rows, x + way] for way in near) and found(white[rows, x + width - way] for way in near))

    def save(self, path):
        """Writes a PNG file."""
        height, width, _ = self.pixels.shape
        rows = numpy.zeros((height, 1 + width * 3), numpy.uint8)
        rows[:, 1:] = self.pixels.reshape(height, width * 3)

        def chunk(kind, content):
            checked = kind + content
            return struct.pack(">I", len(content)) + checked + struct.pack(">I", zlib.crc32(checked))

        header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header))
            file.write(chunk(b"IDAT", zlib.compress(rows.tobytes(), 6)) + chunk(b"IEND", b""))


class VirtualScreen:
    """An X server without a device. Its frame buffer is a file, so looking at it costs the programs nothing."""

    def __init__(self, width=1280, height=900, log=subprocess.DEVNULL):
        self._folder = tempfile.TemporaryDirectory(prefix="quillop-screen-")
        self._manager = None
        reader, writer = os.pipe()
        self._server = start(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-fbdir", self._folder.name]
            + ["-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdout=log, stderr=log,
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()  # written once the server accepts connections
        if not number:
            self.close()
            raise RuntimeError("the virtual screen did not start")
        self.display = f":{number}"
        self._frame_buffer = self._map()
        self._log = log

    def close(self):
        end(self._manager)
        end(self._server)
        self._folder.cleanup()

    def manage_windows(self):
        self._manager = start(["openbox", "--sm-disable"], env=self._environment(), stdout=self._log, stderr=self._log)
        # Only a window manager answers how many desktops there are.
        until(lambda: self._run("xdotool", "get_num_desktops").strip().isdigit(), "the window manager")

    def _environment(self):
        # Without an address of a bus, some programs would start a bus that outlives them.
        return dict(os.environ, DISPLAY=self.display, DBUS_SESSION_BUS_ADDRESS="unix:path=/dev/null")

    def _run(self, *command):
        done = subprocess.run(command, env=self._environment(), stdin=subprocess.DEVNULL, timeout=20, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        return done.stdout

    def _map(self):
        with open(os.path.join(self._folder.name, "Xvfb_screen0"), "rb") as file:
            return mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)

    def picture(self):
        """What is on the screen now. The format is that of xwd(1): XWDFile.h, version 7, big-endian header."""
        header = struct.unpack_from(">25I", self._frame_buffer)
        header_size, width, height, bytes_per_line, colours = header[0], header[4], header[5], header[12], header[19]
        # Each entry of the colour map takes 12 bytes.
        pixels = numpy.frombuffer(self._frame_buffer, numpy.uint8, bytes_per_line * height, header_size + colours * 12)
        pixels = pixels.reshape(height, bytes_per_line // 4, 4)[:, :width]
        return Picture(pixels[:, :, 2::-1].copy())  # in memory blue, green, red, unused

    def brightness_at(self, points):
        """A function that looks at these points of the screen (x, y), each time anew: how bright each is, 0 to 255."""
        header = struct.unpack_from(">25I", self._frame_buffer)
        first = header[0] + header[19] * 12
        places = [first + int(y) * header[12] + int(x) * 4 + 1 for x, y in points]  # green stands for all colours
        buffer = self._frame_buffer
        return lambda: [buffer[place] for place in places]

    @property
    def process_id(self):
        """Of the X server."""
        return self._server.pid

    # The pointer and the keyboard. xdotool's own waiting (--sync) never ends where nothing changes.

    def point_at(self, x, y):
        self._run("xdotool", "mousemove", str(int(x)), str(int(y)))

    def click(self, x, y):
        self.point_at(x, y)
        self._run("xdotool", "mousedown", "1")
        time.sleep(0.03)
        self._run("xdotool", "mouseup", "1")

    def drag(self, start_at, end_at, steps=8):
        """Presses at one place, moves in steps as a hand does, and lets go at the other."""
        self.point_at(*start_at)
        self._run("xdotool", "mousedown", "1")
        for step in range(1, steps + 1):
            part = step / steps
            self.point_at(start_at[0] + (end_at[0] - start_at[0]) * part, start_at[1] + (end_at[1] - start_at[1]) * part)
            time.sleep(0.02)
        self._run("xdotool", "mouseup", "1")

    def key(self, *names):
        self._run("xdotool", "key", *names)

    def turn_wheel(self, x, y, notches):
        """Turns the wheel over a place: downwards, or upwards where `notches` is negative."""
        self.point_at(x, y)
        for _ in range(abs(notches)):
            self._run("xdotool", "click", "5" if notches > 0 else "4")

    # The window manager

    def resize(self, window, width, height):
        self._run("xdotool", "windowsize", str(window), str(width), str(height))

    def minimise(self, window):
        self._run("xdotool", "windowminimize", str(window))

    def bring_back(self, window):
        """Shows a minimised window again, over the others."""
        self._run("xdotool", "windowactivate", str(window))

    def close_window(self, window):
        """Asks a window to close itself, as the cross in its title bar does."""
        self.bring_back(window)
        until(lambda: self.active_window() == window, "the window to have the focus")
        self.key("alt+F4")

    def windows_of(self, process_id):
        """The visible windows of a process."""
        found = self._run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(process_id), "--name", ".")
        return [int(line) for line in found.split() if line.isdigit()]

    def windows_of_class(self, name):
        """The visible windows by which a desktop entry with this `StartupWMClass` is meant."""
        found = self._run("xdotool", "search", "--onlyvisible", "--class", f"^{name}$")
        return [int(line) for line in found.split() if line.isdigit()]

    def active_window(self):
        answer = self._run("xdotool", "getactivewindow").strip()
        return int(answer) if answer.isdigit() else None

    def cover(self):
        """Another program's window, over everything. It has the focus once this returns."""
        before = self.active_window()
        width, height = self.picture().pixels.shape[1::-1]
        return Cover(["ffplay", "-loglevel", "quiet", "-f", "lavfi", "-x", str(width), "-y", str(height), "-i",
                      "color=gray"], self._environment(), lambda: self.active_window() not in (None, before))


class Cover:
    """A window that is in the way."""

    def __init__(self, command, environment, is_there):
        self._process = start(command, env=dict(environment, SDL_AUDIODRIVER="dummy"), stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
        until(is_there, "a window over the others")

    def close(self):
        end(self._process)
