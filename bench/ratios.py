#!/usr/bin/env python3
"""Compares the jobs of a benchmark program between lumo and its peers.

Jobs are named operation/class/peer. The input is either a file that the program wrote with
--benchmark_out=FILE --benchmark_out_format=json, or the program itself, which is then run:

    ratios.py results.json
    ratios.py --run build/release/bench/numbers_bench --filter 'add/.*' --repetitions 5 --min-time 0.05

The times are medians over the repetitions. A ratio below 1 means that lumo is the faster one.
"""

import argparse
import json
import statistics
import subprocess
import sys
import tempfile

OURS = "lumo"


def run(program, job_filter, repetitions, min_time):
    """Runs the program and returns its report."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [program, f"--benchmark_out={out.name}", "--benchmark_out_format=json",
                   f"--benchmark_repetitions={repetitions}", f"--benchmark_min_time={min_time}",
                   "--benchmark_enable_random_interleaving=true"]
        if job_filter:
            command.append(f"--benchmark_filter={job_filter}")
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        with open(out.name, encoding="utf-8") as file:
            return json.load(file)


def medians(report):
    """The median time in ns of each job and peer: {job: {peer: time}}, in the program's order."""
    scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = {}
    for entry in sorted(report["benchmarks"], key=lambda e: e["family_index"]):  # runs may be interleaved
        if entry.get("run_type") != "iteration" or entry.get("error_occurred"):
            continue
        parts = entry["name"].split("/")
        if len(parts) < 3:
            continue
        operation, kind, peer = parts[:3]  # what follows is how the time was taken
        job = times.setdefault(f"{operation}/{kind}", {})
        job.setdefault(peer, []).append(entry["real_time"] * scale[entry["time_unit"]])
    return {job: {peer: statistics.median(t) for peer, t in peers.items()} for job, peers in times.items()}


def table(times):
    """Yields the lines of the table."""
    yield f"{'job':<20} {'lumo ns':>12} {'peer':>6} {'peer ns':>12} {'ratio':>7}"
    for job, peers in times.items():
        if OURS not in peers:
            continue
        for peer, time in peers.items():
            if peer != OURS:
                yield f"{job:<20} {peers[OURS]:>12.2f} {peer:>6} {time:>12.2f} {peers[OURS] / time:>7.2f}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("report", nargs="?", help="JSON report to read")
    parser.add_argument("--run", metavar="PROGRAM", help="benchmark program to run instead")
    parser.add_argument("--filter", default="", help="regular expression of the jobs to run")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--min-time", type=float, default=0.05,
                        help="seconds per repetition; a few milliseconds and many repetitions on a busy machine")
    options = parser.parse_args()
    if bool(options.report) == bool(options.run):
        parser.error("give either a report or --run PROGRAM")
    if options.run:
        report = run(options.run, options.filter, options.repetitions, options.min_time)
    else:
        with open(options.report, encoding="utf-8") as file:
            report = json.load(file)
    for line in table(medians(report)):
        print(line)
    return 0


if __name__ == "__main__":
    sys.exit(main())
