"""Films made for measuring: as hard to decode as what a camera makes, and numbered so that every picture of them can be
told on the screen.

The number of a picture is written across it as a row of blocks, black for 0 and white for 1: a black one, twelve of the
number in Gray code (neighbours differ in one block only, so that a look while a picture is being drawn reads one of the
two), one of their parity, a white one and a black one. The row lies where no player puts its controls.
"""

import os
import shutil
import subprocess
import tempfile

NUMBER_BITS = 12
BLOCKS = NUMBER_BITS + 4
ROW_TOP, ROW_HEIGHT = 2 / 9, 1 / 9  # as parts of the picture's height
SAMPLE_RATE = 48000
TONES = (440, 880)
LONGEST_ENCODING = 3600  # seconds


class Film:
    """A film that is still to be made: `numbers` many pictures from 0 on, which begin anew until `seconds` are full."""

    def __init__(self, name, size, rate, seconds, video_arguments, numbers_seconds=None, key_frame_every=None):
        self.name = name
        self.size = size
        self.rate = rate
        self.seconds = seconds
        self.video_arguments = video_arguments
        self.key_frame_every = key_frame_every  # pictures, where that is certain
        self._numbers_seconds = numbers_seconds or seconds

    @property
    def numbers(self):
        """How many different numbers there are; the one after the last is 0."""
        return min(self._numbers_seconds * self.rate, 1 << NUMBER_BITS)

    def pair(self, folder):
        """The paths of two files with the same pictures and each with a tone of its own. Made where they are missing."""
        os.makedirs(folder, exist_ok=True)
        base = f"{self.name}-{self.seconds}s"
        pictures = os.path.join(folder, f"{self.name}-{self._numbers_seconds}s-pictures.mp4")
        _once(pictures, lambda path: _encode(path, self._picture(), self._numbers_seconds, self.video_arguments))
        films = []
        for number, tone in enumerate(TONES, 1):
            films.append(os.path.join(folder, f"{base}-{number}.mp4"))
            _once(films[-1], lambda path, tone=tone: _add_tone(path, pictures, tone, self.seconds))
        return films

    def _picture(self):
        width, height = self.size
        block, top, row = width // BLOCKS, round(height * ROW_TOP), round(height * ROW_HEIGHT)
        parts = [f"testsrc2=size={width}x{height}:rate={self.rate}:duration={self._numbers_seconds}",
                 "noise=alls=12:allf=t", f"drawbox=x=0:y={top}:w={width}:h={row}:color=black:t=fill"]

        def white(index, when):
            parts.append(f"drawbox=x={index * block}:y={top}:w={block}:h={row}:color=white:t=fill{when}")

        for bit in range(NUMBER_BITS):
            white(1 + bit, f":enable='mod(floor((n+{1 << bit})/{2 << bit}),2)'")
        white(NUMBER_BITS + 1, ":enable='mod(n,2)'")
        white(NUMBER_BITS + 2, "")
        return ",".join(parts)


def _once(path, write):
    """Has the file written unless it is there; it appears all at once."""
    if os.path.exists(path):
        return
    print(f"Making {os.path.basename(path)}.", flush=True)
    with tempfile.TemporaryDirectory(dir=os.path.dirname(path)) as folder:
        unfinished = os.path.join(folder, "film.mp4")
        write(unfinished)
        os.chmod(unfinished, 0o644)
        os.rename(unfinished, path)


def _ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", *arguments], check=True, timeout=LONGEST_ENCODING,
                   stdin=subprocess.DEVNULL)


def _encode(path, picture, seconds, video_arguments):
    _ffmpeg("-f", "lavfi", "-i", picture, "-t", str(seconds), "-pix_fmt", "yuv420p", *video_arguments, path)


def _add_tone(path, pictures, tone, seconds):
    """The pictures and one tone that never breaks off."""
    sound = f"sine=frequency={tone}:sample_rate={SAMPLE_RATE}:duration={seconds},volume=4,pan=stereo|c0=c0|c1=c0"
    _add_sound(path, pictures, sound, seconds)


def _add_sound(path, pictures, sound, seconds):
    """The pictures over and over, as they are, and this sound."""
    _ffmpeg("-stream_loop", "-1", "-i", pictures, "-f", "lavfi", "-i", sound, "-t", str(seconds), "-map", "0:v",
            "-map", "1:a", "-c:v", "copy", "-c:a", "aac", "-b:a", "192k", "-movflags", "+faststart", path)


def number_in(levels):
    """The number that the brightnesses (0 to 255) in the middles of the blocks spell, or None where they spell none."""
    if any(80 < level < 176 for level in levels):
        return None
    bits = [level > 128 for level in levels]
    if bits[0] or not bits[-2] or bits[-1] or bits[NUMBER_BITS + 1] != (sum(bits[1 : NUMBER_BITS + 1]) % 2 == 1):
        return None
    number = 0
    for bit in reversed(bits[1 : NUMBER_BITS + 1]):
        number = number << 1 | (bit ^ (number & 1))
    return number


def _camera(bits_per_second, key_frame_every):
    """H.264 as a camera or a shop of films makes it; a key frame every so many pictures."""
    return ["-c:v", "libx264", "-preset", "veryfast", "-b:v", f"{bits_per_second}M", "-maxrate", f"{bits_per_second}M",
            "-bufsize", f"{2 * bits_per_second}M", "-g", str(key_frame_every), "-keyint_min", str(key_frame_every),
            "-sc_threshold", "0"]


def full_hd(seconds):
    return Film("1080p30", (1920, 1080), 30, seconds, _camera(6, 30), key_frame_every=30)


def full_hd_60(seconds):
    return Film("1080p60", (1920, 1080), 60, seconds, _camera(9, 60))


def rare_key_frames(seconds):
    """A key frame every eight seconds only."""
    return Film("1080p30-rare-keys", (1920, 1080), 30, seconds, _camera(6, 240), key_frame_every=240)


def ultra_hd(seconds, numbers_seconds):
    """More than two processor cores decode twice."""
    hevc = ["-c:v", "libx265", "-preset", "ultrafast", "-b:v", "24M", "-x265-params", "log-level=error:keyint=60"]
    return Film("4k30-hevc", (3840, 2160), 30, seconds, hevc, numbers_seconds)


FLASH_PERIOD = 1  # seconds
FLASHES_AT = (0.3, 0.7)  # seconds after each full one, in the first and in the second film
FLASH_SECONDS, CLICK_SECONDS = 0.1, 0.05
FLASHING_RATE, FLASHING_SIZE = 30, (1280, 720)


def flashing_pair(folder, seconds):
    """The paths of two films whose row flashes white once a second while a click begins, each at other instants. Flash
    and click have the same time in the file."""
    os.makedirs(folder, exist_ok=True)
    films = []
    for number, moment in enumerate(FLASHES_AT, 1):
        pictures = os.path.join(folder, f"flashing-pictures-{number}.mp4")
        _once(pictures, lambda path, moment=moment: _encode(path, _flashes(moment), 8, _camera(3, FLASHING_RATE)))
        films.append(os.path.join(folder, f"flashing-{seconds}s-{number}.mp4"))
        _once(films[-1], lambda path, pictures=pictures, moment=moment: _add_sound(path, pictures, _clicks(moment), seconds))
    return films


def _recurring(counter, per_second, moment, lasting):
    """An expression of ffmpeg that is true for `lasting` seconds from `moment` on, and so in each period."""
    shifted = f"{counter}+{round((FLASH_PERIOD - moment) * per_second)}"
    return f"lt(mod({shifted},{FLASH_PERIOD * per_second}),{round(lasting * per_second)})"


def _flashes(moment):
    width, height = FLASHING_SIZE
    row = f"drawbox=x=0:y={round(height * ROW_TOP)}:w={width}:h={round(height * ROW_HEIGHT)}:t=fill"
    flash = _recurring("n", FLASHING_RATE, moment, FLASH_SECONDS)
    return f"testsrc2=size={width}x{height}:rate={FLASHING_RATE},{row}:color=black,{row}:color=white:enable='{flash}'"


def _clicks(moment):
    # A tone that begins at its crest: the first of it that is heard is as loud as all of it.
    click = f"if({_recurring('n', SAMPLE_RATE, moment, CLICK_SECONDS)},0.8*cos(2*PI*1000*n/{SAMPLE_RATE}),0)"
    return f"aevalsrc=exprs='{click}|{click}':sample_rate={SAMPLE_RATE}"


def one_of_many(folder):
    """The path of a small film of 1080p30, of which a folder may hold thousands."""
    path = os.path.join(folder, "1080p30-small.mp4")
    _once(path, lambda unfinished: _encode(unfinished, "testsrc2=size=1920x1080:rate=30", 3, ["-preset", "veryfast"]))
    return path


def link_or_copy(path, place):
    """The same file at another place, readable wherever that is."""
    try:
        os.link(path, place)
    except OSError:
        shutil.copyfile(path, place)
