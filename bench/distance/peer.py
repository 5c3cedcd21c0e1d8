# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""mpv, the peer: started idle, then told over its own socket what to play and where to go."""

import json
import socket
import subprocess
import time

from wire import end, here

OPTIONS = ("--no-config --no-terminal --idle=yes --vo=null --ao=null --cache=yes --ytdl=no "
           "--tls-verify=yes").split()
LONGEST_WAIT = 120  # seconds
WATCHED = 3  # seconds between two seeks


class Failed(Exception):
    pass


class Peer:
    def __init__(self, ca, work):
        path = str(work / "mpv.socket")
        self.process = subprocess.Popen(
            here("mpv", *OPTIONS, f"--tls-ca-file={ca}", f"--input-ipc-server={path}"),
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.socket = socket.socket(socket.AF_UNIX)
        for _ in range(500):
            try:
                self.socket.connect(path)
                break
            except OSError:
                time.sleep(0.02)
        else:
            end(self.process)
            raise Failed("mpv does not start")
        self.socket.settimeout(LONGEST_WAIT)
        self.lines = self.socket.makefile("r")
        time.sleep(0.3)

    def run(self, *command):
        """Milliseconds from the command to the first picture of where it led."""
        begun = time.monotonic()
        self.socket.sendall(json.dumps({"command": command}).encode() + b"\n")
        taken = False
        for line in self.lines:
            told = json.loads(line)
            if told.get("error", "success") != "success" or told.get("reason") == "error":
                raise Failed(f"mpv: {told}")
            taken = taken or "error" in told  # the answer to the command
            if taken and told.get("event") == "playback-restart":
                return (time.monotonic() - begun) * 1000
        raise Failed("mpv has ended")

    def close(self):
        self.socket.close()
        end(self.process)


def play(ca, work, url, seeks=()):
    """Milliseconds until the film plays from its start, and from each of the places in `seeks`."""
    peer = Peer(ca, work)
    try:
        start = peer.run("loadfile", url)
        found = []
        for place in seeks:
            time.sleep(WATCHED)
            found.append(peer.run("seek", place, "absolute+exact"))
        return start, found
    finally:
        peer.close()
