# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""Downloads on a line that loses packets, where one connection cannot fill it: the program's with one
connection and with two, beside the curl program."""

import statistics
import subprocess
import time

import table
from service import HOSTS, service
from wire import here, wire

ROUND_TRIP = 100  # milliseconds
LINE = 100_000  # kbit/s
LOSS = 1000  # packets in a million
BYTES = 72 * 1024 * 1024  # a second connection is worth it from 64 MiB on
LOADERS = {"curl": None, "one": 1, "two": 2}


def load(loader, program, served, folder, failures):
    """MB/s from the start of the process to its end; absent (None) when it failed."""
    target = folder / ("ours" if LOADERS[loader] else "curl")
    command = (here(program, served.film("whole"), served.ca, folder, LOADERS[loader])
               if LOADERS[loader] else
               here("curl", "-sfL", "--cacert", served.ca, "-o", target, served.film("whole")))
    begun = time.monotonic()
    done = subprocess.run(command, capture_output=True, text=True)
    seconds = time.monotonic() - begun
    came = target.stat().st_size if target.exists() else 0
    target.unlink(missing_ok=True)
    if done.returncode != 0 or came != BYTES:
        failures.append(f"download by {loader}: {came} bytes {done.stdout} {done.stderr}")
        return None
    return BYTES / seconds / 1e6


def measure(programs, work, rounds, failures):
    served_files, folder = work / "served", work / "saved"
    for each in (served_files, folder):
        each.mkdir(exist_ok=True)
    with open(served_files / "whole", "wb") as file:
        file.truncate(BYTES)
    speeds = {loader: [] for loader in LOADERS}
    with wire(ROUND_TRIP, LINE, LOSS, HOSTS), service(work, served_files, 0) as served:
        table.head(f"Downloads, round trip {ROUND_TRIP} ms, {LINE // 1000} Mbit/s, "
                   f"{LOSS / 10000:g} % lost")
        order = list(LOADERS)
        for turn in range(rounds):
            for loader in order[turn % 3:] + order[:turn % 3]:
                speeds[loader].append(load(loader, programs / "bench_far_transfer", served, folder,
                                           failures))
    found = {loader: statistics.median(values) if None not in values else None
             for loader, values in speeds.items()}
    for loader, what, aim in (("one", "one connection", 0.97), ("two", "two connections", 1.6)):
        table.row(f"72 MiB, {what}", found[loader], found["curl"], aim, "MB/s", of_ratio=True)
