#!/usr/bin/env python3
"""Prints a table of the lines and branches that a run of programs with g++'s counters reached, and fails if a folder
misses its limit.

    coverage_table.py build/coverage --full lumo/numbers lumo/calculators --most lumo/terms

A folder of --full must have all of its lines and branches reached, one of --most a share of its lines. The table has
a row for each folder, and below it each of its files in which something was not reached: the numbers of the lines,
and for --full, with a `b`, those of lines that were reached, but not all of their branches.

The counts come from gcov itself, which says for every branch, reached or not, whether only an exception takes it. If
several objects have counts of one line, as for a header, they are added up.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

MOST = 0.95
ROOT = pathlib.Path.cwd().resolve()


def read_gcov(note):
    """The output of gcov for one object: for each file the numbers, counts and branches of its lines."""
    output = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", note],
                            check=True, capture_output=True, text=True).stdout
    found = []
    for report in map(json.loads, output.splitlines()):
        for file in report["files"]:
            path = pathlib.Path(report["current_working_directory"], file["file"])
            if path.is_relative_to(ROOT):
                lines = [(line["line_number"], line["count"], find_branches(line)) for line in file["lines"]]
                found.append((str(path.relative_to(ROOT)), lines))
    return found


def find_branches(line):
    """The counts of the branches of a line. A call that may throw does not count as a branch."""
    branches = line["branches"]
    counts = []
    for i, branch in enumerate(branches):
        is_return = branch["fallthrough"] and i + 1 < len(branches) and branches[i + 1]["throw"]
        if not branch["throw"] and not is_return:
            counts.append(branch["count"])
    return counts


class Marks:
    """The lines of a source that do not count, and those whose branches do not count."""

    def __init__(self, path):
        self.no_lines = set()
        self.no_branches = set()
        is_skipping = False
        for number, text in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            is_skipping = (is_skipping or "GCOVR_EXCL_BR_START" in text) and "GCOVR_EXCL_BR_STOP" not in text
            # At the end of a block, g++ counts the destructors that it calls there for exceptions.
            if "GCOVR_EXCL_LINE" in text or re.fullmatch(r"[\s{};]*", text):
                self.no_lines.add(number)
            if is_skipping or "GCOVR_EXCL_BR_LINE" in text or re.match(r"\s*assert\(", text):
                self.no_branches.add(number)


class Count:
    """The numbers of lines and branches of a file, of those that were reached, and the lines that were not."""

    def __init__(self):
        self.lines = [0, 0]
        self.branches = [0, 0]
        self.missing_lines = []
        self.missing_branches = []

    def add_line(self, number, count, branches):
        """Counts a line."""
        reached = [branch > 0 for branch in branches]
        self.lines[0] += count > 0
        self.lines[1] += 1
        self.branches[0] += sum(reached)
        self.branches[1] += len(reached)
        if count == 0:
            self.missing_lines.append(str(number))
        elif not all(reached):
            self.missing_branches.append(f"{number}b")

    def add(self, other):
        """Counts all of a file for its folder."""
        for mine, others in ((self.lines, other.lines), (self.branches, other.branches)):
            mine[0] += others[0]
            mine[1] += others[1]


def count_files(build, folders):
    """The counts of the sources of some folders, by name."""
    totals = collections.defaultdict(collections.Counter)
    # Instances of a template may have different branches; those that have as many are alike.
    branches = collections.defaultdict(lambda: collections.defaultdict(dict))
    notes = sorted(str(note) for note in pathlib.Path(build).rglob("*.gcno"))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for name, lines in (file for found in pool.map(read_gcov, notes) for file in found):
            if name.rpartition("/")[0] not in folders:
                continue
            for number, count, taken in lines:
                totals[name][number] += count
                alike = branches[name][number].get(len(taken), [0] * len(taken))
                branches[name][number][len(taken)] = [a + b for a, b in zip(alike, taken)]

    counts = {}
    for name, lines in totals.items():
        marks = Marks(ROOT / name)
        counts[name] = Count()
        for number in sorted(set(lines) - marks.no_lines):
            taken = [] if number in marks.no_branches else sum(branches[name][number].values(), [])
            counts[name].add_line(number, lines[number], taken)
    return counts


def show(reached, total):
    """A share in the form of the table. Only a complete one is 100 %."""
    if total == 0:
        return "-"
    return f"{reached}/{total} {int(1000 * reached / total) / 10:5.1f} %"


def print_row(name, count, missing):
    """Prints one row of the table."""
    print(f"{name:44} {show(*count.lines):>17} {show(*count.branches):>17}  {' '.join(missing)}".rstrip())


def main():
    """Prints the table, and says which limits are missed."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", help="the folder of the build that was run")
    parser.add_argument("--full", nargs="*", default=[], help="folders of which everything must be reached")
    parser.add_argument("--most", nargs="*", default=[], help="folders of which a share of the lines must be")
    args = parser.parse_args()
    counts = count_files(args.build, args.full + args.most)

    failures = []
    print(f"{'':44} {'lines':>17} {'branches':>17}  not reached")
    for folder in args.full + args.most:
        total = Count()
        files = {name: count for name, count in counts.items() if name.startswith(folder + "/")}
        for count in files.values():
            total.add(count)
        print_row(folder, total, [])
        for name, count in sorted(files.items()):
            missing = count.missing_lines + (count.missing_branches if folder in args.full else [])
            if missing:
                print_row("  " + name, count, missing)

        # A source without figures was not built, or not examined.
        failures += [f"there are no figures for {source}" for source in sorted(pathlib.Path(folder).glob("*.cpp"))
                     if str(source) not in files]
        if folder in args.full and total.branches[0] < total.branches[1]:
            failures.append(f"not all branches of {folder} are reached")
        share = 1 if folder in args.full else MOST
        if total.lines[0] < share * total.lines[1]:
            failures.append(f"less than {share:.0%} of the lines of {folder} are reached")
    for failure in failures:
        print(f"coverage_table.py: {failure}", file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
