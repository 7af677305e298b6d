#!/usr/bin/env python3
"""Runs the benchmarks and compares lumo with its peers: prints a table of targets and results.

    report.py FOLDER [--json FILE] [--repetitions N] [--min-time SECONDS]

FOLDER has the benchmark programs. Every figure is a ratio of medians from one run of one program: lumo's
time divided by the peer's, the worst one if a row has several jobs.
"""

import argparse
import json
import pathlib
import platform
import re
import statistics
import subprocess
import sys
from dataclasses import dataclass

import ratios


@dataclass
class Row:
    """What a row compares: jobs of a program, or all jobs with a prefix, the peer, and the target ratio."""
    text: str
    program: str
    jobs: list | str
    peer: str
    target: float | None


def jobs(operations, classes):
    return [f"{operation}/{kind}" for operation in operations.split() for kind in classes.split()]


SIZES = "1000 10000 100000 1000000"
ROWS = [
    Row("small integers: += -=", "numbers", jobs("add sub", "small_int"), "flint", 0.7),
    Row("small integers: *=", "numbers", jobs("mul", "small_int"), "flint", 0.25),
    Row("small integers: < ==", "numbers", jobs("less equal", "small_int"), "flint", 0.8),
    Row("small integers: divmod", "numbers", jobs("divmod", "small_int"), "flint", 0.9),
    Row("small integers: +=", "numbers", jobs("add", "small_int"), "plain", 3),
    Row("rationals, parts below 1000: += -=", "numbers", jobs("add sub", "small_rat"), "flint", 0.35),
    Row("rationals, parts below 1000: *=", "numbers", jobs("mul", "small_rat"), "flint", 0.45),
    Row("rationals, parts near 2^31: += -= *=", "numbers", jobs("add sub mul", "rat31"), "flint", 0.95),
    Row("rationals, parts near 2^31: <", "numbers", jobs("less", "rat31"), "flint", 0.6),
    Row("65 and 128 bits: += -=", "numbers", jobs("add sub", "int65 int128"), "flint", 1.2),
    Row("65 and 128 bits: *=", "numbers", jobs("mul", "int65 int128"), "flint", 1.9),
    Row("65 and 128 bits: < ==", "numbers", jobs("less equal", "int65 int128"), "flint", 1.2),
    Row("65 and 128 bits: divmod", "numbers", jobs("divmod", "int65 int128"), "flint", 1.05),
    Row("1024 bits: +=", "numbers", jobs("add", "int1024"), "gmp", 2.2),
    Row("1024 bits: *= divmod", "numbers", jobs("mul divmod", "int1024"), "gmp", 1.2),
    Row("65536 bits: += *= divmod", "numbers", jobs("add mul divmod", "int65536"), "gmp", 1.1),
    Row("is_number, a numeral", "terms", jobs("hit", SIZES), "absl", 2.5),
    Row("is_number, no numeral", "terms", jobs("miss", SIZES), "absl", 2.5),
    Row("numeral that exists", "terms", jobs("find", SIZES), "z3", 0.1),
    Row("new numeral", "terms", jobs("make", SIZES), "z3", 0.15),
    Row("a fresh model, one definition, one value", "terms", jobs("model", "1000000"), "empty", 2),
    Row("refusing a case, without an exception", "calculators", "refuse_", "solved", 2),
    Row("inverse modulo 2^w", "calculators", jobs("inverse", "8 32 64 256 1024 65536"), "gmp", 0.5),
]

# Calls of calculators in units of a search in a hash map of 10,000 symbols. Refused calls are left out, and those
# that need an inverse have separate rows, since their time grows with the width.
CALLS = [
    ("calculator call, widths 8 and 32", "8|32", False, 40),
    ("calculator call, widths 64 and 256", "64|256", False, 100),
    ("the same with an inverse, widths 8 and 32", "8|32", True, None),
    ("the same with an inverse, widths 64 and 256", "64|256", True, None),
]
WITH_INVERSE = "bvmul/numeral/"
UNIT = "find/10000/absl"
# Bytes of heap for each, by job of terms_bench
BYTES = [("binary application", "apply", 64), ("small numeral", "make", 64)]
# Shapes and size at which the whole elimination is compared with Z3's
SHAPES = ("wide", "deep")
NUM_APPLICATIONS = 100_000
# Columns of reader_bench with what they say; each is measured at the first size or at the second one.
READER_SIZES = ("100000", "1000000")
READING = [
    ("reading, time", 5, "the faster parser", 0.15, 0),
    ("reading, memory", 9, "the smaller parser", 0.5, 0),
    ("reading, ten times the text", 10, "time", 12, 1),
    ("simplify, bytes beyond the text", 12, "", 250, 1),
    ("simplify, all of the time", 13, "elimination", 8, 1),
]


def report_line(text, peer, target, reached, worst):
    return {"row": text, "peer": peer, "target": target, "reached": round(reached, 3), "worst": worst}


def compare(row, times):
    names = row.jobs if isinstance(row.jobs, list) else [job for job in times if job.startswith(row.jobs)]
    found = {job: times[job][ratios.OURS] / times[job][row.peer] for job in names}
    worst = max(found, key=found.get)
    return report_line(row.text, row.peer, row.target, found[worst], worst)


def compare_calls(report):
    times = {}
    for entry in report["benchmarks"]:
        if entry.get("run_type") == "iteration":
            times.setdefault(entry["name"], []).append(entry["real_time"])
    unit = statistics.median(times[UNIT])
    for text, widths, has_inverse, target in CALLS:
        found = {name: statistics.median(t) / unit for name, t in times.items()
                 if re.fullmatch(rf".*/(?!refused).*/({widths})", name)
                 and name.startswith(WITH_INVERSE) == has_inverse}
        worst = max(found, key=found.get)
        line = report_line(text, "absl find", target, found[worst], worst)
        line["all"] = {name: round(ratio, 1) for name, ratio in found.items()}
        yield line


def compare_bytes(report):
    for text, operation, target in BYTES:
        found = {entry["name"]: entry["bytes"] for entry in report["benchmarks"]
                 if entry["name"].startswith(f"{operation}/") and f"/{ratios.OURS}" in entry["name"]}
        worst = max(found, key=found.get)
        yield report_line(f"bytes: {text}", "", target, found[worst], worst.split("/lumo")[0])


def compare_elimination(program, repetitions):
    found = {shape: [] for shape in SHAPES}
    for _ in range(repetitions):
        output = subprocess.run([program, str(NUM_APPLICATIONS), "60", *SHAPES], check=True, text=True,
                                stdout=subprocess.PIPE).stdout
        for line in output.splitlines()[1:]:
            fields = line.split()
            if int(fields[1]) > NUM_APPLICATIONS / 2:
                found[fields[0]].append(1 / float(fields[-1]))
    medians = {shape: statistics.median(values) for shape, values in found.items()}
    worst = max(medians, key=medians.get)
    yield report_line("eliminate, extend, check", "Z3", 0.05, medians[worst], f"{worst}/{NUM_APPLICATIONS}")


def compare_queries(program, repetitions):
    found = {}
    for _ in range(repetitions):
        output = subprocess.run([program], check=True, text=True, stdout=subprocess.PIPE).stdout
        for line in output.splitlines()[1:]:
            fields = line.split()
            found.setdefault(fields[0], []).append(float(fields[3]))
    medians = {kind: statistics.median(values) for kind, values in found.items()}
    worst = max(medians, key=medians.get)
    yield report_line("query of 50 assertions on 100,000", "the first", 0.05, medians[worst], worst)


def compare_readers(program):
    output = subprocess.run([program, *READER_SIZES], check=True, text=True, stdout=subprocess.PIPE).stdout
    shapes = [line.split() for line in output.splitlines()[2:]]
    for text, column, peer, target, size in READING:
        found = {fields[0]: float(fields[column]) for fields in shapes}
        worst = max(found, key=found.get)
        line = report_line(text, peer, target, found[worst], f"{worst}/{READER_SIZES[size]}")
        line["all"] = found
        yield line


def describe_machine():
    """The processor's name; the compiler is the one that the programs were built with."""
    info = pathlib.Path("/proc/cpuinfo")
    names = re.findall(r"^model name\s*:\s*(.*)$", info.read_text(), re.M) if info.exists() else []
    return names[0] if names else platform.processor()


def measure(options):
    lines = []
    for program in ("numbers", "terms", "calculators"):
        rows = [row for row in ROWS if row.program == program]
        report = ratios.run(str(options.folder / f"{program}_bench"), "", options.repetitions, options.min_time)
        times = ratios.medians(report)
        lines += [compare(row, times) for row in rows]
        if program == "terms":
            lines += compare_bytes(report)
        if program == "calculators":
            lines += compare_calls(report)
    lines += compare_elimination(str(options.folder / "elimination_bench"), options.repetitions)
    lines += compare_queries(str(options.folder / "incremental_bench"), options.repetitions)
    lines += compare_readers(str(options.folder / "reader_bench"))
    return lines


def print_table(lines):
    print("| job | peer | target | reached | worst at |")
    print("|---|---|---|---|---|")
    for line in lines:
        target = line["target"]
        is_missed = target is not None and line["reached"] > target
        print(f"| {line['row']} | {line['peer']} | {'' if target is None else target} "
              f"| {line['reached']:.3g}{' (missed)' if is_missed else ''} | {line['worst']} |")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, help="the folder of the benchmark programs")
    parser.add_argument("--json", metavar="FILE", help="write the figures to FILE, too")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--min-time", type=float, default=0.05, help="seconds per repetition")
    options = parser.parse_args()
    lines = measure(options)
    print_table(lines)
    if options.json:
        result = {"processor": describe_machine(), "repetitions": options.repetitions, "rows": lines}
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(result, file, indent=2)
            file.write("\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
