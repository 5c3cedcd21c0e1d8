# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""How soon a film plays, from its start and from random places: the program's engine beside mpv on
the same wire. A start counts from the command to the first picture, which both engines tell by the
same event; the film must then go on playing. So does a seek, to exactly the second asked for."""

import os
import pathlib
import random
import statistics
import subprocess
import tempfile

import film
import peer
import table
from service import HOSTS, service
from wire import here, wire

ROUND_TRIP = 150  # milliseconds
LINE = 100_000  # kbit/s
SEEKS = 20
PLACES = random.Random(14).sample(range(60, film.SECONDS - 60), SEEKS)

# Bytes a second of each connection, and the most seconds wanted: of a start by what the program has
# done before, of the median and of the worst seek.
FAST = (2_000_000, {"nothing open": 2.6, "service connected": 2.3, "sheet read for 3 s": 0.4,
                    "opened before": 0.5, "seek": 0.4, "worst": 0.7})
SLOW = (200_000, {"nothing open": 8.0, "sheet read for 6 s": 2.2, "opened before": 0.5,
                  "seek": 2.0, "worst": None})
BEFORE = {"nothing open": (), "service connected": ("--connected",),
          "sheet read for 3 s": ("--sheet", 3), "sheet read for 6 s": ("--sheet", 6)}
TELLING = dict(os.environ, QT_LOGGING_RULES="tavelo.*.info=true",
               QT_MESSAGE_PATTERN="%{time h:mm:ss.zzz} %{category} %{message}")


class Ours:
    def __init__(self, program, served, failures):
        self.program, self.served, self.failures = program, served, failures

    def run(self, name, *options, seeks=()):
        """Seconds until the start, and of each seek, and the film's second at the end; absent (None)
        where it failed."""
        places = [word for place in seeks for word in ("--seek", place)]
        command = here(self.program, "--trust", self.served.ca, *options, *places,
                       self.served.film(name))
        with open(self.served.log.with_name("ours.log"), "a") as log:
            print(f"--- {name} {options}", file=log, flush=True)
            done = subprocess.run(command, stdout=subprocess.PIPE, stderr=log, text=True, env=TELLING)
        told = {"start": [], "seek": [], "at": []}
        for line in done.stdout.splitlines():
            what, value = line.split(" ", 1)
            if what in told:
                told[what].append(float(value))
        if done.returncode != 0 or not told["at"]:
            self.failures.append(f"{name} {options}: {done.stdout}")
            return None, [], None
        return told["start"][0] / 1000, [value / 1000 for value in told["seek"]], told["at"][0]

    def start(self, name, before):
        if before in BEFORE:
            return self.run(name, *BEFORE[before])[0]
        with tempfile.TemporaryDirectory(dir=pathlib.Path(self.served.log).parent) as memory:
            place = self.run(name, "--memory", memory, seeks=[film.SECONDS // 2])[2]
            return place and self.run(name, "--memory", memory, "--at", place)[0]


def theirs(served, work, name, seeks, failures):
    """The same of the peer, without the film's second."""
    try:
        start, found = peer.play(served.ca, work, served.film(name), seeks)
        return start / 1000, [value / 1000 for value in found]
    except (peer.Failed, OSError) as failure:
        failures.append(f"{name}: {failure}")
        return None, []


def median(values):
    known = [value for value in values if value is not None]
    return statistics.median(known) if known and len(known) == len(values) else None


def measure_speed(program, work, home, rounds, rate, aims, failures):
    table.head(f"Films at {rate // 1000} KB/s a connection, round trip {ROUND_TRIP} ms")
    with service(work, home, rate) as served:
        ours = Ours(program, served, failures)
        for name in film.NAMES:
            its = median([theirs(served, work, name, (), failures)[0] for _ in range(rounds)])
            for before in aims:
                if before not in ("seek", "worst"):
                    table.row(f"start, index {name.split('.')[0]}, {before}",
                              median([ours.start(name, before) for _ in range(rounds)]), its,
                              aims[before])
        _, our, _ = ours.run("first.mp4", seeks=PLACES)
        _, its = theirs(served, work, "first.mp4", PLACES, failures)
        table.row(f"far seek, median of {SEEKS}", median(our), median(its), aims["seek"])
        table.row(f"far seek, worst of {SEEKS}", max(our, default=None),
                  max(its, default=None), aims["worst"])


def measure(programs, work, rounds, failures, line):
    home = film.make()
    with wire(ROUND_TRIP, LINE, 0, HOSTS):
        measure_speed(programs / "bench_far", work, home, rounds, *line, failures)


def measure_fast(*arguments):
    measure(*arguments, FAST)


def measure_slow(*arguments):
    measure(*arguments, SLOW)
