# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""How soon a film plays, from its start and from random places: the program's engine beside mpv on
the same wire. A start counts from the command to the first picture, which both engines tell by the
same event; the film must then go on playing. So does a seek, to exactly the second asked for."""

import random
import statistics
import subprocess

import film
import peer
import table
from service import HOSTS, service
from wire import here, wire

ROUND_TRIP = 150  # milliseconds
LINE = 100_000  # kbit/s
SEEKS = 20
PLACES = random.Random(14).sample(range(60, film.SECONDS - 60), SEEKS)

# Bytes a second of each connection, and the most seconds wanted: start, median and worst seek.
FAST = (2_000_000, {"start": 2.6, "seek": 0.4, "worst": 0.7})
SLOW = (200_000, {"start": 8.0, "seek": 2.0, "worst": None})


class Ours:
    def __init__(self, program, served, failures):
        self.program, self.served, self.failures = program, served, failures

    def run(self, name, *options, seeks=()):
        """Seconds until the start, and of each seek; absent (None) where it failed."""
        places = [word for place in seeks for word in ("--seek", place)]
        command = here(self.program, "--trust", self.served.ca, *options, *places,
                       self.served.film(name))
        done = subprocess.run(command, capture_output=True, text=True)
        told = [line.split(" ", 1) for line in done.stdout.splitlines()]
        values = {"start": [], "seek": []}
        for what, value in told:
            if what in values:
                values[what].append(float(value) / 1000)
        if done.returncode != 0 or len(values["start"]) != 1 or len(values["seek"]) != len(seeks):
            self.failures.append(f"{name} {options}: {done.stdout} {done.stderr}")
            return None, []
        return values["start"][0], values["seek"]


def median(values):
    known = [value for value in values if value is not None]
    return statistics.median(known) if known and len(known) == len(values) else None


def measure_speed(program, work, home, rounds, rate, aims, failures):
    table.head(f"Films at {rate // 1000} KB/s a connection, round trip {ROUND_TRIP} ms")
    with service(work, home, rate) as served:
        ours = Ours(program, served, failures)
        for name in film.NAMES:
            pairs = [(ours.run(name)[0], peer.play(served.ca, work, served.film(name))[0] / 1000)
                     for _ in range(rounds)]
            table.row(f"start, index {name.split('.')[0]}, nothing open",
                      median([our for our, _ in pairs]), median([its for _, its in pairs]),
                      aims["start"])
        _, our = ours.run("first.mp4", seeks=PLACES)
        _, its = peer.play(served.ca, work, served.film("first.mp4"), PLACES)
        its = [value / 1000 for value in its]
        table.row(f"far seek, median of {SEEKS}", median(our), median(its), aims["seek"])
        table.row(f"far seek, worst of {SEEKS}", max(our, default=None), max(its), aims["worst"])


def measure(programs, work, rounds, failures, line):
    home = film.make()
    with wire(ROUND_TRIP, LINE, 0, HOSTS):
        measure_speed(programs / "bench_far", work, home, rounds, *line, failures)


def measure_fast(*arguments):
    measure(*arguments, FAST)


def measure_slow(*arguments):
    measure(*arguments, SLOW)
