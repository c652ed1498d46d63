#!/usr/bin/env python3
"""First frame of the program over a library, beside an empty gtkmm window: the ratio of their medians.

usage: start.py PROGRAM EMPTY_WINDOW STORE_FOLDER [ROUNDS]
       start.py --stores PROGRAM STORE_FOLDER OTHER_STORE_FOLDER [ROUNDS]
A STORE_FOLDER holds qnoCorvel.sqlite; it is used as it is. Needs a display (xvfb-run -a). With --stores the program
is started over two libraries by turns, and the ratio is the first one's to the other's.
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def first_frame(program, home):
    """Milliseconds from the start of the process to its first painted frame."""
    environment = dict(os.environ, CORVEL_FIRST_FRAME="1", XDG_DATA_HOME=home, XDG_CONFIG_HOME=home,
                       XDG_CACHE_HOME=home, GDK_BACKEND="x11",
                       # Without a graphics card the GL renderer would measure a shader compiler in software.
                       GSK_RENDERER="cairo")
    started = time.monotonic_ns()
    process = subprocess.Popen([program], stdout=subprocess.PIPE, env=environment, text=True)
    try:
        for line in process.stdout:
            if line.startswith("first-frame "):
                return (int(line.split()[1]) - started) / 1e6
        raise SystemExit(f"{program} ended without a frame")
    finally:
        process.terminate()
        process.wait()


def give(home, store):
    folder = os.path.join(home, "qno Corvel")
    os.makedirs(folder)
    shutil.copy(os.path.join(store, "qnoCorvel.sqlite"), folder)


def compare_stores(program, first, second, rounds):
    with tempfile.TemporaryDirectory() as home, tempfile.TemporaryDirectory() as other:
        give(home, first)
        give(other, second)
        pairs = [(first_frame(program, home), first_frame(program, other)) for _ in range(rounds + 1)][1:]
    medians = [statistics.median(side) for side in zip(*pairs)]
    print(f"first {medians[0]:.0f} ms, other {medians[1]:.0f} ms, ratio {medians[0] / medians[1]:.2f}")


def main():
    if sys.argv[1] == "--stores":
        return compare_stores(*sys.argv[2:5], int(sys.argv[5]) if len(sys.argv) > 5 else 15)
    program, empty, store = sys.argv[1:4]
    rounds = int(sys.argv[4]) if len(sys.argv) > 4 else 15
    with tempfile.TemporaryDirectory() as home:
        give(home, store)
        pairs = [(first_frame(empty, home), first_frame(program, home)) for _ in range(rounds + 1)][1:]
    medians = [statistics.median(side) for side in zip(*pairs)]
    print(f"empty window {medians[0]:.0f} ms, program {medians[1]:.0f} ms, ratio {medians[1] / medians[0]:.2f}")


if __name__ == "__main__":
    main()
