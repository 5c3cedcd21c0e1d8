# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""The table of results, a row as soon as it is measured."""

import os

WIDTH = 46


def head(title):
    print(f"\n{title} (load of the machine {os.getloadavg()[0]:.1f})")
    print(f"{'':{WIDTH}} {'ours':>9} {'peer':>9} {'ratio':>6} {'aim':>9}", flush=True)


def row(what, ours, peer=None, aim=None, unit="s", of_ratio=False):
    """A figure that is absent (None) could not be had. The aim is the most that is wanted, or, of the
    ratio, the least."""

    def shown(value, with_unit=unit):
        return f"{value:.2f} {with_unit}".rstrip() if value is not None else "-"

    ratio = ours / peer if ours is not None and peer else None
    limit, verdict = "-", ""
    if aim is not None:
        judged = ratio if of_ratio else ours
        limit = f">= {aim:g}" if of_ratio else f"<= {aim:g} {unit}"
        met = judged is not None and (judged >= aim if of_ratio else judged <= aim)
        verdict = "met" if met else "MISSED"
    print(f"{what:{WIDTH}} {shown(ours):>9} {shown(peer):>9} {shown(ratio, ''):>6} {limit:>9}  "
          f"{verdict}", flush=True)
