"""Films made for the tests. Each tells by its picture and by its sound which film it is and how far it has played:

- the border has a colour of the film's own;
- the middle changes its colour every five seconds;
- a white mark runs from left to right along a black track at twenty pixels a second;
- each channel carries a tone of the film's own, 100 Hz higher every five seconds;
- and the time is written on it for people.
"""

import os
import subprocess
import tempfile

import numpy

WIDTH, HEIGHT, BORDER = 640, 360, 20
TRACK_TOP, TRACK_HEIGHT = 60, 24
PIXELS_PER_SECOND = 20
SEGMENT_SECONDS = 5
SEGMENT_COLOURS = {"red": (255, 0, 0), "lime": (0, 255, 0), "blue": (0, 0, 255),
                   "yellow": (255, 255, 0), "magenta": (255, 0, 255), "cyan": (0, 255, 255)}
BORDER_COLOURS = {"white": (255, 255, 255), "orange": (255, 165, 0), "green": (0, 128, 0)}
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"


class Clip:
    """One film: what it shows and sounds like, and the file it is kept in."""

    def __init__(self, title, border, first_tone, seconds):
        self.title = title
        self.border = border
        self.first_tone = first_tone
        self.seconds = seconds

    def tone_at(self, time):
        return self.first_tone + 100 * int(time // SEGMENT_SECONDS)

    def write(self, path, *extra):
        """Makes the file; `extra` are more arguments for ffmpeg. The file appears all at once."""
        make(path, self._picture(), self._tones(), self.seconds, *extra)

    def _picture(self):
        parts = [f"color=black:size={WIDTH}x{HEIGHT}:rate=30:duration={self.seconds}"]
        for number, colour in enumerate(SEGMENT_COLOURS):
            begin = number * SEGMENT_SECONDS
            parts.append(f"drawbox=color={colour}:t=fill:enable='gte(t,{begin})*lt(t,{begin + SEGMENT_SECONDS})'")
        parts.append(f"drawbox=color={self.border}:t={BORDER}")
        parts.append(f"drawbox=x={BORDER}:w={WIDTH - 2 * BORDER}:y={TRACK_TOP}:h={TRACK_HEIGHT}:color=black:t=fill")
        parts.append(f"drawtext=fontfile={FONT}:text='%{{pts\\:hms}}':fontsize=40:fontcolor=black:x=(w-tw)/2:y=120")
        mark = f"color=white:size=8x{TRACK_HEIGHT}:rate=30:duration={self.seconds}[mark]"
        overlay = f"[film][mark]overlay=x={BORDER}-4+{PIXELS_PER_SECOND}*t:y={TRACK_TOP}"
        return ",".join(parts) + "[film];" + mark + ";" + overlay

    def _tones(self):
        return f"aevalsrc=0.5*sin(2*PI*t*({self.first_tone}+100*floor(t/{SEGMENT_SECONDS})))" \
               f":sample_rate=48000:duration={self.seconds},pan=stereo|c0=c0|c1=c0"


def make(path, picture, sound, seconds, *extra):
    """An MP4 of H.264 and AAC from two filter graphs, if it is not there yet as they describe it."""
    arguments = (["-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", sound]
                 + ["-t", str(seconds), "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "30"]
                 + ["-c:a", "aac", "-b:a", "192k", *extra, "-movflags", "+faststart"])
    recipe = path + ".recipe"
    if os.path.exists(path) and _contents(recipe) == "\n".join(arguments):
        return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with tempfile.TemporaryDirectory(dir=os.path.dirname(path)) as folder:
        unfinished = os.path.join(folder, "clip.mp4")
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", *arguments, unfinished], check=True, timeout=300)
        os.rename(unfinished, path)
    with open(recipe, "w", encoding="utf-8") as file:
        file.write("\n".join(arguments))


def _contents(path):
    try:
        with open(path, encoding="utf-8") as file:
            return file.read()
    except FileNotFoundError:
        return None


# What encrypts a film the way shops do: common encryption of every sample, with a key that nobody gives the program.
ENCRYPTED = ("-encryption_scheme", "cenc-aes-ctr", "-encryption_key", "76a6c65c5ea762046bd749a2e632ccbb",
             "-encryption_kid", "a7e61c373e219033c21091fa607bf3b8")


class View:
    """What a film view shows: a picture of the screen, cut to the view, read as one of the clips."""

    def __init__(self, picture):
        self.picture = picture
        height, width, _ = picture.pixels.shape
        self._scale = min(width / WIDTH, height / HEIGHT)
        self._left = (width - WIDTH * self._scale) / 2
        self._top = (height - HEIGHT * self._scale) / 2

    def _colour(self, x, y):
        """The colour at a place given in the film's own pixels."""
        column, row = int(self._left + x * self._scale), int(self._top + y * self._scale)
        return self.picture.pixels[row, column].astype(int)

    @staticmethod
    def _nearest(colour, named):
        distances = {name: abs(colour - value).max() for name, value in named.items()}
        name = min(distances, key=distances.get)
        return name if distances[name] < 70 else None

    @property
    def border(self):
        """The colour of the border, which is the same on both sides, or None when no clip is shown."""
        sides = {self._nearest(self._colour(x, HEIGHT * 0.6), BORDER_COLOURS) for x in (BORDER / 2, WIDTH - BORDER / 2)}
        return sides.pop() if len(sides) == 1 else None

    @property
    def segment(self):
        """Which five seconds are shown, from 0, or None."""
        colour = self._nearest(self._colour(WIDTH / 2, HEIGHT * 0.62), SEGMENT_COLOURS)
        return list(SEGMENT_COLOURS).index(colour) if colour else None

    @property
    def time(self):
        """How far the film shown has played, in seconds, or None."""
        row = int(self._top + (TRACK_TOP + TRACK_HEIGHT / 2) * self._scale)
        first = int(self._left + (BORDER + 1) * self._scale) + 1
        last = int(self._left + (WIDTH - BORDER - 1) * self._scale)
        white = numpy.flatnonzero(self.picture.pixels[row, first:last].min(axis=1) > 128)
        if self.border is None or len(white) == 0 or white[-1] - white[0] > 16 * self._scale:
            return None
        middle = (first + white.mean() + 0.5 - self._left) / self._scale
        return (middle - BORDER) / PIXELS_PER_SECOND

    @property
    def is_black(self):
        """Whether nothing of any clip is to be seen where the films' middles are."""
        return self._nearest(self._colour(WIDTH / 2, HEIGHT * 0.62), SEGMENT_COLOURS) is None and self.border is None

    def __str__(self):
        return f"border {self.border}, segment {self.segment}, time {self.time}"
