#!/usr/bin/env python3
"""Measures the application's window against a bare Qt Quick window of the same size.

Runs on a simulated MacBook and a display of its own: start to the first frame, memory, CPU, frames.
"""

import argparse
import os
import re
import signal
import statistics
import subprocess
import sys
import time

FRAME = re.compile(r"^\s*([\d.]+) Frame rendered")
ENVIRONMENT = {
    "QT_QUICK_BACKEND": "software",
    "QT_LOGGING_RULES": "qt.scenegraph.time.renderloop.debug=true",
    "QT_MESSAGE_PATTERN": "%{time boot} %{message}",
}


class Program:
    """A started program whose output is read as it comes."""

    def __init__(self, command):
        self.output = []
        self.begin = time.clock_gettime(time.CLOCK_MONOTONIC)
        self.process = subprocess.Popen(
            command, env={**os.environ, **ENVIRONMENT}, stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE)
        os.set_blocking(self.process.stderr.fileno(), False)
        self.rest = ""

    def lines(self):
        data = self.process.stderr.read()
        lines = (self.rest + (data or b"").decode()).split("\n")
        self.rest = lines.pop()
        self.output += lines
        return self.output

    def frames(self):
        return [float(match[1]) for match in map(FRAME.match, self.lines()) if match]

    def strangers(self):
        """Lines that are no frame: warnings."""
        return [line for line in self.lines() if line and not FRAME.match(line)]

    def first_frame(self):
        deadline = time.monotonic() + 20
        while not self.frames():
            if time.monotonic() > deadline or self.process.poll() is not None:
                sys.exit("no frame came: " + "\n".join(self.output))
            time.sleep(0.001)
        cpu = self.busy()
        return self.frames()[0] - self.begin, cpu

    def busy(self):
        """CPU seconds."""
        total = 0
        for task in os.listdir(f"/proc/{self.process.pid}/task"):
            total += int(open(f"/proc/{self.process.pid}/task/{task}/schedstat").read().split()[0])
        return total / 1e9

    def memory(self):
        """Resident, MiB."""
        text = open(f"/proc/{self.process.pid}/status").read()
        return int(re.search(r"VmRSS:\s+(\d+)", text)[1]) / 1024

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(20)


def measure_start(app, bare, runs):
    times = {app: [], bare: []}
    for _ in range(runs):
        for command in (bare, app):
            program = Program([command])
            times[command].append(program.first_frame())
            program.end()
    for name, command in (("bare window", bare), ("Ventaro", app)):
        seconds = statistics.median([run[0] for run in times[command]])
        cpu = statistics.median([run[1] for run in times[command]])
        print(f"start, {name}: {seconds:.3f} s to the first frame, {cpu:.2f} s CPU", flush=True)


def measure_load(name, program, seconds):
    frames, busy = len(program.frames()), program.busy()
    time.sleep(seconds)
    share = (program.busy() - busy) / seconds * 100
    count = len(program.frames()) - frames
    print(f"{name}: {share:.2f} % of a core, {count} frames in {seconds} s", flush=True)


def press(*keys):
    """Presses keys in the dashboard, and gives the window the time to act on them."""
    window = subprocess.check_output(["xdotool", "search", "--sync", "--name", "Thermal"])
    subprocess.check_call(["xdotool", "windowfocus", "--sync", window.split()[0]])
    for key in keys:
        subprocess.check_call(["xdotool", "key", key])
        time.sleep(1)


def measure_minimised(app, name, seconds):
    program = Program([app, "--minimized"])
    time.sleep(6)
    print(f"{name}: {program.memory():.1f} MiB", flush=True)
    measure_load(name, program, seconds)
    program.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("app")
    parser.add_argument("bare")
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("--open", type=int, default=300, help="seconds with the dashboard open")
    parser.add_argument("--idle", type=int, default=60, help="seconds of each look at the load")
    options = parser.parse_args()

    measure_start(options.app, options.bare, options.runs)
    bare, app = Program([options.bare]), Program([options.app])
    app.first_frame()
    time.sleep(max(options.open - options.idle, 5))
    measure_load("overview visible", app, options.idle)
    print(f"dashboard open: {app.memory():.1f} MiB, bare window {bare.memory():.1f} MiB", flush=True)
    print(f"warnings: {len(app.strangers())}", *app.strangers(), sep="\n", flush=True)
    bare.end()
    press("ctrl+3", "ctrl+w")
    measure_load("closed on the sensors' tab", app, options.idle)
    print(f"closed: {app.memory():.1f} MiB", flush=True)
    app.end()
    measure_minimised(options.app, "minimised, status-item window", options.idle)
    tray = subprocess.Popen(["trayer"], stderr=subprocess.DEVNULL)
    time.sleep(1)
    measure_minimised(options.app, "minimised, tray", options.idle)
    tray.terminate()


main()
