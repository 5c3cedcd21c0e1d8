# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""A film of 90 minutes with the weight of a real one: 1.2 Mbit/s of picture, a key frame every 10 s,
B-frames, an index of 3.7 MB. Kept outside the tree, in two forms: index first and index last."""

import hashlib
import os
import pathlib
import struct
import subprocess

SECONDS = 5400
NAMES = ("first.mp4", "last.mp4")  # where the index lies

# A tiny picture is encoded fast; the encoder fills up what it lacks to the rate.
RECIPE = """-f lavfi -i testsrc2=s=128x72:r=24 -f lavfi -i sine=f=220:r=48000 -t {seconds}
    -c:v libx264 -preset ultrafast -bf 3 -b_strategy 0 -g 240 -keyint_min 240 -sc_threshold 0
    -b:v 1200k -minrate 1200k -maxrate 1200k -bufsize 1200k -x264-params nal-hrd=cbr:threads=1
    -pix_fmt yuv420p -c:a aac -b:a 96k -ac 2 -threads 1""".format(seconds=SECONDS).split()
EXACT = "-fflags +bitexact -flags:v +bitexact -flags:a +bitexact -f mp4".split()
FFMPEG = "nice ffmpeg -nostdin -y -loglevel error".split()


def folder():
    chosen = os.environ.get("TAVELO_FAR_FILMS")
    cache = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return pathlib.Path(chosen or os.path.join(cache, "tavelo-far"))


def boxes(path):
    """The file's outermost boxes: name, place and size of each."""
    found, place, end = [], 0, path.stat().st_size
    with open(path, "rb") as file:
        while place < end:
            file.seek(place)
            size, name = struct.unpack(">I4s", file.read(8))
            if size == 1:
                (size,) = struct.unpack(">Q", file.read(8))
            found.append((name.decode("latin-1"), place, size))
            place += size
    return found


def check(home):
    """The weight that the figures are made for."""
    for name in NAMES:
        found = boxes(home / name)
        index = next(size for box, _, size in found if box == "moov")
        order = [box for box, _, _ in found if box in ("moov", "mdat")]
        if not 3.6e6 < index < 3.9e6 or (order[0] == "moov") != (name == "first.mp4"):
            raise SystemExit(f"{name} is not the film that is wanted: {found}")


def make():
    """The folder with both forms; made in about two minutes when they are not there."""
    recipe = hashlib.sha256(" ".join(RECIPE + EXACT).encode()).hexdigest()[:12]
    home = folder() / recipe
    if not all((home / name).exists() for name in NAMES):
        print("Encoding a film of 90 minutes (once)", flush=True)
        home.mkdir(parents=True, exist_ok=True)
        part = home / "part"
        last, first = home / "last.mp4", home / "first.mp4"
        subprocess.run([*FFMPEG, *RECIPE, *EXACT, part], check=True)
        part.rename(last)
        subprocess.run([*FFMPEG, "-i", last, "-c", "copy", "-movflags", "+faststart", *EXACT, part],
                       check=True)
        part.rename(first)
    check(home)
    return home
