# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""The table of results, a row as soon as it is measured."""

import os

WIDTH = 46


def head(title):
    print(f"\n{title} (load of the machine {os.getloadavg()[0]:.1f})")
    print(f"{'':{WIDTH}} {'ours':>9} {'peer':>9} {'ratio':>6} {'aim':>9}", flush=True)


def row(what, ours, peer=None, aim=None, unit="s", most=True):
    """A figure that is absent (None) could not be had. `most`: the aim is not to be exceeded."""

    def shown(value):
        return f"{value:.2f} {unit}".rstrip() if value is not None else "-"

    ratio = f"{ours / peer:.2f}" if ours is not None and peer else "-"
    limit, verdict = "-", ""
    if aim is not None:
        limit = ("<= " if most else ">= ") + f"{aim:g} {unit}".rstrip()
        met = ours is not None and (ours <= aim if most else ours >= aim)
        verdict = "met" if met else "MISSED"
    print(f"{what:{WIDTH}} {shown(ours):>9} {shown(peer):>9} {ratio:>6} {limit:>9}  {verdict}",
          flush=True)
