"""Plays two films side by side and proves who hears what: demonstration.py --program PATH --out FOLDER

Leaves in the folder: screen.png, sound.wav (as the sound server played it) and console.log. Fails when film 1 is not
heard on the left, or film 2 not on the right, or anything of one of them on the other's side.
"""

import argparse
import os
import signal
import struct
import sys
import tempfile

import clips
from processes import until
from program import Film, Home, Program
from sound import RATE
from stage import Stage

SECONDS_RECORDED = 10
# Of the other film there must be no more than what the coding of a film's own sound leaves at that frequency.
LARGEST_FOREIGN_SHARE_IN_DECIBELS = -100


class DemonstrationClip:
    """A test picture with a clock, and one tone in both channels."""

    def __init__(self, title, tone):
        self.title = title
        self.tone = tone

    def write(self, path):
        picture = (f"testsrc2=size=1280x720:rate=30:duration=30,drawtext=fontfile={clips.FONT}:fontsize=80:box=1:"
                   f"boxborderw=20:x=(w-tw)/2:y=(h-th)/2:text='{self.title} %{{pts\\:hms}}'")
        clips.make(path, picture, f"aevalsrc=0.5*sin(2*PI*{self.tone}*t)|0.5*sin(2*PI*{self.tone}*t)"
                                  ":sample_rate=48000:duration=30", 30)


FILMS = (DemonstrationClip("Film A", 440), DemonstrationClip("Film B", 880))


def choose(film, clip):
    film.program.choose(film, clip.title)
    film.program.wait_for(film.playing)
    film.program.stage.sound.until(
        lambda sound: abs(sound.strongest(film.channel) - clip.tone) < 5, f"{clip.title} on the side of film {film.number}")


def wait_until_it_moves(film):
    first = film.view().picture.pixels
    until(lambda: (film.view().picture.pixels != first).any(), f"film {film.number} to show another picture")


def perform(program, out):
    """The main job. Answers the sound of both films and complaints about what went before."""
    stage = program.stage
    complaints = []
    films = Film(program, 1), Film(program, 2)
    program.wait_until_ready()
    choose(films[0], FILMS[0])
    if not stage.sound.take(1.0).is_silent(films[1].channel):
        complaints.append("the right channel is not exactly silent while film 1 plays alone")
    choose(films[1], FILMS[1])
    for film in films:
        wait_until_it_moves(film)
    stage.screen.picture().save(os.path.join(out, "screen.png"))
    return stage.sound.take(SECONDS_RECORDED), complaints


def judge(sound):
    """Says what is heard on each side, and answers what is wrong with it."""
    complaints = []
    for channel, side in enumerate(("left", "right")):
        own, foreign = FILMS[channel].tone, FILMS[1 - channel].tone
        heard = sound.strongest(channel)
        share = sound.share_in_decibels(channel, foreign, own)
        print(f"{side + ':':6} strongest at {heard:.1f} Hz, peak {sound.peak(channel):.4f}; "
              f"{foreign} Hz of the other film: {share:.0f} dB")
        if abs(heard - own) > 1:
            complaints.append(f"the {side} channel carries {heard:.1f} Hz instead of {own} Hz")
        if share > LARGEST_FOREIGN_SHARE_IN_DECIBELS:
            complaints.append(f"the other film is heard on the {side}")
    return complaints


def write_wave(path, sound):
    """32-bit floating-point samples: WAVE_FORMAT_IEEE_FLOAT, Multimedia Programming Interface 1.0."""
    samples = sound.samples.astype("<f4").tobytes()
    form = struct.pack("<HHIIHH", 3, 2, RATE, RATE * 8, 8, 32)
    with open(path, "wb") as file:
        file.write(b"RIFF" + struct.pack("<I", 20 + len(form) + len(samples)) + b"WAVE")
        file.write(b"fmt " + struct.pack("<I", len(form)) + form)
        file.write(b"data" + struct.pack("<I", len(samples)) + samples)


def show(program_path, out):
    """Everything on a stage and in a home of its own, which are gone afterwards."""
    with Stage(os.path.join(out, "servers.log")) as stage, tempfile.TemporaryDirectory(dir=out) as folder:
        home = Home(folder)
        for clip in FILMS:
            path = os.path.join(out, "clips", clip.title + ".mp4")
            clip.write(path)
            home.add(path, clip.title + ".mp4")
        program = Program(program_path, stage, home)
        try:
            sound, complaints = perform(program, out)
        finally:
            program.end()
            with open(os.path.join(out, "console.log"), "w", encoding="utf-8") as file:
                file.write("".join(line + "\n" for line in program.lines))
        write_wave(os.path.join(out, "sound.wav"), sound)
    return complaints + judge(sound)


def main():
    parser = argparse.ArgumentParser(description="Plays two films side by side and proves who hears what.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--out", required=True)
    options = parser.parse_args()

    # An end from outside takes the same way out as any other, so that nothing stays running.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    out = os.path.abspath(options.out)
    os.makedirs(out, exist_ok=True)
    complaints = show(os.path.abspath(options.program), out)
    for complaint in complaints:
        print(f"WRONG: {complaint}")
    print(f"The screen, the sound and the console are in {out}.")
    sys.exit(bool(complaints))


if __name__ == "__main__":
    main()
