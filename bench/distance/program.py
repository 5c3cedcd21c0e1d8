# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""The whole program with nothing kept, on the demo's service behind HTTP/2: from its start to the last
visible poster, and from Play to the arrival at the server of the first request for a byte of the film
that the program does not have and has not asked for."""

import contextlib
import os
import statistics
import subprocess
import time

import table
from service import HOST, HOSTS, NODES, requests, service
from wire import end, here, there, wire

ROUND_TRIP = 100  # milliseconds
LINE = 100_000  # kbit/s
TITLE = "The Lantern Makers"
SCREEN = "1600x1000x24"


@contextlib.contextmanager
def display():
    """A display of its own; its name."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", SCREEN],
                              pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        with os.fdopen(read) as told:
            yield ":" + told.readline().strip()
    finally:
        end(server)


@contextlib.contextmanager
def backend(program):
    """The demo's services on `far`; their address."""
    process = subprocess.Popen(there(program), stdout=subprocess.PIPE, text=True)
    try:
        yield process.stdout.readline().strip()
    finally:
        end(process)


def first_new_request(log, pressed):
    """When the first request after `pressed` (seconds) came that asks for a byte which none before
    it had asked for; absent (None) when there is none."""
    asked = []
    for request in sorted(requests(log), key=lambda each: each.came):
        if request.host not in NODES or request.first is None:
            continue
        if request.came >= pressed and not any(a <= request.first < b for a, b in asked):
            return request.came
        asked.append((request.first, request.first + request.sent))
    return None


def run(program, served, screen, failures):
    """Seconds to the last visible poster and from Play to the request; absent (None): failed."""
    served.log.write_text("")
    environment = dict(os.environ, DISPLAY=screen, QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8")
    begun = time.time()
    done = subprocess.run(here(program, f"https://{HOST}", served.ca, TITLE), env=environment,
                          capture_output=True, text=True)
    told = dict(line.split(" ", 1) for line in done.stdout.splitlines() if " " in line)
    if "play" not in told:
        failures.append(f"the program: {done.stdout} {done.stderr}")
        return None, None
    pressed = float(told["play"]) / 1000
    came = first_new_request(served.log, pressed)
    if came is None:
        failures.append("the program: Play asked for nothing new")
    return float(told["posters"]) / 1000 - begun, came and came - pressed


def measure(programs, work, rounds, failures):
    with wire(ROUND_TRIP, LINE, 0, HOSTS), display() as screen:
        with backend(programs / "bench_far_service") as address:
            with service(work, work, 0, address) as served:
                table.head(f"The whole program, round trip {ROUND_TRIP} ms")
                runs = [run(programs / "bench_far_program", served, screen, failures)
                        for _ in range(rounds)]
    for what, column, aim in (("start to the last visible poster", 0, 1.0),
                              ("Play to the first new request's arrival", 1, 0.11)):
        values = [values[column] for values in runs]
        whole = None not in values
        table.row(what, statistics.median(values) if whole else None, None, aim)
