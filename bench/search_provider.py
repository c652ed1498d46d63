#!/usr/bin/python3
"""The desktop's search over a library, asked over the session bus as the shell does.

usage: search_provider.py PROGRAM STORE_FOLDER [ROUNDS]
A STORE_FOLDER holds qnoCorvel.sqlite; a copy is used. Needs a display and a bus of its own:
xvfb-run -a dbus-run-session -- bench/search_provider.py ...
For each question the time until its answer and the main thread's processor time for it; and the longest turn of the
main loop meanwhile, from one waiting for events to the next: by the clock, and in processor time of the main thread,
which other programs do not lengthen. Turns are told by libLoopTurns.so, which the build puts into its bench folder.
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from gi.repository import Gio, GLib

NAME = "com.qno.corvel"
PROVIDER = "/com/qno/corvel/SearchProvider"
INTERFACE = "org.gnome.Shell.SearchProvider2"
QUESTIONS = [["a"], ["notatka"], ["łódź"], ["góra", "kawa"], ["qzxqzx"]]


def connect():
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)


def call(bus, path, interface, method, arguments=None):
    return bus.call_sync(NAME, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 60_000, None).unpack()


def processor_time(pid):
    """Milliseconds that the main thread has had so far."""
    with open(f"/proc/{pid}/task/{pid}/schedstat", encoding="ascii") as stat:
        return int(stat.read().split()[0]) / 1e6


class Turns:
    """What libLoopTurns.so wrote down so far."""

    def __init__(self, path):
        self.path = path

    def between(self, began, ended):
        """Pairs of processor time and time by the clock, in milliseconds, of the turns in that time."""
        with open(self.path, encoding="ascii") as lines:
            turns = [tuple(map(float, line.split())) for line in lines]
        return [(used, length) for start, length, used in turns if began <= start + length and start <= ended]

    def longest(self, began, ended):
        return max(self.between(began, ended), default=(0, 0))


def now():
    return time.monotonic() * 1e3


def measured(pid, work):
    began, used = time.monotonic(), processor_time(pid)
    answer = work()
    return answer, (time.monotonic() - began) * 1e3, processor_time(pid) - used


def ask(bus, pid, method, arguments, rounds):
    runs = [measured(pid, lambda: call(bus, PROVIDER, INTERFACE, method, arguments)) for _ in range(rounds)]
    return runs[0][0][0], statistics.median(run[1] for run in runs), statistics.median(run[2] for run in runs)


def measure(bus, pid, turns, rounds, state):
    for terms in QUESTIONS:
        began = now()
        ids, clock, used = ask(bus, pid, "GetInitialResultSet", GLib.Variant("(as)", (terms,)), rounds)
        _, sub_clock, sub_used = ask(
            bus, pid, "GetSubsearchResultSet", GLib.Variant("(asas)", (ids, terms + ["e"])), rounds)
        _, meta_clock, meta_used = ask(bus, pid, "GetResultMetas", GLib.Variant("(as)", (ids,)), rounds)
        held_used, held_clock = turns.longest(began, now())
        print(f"{state:7} {' '.join(terms):10} hits {len(ids):2}  initial {clock:7.1f} ms ({used:6.1f})  "
              f"subsearch {sub_clock:7.1f} ms ({sub_used:6.1f})  metas {meta_clock:6.1f} ms ({meta_used:5.1f})  "
              f"longest turn {held_clock:6.1f} ms ({held_used:4.1f})", flush=True)


def main():
    program, store = map(os.path.abspath, sys.argv[1:3])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    with tempfile.TemporaryDirectory() as home:
        os.makedirs(os.path.join(home, "qno Corvel"))
        shutil.copy(os.path.join(store, "qnoCorvel.sqlite"), os.path.join(home, "qno Corvel"))
        turns = Turns(os.path.join(home, "turns"))
        environment = dict(os.environ, XDG_DATA_HOME=home, XDG_CONFIG_HOME=home, XDG_CACHE_HOME=home,
                           GDK_BACKEND="x11", GSK_RENDERER="cairo", CORVEL_LOOP_TURNS=turns.path,
                           LD_PRELOAD=os.path.join(os.path.dirname(program), "../bench/libLoopTurns.so"))
        process = subprocess.Popen([program, "--gapplication-service"], env=environment)
        try:
            bus = connect()
            while NAME not in bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                            "ListNames", None, None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]:
                time.sleep(0.01)
            _, clock, used = measured(process.pid, lambda: call(
                bus, PROVIDER, INTERFACE, "GetInitialResultSet", GLib.Variant("(as)", (QUESTIONS[0],))))
            print(f"first question of a service just started: {clock:.1f} ms ({used:.1f})")
            measure(bus, process.pid, turns, rounds, "service")
            began = now()
            call(bus, "/com/qno/corvel", "org.freedesktop.Application", "Activate", GLib.Variant("(a{sv})", ({},)))
            time.sleep(8)  # the window is shown and the index filled
            longest = sorted(turns.between(began, now()), reverse=True)[:12]
            print("longest turns while the window opens:",
                  ", ".join(f"{length:.0f} ms ({used:.0f})" for used, length in longest))
            measure(bus, process.pid, turns, rounds, "window")
        finally:
            process.terminate()
            process.wait()


if __name__ == "__main__":
    main()
