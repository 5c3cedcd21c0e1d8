# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""The wire between `near` and `far`: tools/far."""

import contextlib
import fcntl
import os
import pathlib
import subprocess

FAR = str(pathlib.Path(__file__).parents[2] / "tools" / "far")
ADDRESS = "10.77.0.2"
os.environ["TAVELO_WIRE"] = "bench"  # whoever tries something by hand has another


@contextlib.contextmanager
def wire(round_trip, kbit, loss=0, hosts=()):
    """Up for as long as the block runs; the host names mean `far`. There is one on a machine: whoever
    comes second waits."""
    lock = open("/run/lock/tavelo-far", "w")
    fcntl.flock(lock, fcntl.LOCK_EX)
    subprocess.run([FAR, "down"], check=True)
    try:
        subprocess.run([FAR, "up", str(round_trip), str(kbit), str(loss)], check=True)
        subprocess.run([FAR, "name", *hosts], check=True)
        yield
    finally:
        subprocess.run([FAR, "down"], check=True)


# Whatever else the machine does shall show in the figures as little as possible.
FIRST = ("nice", "-n", "-15")


def here(*command):
    """A command line that runs on the user's machine."""
    return [*FIRST, FAR, "here", *map(str, command)]


def there(*command):
    """A command line that runs on the server's machine."""
    return [*FIRST, FAR, "there", *map(str, command)]


def end(process):
    process.terminate()
    process.wait(timeout=20)
