#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-2-Clause
"""Measures, and compares measurements.

usage: figures.py run BUILD [--rounds N] [--json FILE] [--filter REGEX]
       figures.py compare OLD.json NEW.json

`run` repeats all work in rounds, so that what disturbs the machine for a while disturbs each piece
of work in few rounds. Figures are ratios to copying a frame where the work has one, else times.
`compare` says which medians differ by more than the spread of the rounds; it exits with 1 if any
work became slower.
"""

import argparse
import json
import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile

LEAST_CHANGE = 0.03  # below this, medians count as equal


def measured(program, pattern):
    """One round of a benchmark program: {name: (unit, value)}."""
    command = [program, "--benchmark_format=json", "--benchmark_min_time=0.05"]
    if pattern:
        command.append(f"--benchmark_filter={pattern}")
    text = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    figures = {}
    for each in json.loads(text or "{}").get("benchmarks", []):
        ratios = [key for key in each if key.startswith("of_")]
        for key in ratios:
            figures[f"{each['name']} {key}"] = ("ratio", each[key])
        if not ratios and "real_time" in each:
            figures[each["name"]] = (each["time_unit"], each["real_time"])
    return figures


def cpu_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


class Commands:
    """The command on a v210 file, beside FFmpeg's copy of its streams and a copy of the file."""

    def __init__(self, build, folder):
        self.source, self.target = f"{folder}/in.mov", f"{folder}/out.mov"
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc2=size=1920x1080:rate=25",
                        "-frames:v", "250", "-c:v", "v210", "-timecode", "10:00:00:00", self.source],
                       check=True)
        texts = [part for y in (100, 200) for part in ("--text", f"100,{y},TWENTY CHARACTERS 01")]
        self.commands = {
            "nkdraw burnin": [f"{build}/tools/nkdraw/nkdraw", "burnin", self.source, self.target,
                              "--vitc", "--clock", "--format-line", *texts],
            "ffmpeg -c copy": ["ffmpeg", "-v", "error", "-i", self.source, "-map", "0", "-c", "copy",
                               self.target],
            "cp": ["cp", "--reflink=never", self.source, self.target],
        }

    def measured(self):
        seconds = {}
        for name, command in self.commands.items():
            pathlib.Path(self.target).unlink(missing_ok=True)
            seconds[name] = cpu_seconds(command)
        burnin = seconds["nkdraw burnin"]
        figures = {f"CPU of {name}, 250 frames of v210": ("s", value) for name, value in seconds.items()}
        for other in ("ffmpeg -c copy", "cp"):
            figures[f"nkdraw burnin of_{other}"] = ("ratio", burnin / seconds[other])
        return figures


def summary(unit, values):
    quarters = statistics.quantiles(values, n=4, method="inclusive") if len(values) > 1 else values * 3
    median = statistics.median(values)
    return {"unit": unit, "min": min(values), "median": median,
            "spread": (quarters[2] - quarters[0]) / median if median else 0.0, "values": values}


def run(arguments):
    build = pathlib.Path(arguments.build).resolve()
    programs = sorted(str(path) for path in build.glob("bench/bench_*") if os.access(path, os.X_OK))
    values, load = {}, [os.getloadavg()[0]]
    with tempfile.TemporaryDirectory() as folder:
        commands = None if arguments.filter else Commands(build, folder)
        for number in range(arguments.rounds):
            print(f"round {number + 1} of {arguments.rounds}", file=sys.stderr)
            rounds = [measured(program, arguments.filter) for program in programs]
            if commands:
                rounds.append(commands.measured())
            for figures in rounds:
                for name, (unit, value) in figures.items():
                    values.setdefault(name, (unit, []))[1].append(value)
    load.append(os.getloadavg()[0])
    figures = {name: summary(unit, each) for name, (unit, each) in values.items()}
    width = max(map(len, figures), default=0)
    print(f"{'':{width}}  {'least':>9}  {'median':>9}  spread")
    for name, each in figures.items():
        print(f"{name:{width}}  {each['min']:9.4g}  {each['median']:9.4g}  {each['spread']:5.1%}"
              + ("" if each["unit"] == "ratio" else f"  {each['unit']}"))
    print(f"{arguments.rounds} rounds; load {load[0]:.2f} before, {load[1]:.2f} after")
    if arguments.json:
        report = {"rounds": arguments.rounds, "load": load, "figures": figures}
        pathlib.Path(arguments.json).write_text(json.dumps(report, indent=1) + "\n")
    return 0


def changes(old, new):
    """Pairs of a name and the relative change of its median, if that is more than noise."""
    for name in old.keys() & new.keys():
        change = new[name]["median"] / old[name]["median"] - 1
        noise = max(old[name]["spread"], new[name]["spread"])
        if abs(change) > max(LEAST_CHANGE, noise):
            yield name, change


def compare(arguments):
    old, new = (json.loads(pathlib.Path(path).read_text())["figures"]
                for path in (arguments.old, arguments.new))
    found = sorted(changes(old, new), key=lambda each: each[1])
    for name, change in found:
        print(f"{change:+7.1%}  {name}: {old[name]['median']:.4g} to {new[name]['median']:.4g}")
    for name in sorted(old.keys() ^ new.keys()):
        print(f"   only in {'the old' if name in old else 'the new'}  {name}")
    print(f"{len(found)} of {len(old.keys() & new.keys())} changed beyond noise")
    return 1 if any(change > 0 for _, change in found) else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    commands = parser.add_subparsers(required=True)
    runner = commands.add_parser("run")
    runner.add_argument("build")
    runner.add_argument("--rounds", type=int, default=5)
    runner.add_argument("--json")
    runner.add_argument("--filter", default="")
    runner.set_defaults(work=run)
    comparer = commands.add_parser("compare")
    comparer.add_argument("old")
    comparer.add_argument("new")
    comparer.set_defaults(work=compare)
    arguments = parser.parse_args()
    return arguments.work(arguments)


if __name__ == "__main__":
    sys.exit(main())
