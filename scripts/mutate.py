#!/usr/bin/env python3
"""Mutation testing: finds mistakes in lumo/numbers/ and lumo/calculators/ that no test would notice.

  scripts/mutate.py [--list] [--sample N [--seed S]] [--jobs N] [--sanitize] [PATH...]

Puts one small mistake at a time into a copy of the sources (scripts/mutants.py has the kinds), builds the test
programs of the same folder and runs them. If they pass, the mutant has survived: a test is missing, or the mutant
means the same. scripts/mutate_equivalent.txt lists mutants of the second kind, each with the reason. With
--sanitize, the survivors are tried once more with the sanitizers of the preset `asan`.

PATH is a source or a folder of sources, lumo/numbers/ and lumo/calculators/ if none is given. With --sample, only N mutants,
drawn by the seed, are tried. Results are kept in build/mutate/results.tsv, and an interrupted run continues
from there: a killed mutant counts until its file changes, a survivor also until a test of its folder does.

Prints each survivor and a table. Fails if a mutant survived that is not known as equivalent, if a known one was
killed, or if an entry of the list matches none. Needs what the group `coverage` of scripts/setup.sh installs.
"""

import argparse
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from collections import deque
from dataclasses import dataclass, replace
from pathlib import Path

sys.dont_write_bytecode = True
from mutants import make_mutants  # noqa: E402

ROOT = Path(__file__).resolve().parent.parent
OUT = ROOT / "build" / "mutate"
EQUIVALENT = ROOT / "scripts" / "mutate_equivalent.txt"

# The rooms, folders of lumo/, whose sources can be mutated, and those that their test programs are linked with
FOLDERS = {"numbers": ["numbers"], "calculators": ["numbers", "terms", "model", "calculators"]}
COPIED = ["lumo", "tests"]

# name: compiler options. Leaks are found in either build, without a price in time.
BUILDS = {
    "plain": "-O0 -fsanitize=leak",
    "sanitized": "-O1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer",
}
SANITIZER_OPTIONS = "hard_rss_limit_mb=2048"
SLOW_TEST = 0.05  # seconds
STATUSES = ("killed", "timed out", "not compiling", "equivalent", "survived")


class Failure(Exception):
    """Ends the run with a message."""


def digest(*paths):
    sum_of_all = hashlib.sha256()
    for path in sorted(paths):
        sum_of_all.update(path.read_bytes())
    return sum_of_all.hexdigest()[:16]


# ---------------------------------------------------------------------------------------- building and testing


@dataclass
class TestProgram:
    name: str
    sources: list
    needs_support: bool
    includes: list  # folders in which headers are looked for first
    without_lumo: bool

    def count_own_sources(self):
        return sum(not source.startswith("lumo/") for source in self.sources)

    def split(self):
        """One program for each source of tests, if there are several; the other sources are in all of them."""
        tests = [source for source in self.sources if source.endswith("_test.cpp")]
        if len(tests) < 2:
            return []
        others = [source for source in self.sources if source not in tests]
        return [replace(self, name=f"{self.name}-{Path(test).stem}", sources=[*others, test]) for test in tests]


def read_test_programs(folder):
    """The declarations of tests/FOLDER/CMakeLists.txt."""
    text = (ROOT / "tests" / folder / "CMakeLists.txt").read_text()
    programs = []
    for arguments in re.findall(r"lumo_add_test\(([^)]*)\)", text):
        words = arguments.split()
        sources = [f"tests/{folder}/{word}" for word in words if word.endswith(".cpp")]
        if "WITHOUT_LUMO" in words:
            # This program compiles the numbers and the calculators itself.
            sources += sorted(f"lumo/{room}/{p.name}" for room in ("numbers", "calculators")
                              for p in (ROOT / "lumo" / room).glob("*.cpp") if p.stem != "calculator_table")
        includes = re.search(r"INCLUDES((?:\s+[a-z]\S*)*)", arguments)
        includes = [f"tests/{folder}/{name}" for name in includes.group(1).split()] if includes else []
        programs.append(TestProgram(words[0], sources, "lumo_test_support" in words, includes,
                                    "WITHOUT_LUMO" in words))
    return sorted(programs, key=TestProgram.count_own_sources)


def read_support_sources():
    text = (ROOT / "tests" / "CMakeLists.txt").read_text()
    return re.findall(r"support/\w+\.cpp", re.search(r"add_library\(lumo_test_support([^)]*)\)", text).group(1))


def write_ninja(build, options):
    """The build description of the copy: one object per source, one archive per folder, the programs."""
    lines = [
        "builddir = .",
        f"cxx = g++ -std=c++20 {options} -Werror=return-type",
        "rule compile",
        "  command = $cxx $includes -I.. $extra -MMD -MF $out.d -c $in -o $out",
        "  depfile = $out.d",
        "  deps = gcc",
        "rule archive",
        "  command = rm -f $out && ar rcs $out $in",
        "rule link",
        "  command = $cxx $in -lgtest_main -lgtest -lgmp -lpthread -o $out",
        "build prefix.h.gch: compile prefix.h",
        "  extra = -x c++-header",
    ]
    objects = set()

    def compile_all(sources, includes=()):
        # Sources that are compiled with other headers have separate objects.
        folder = "".join(f"{name}/objects/" for name in includes)
        for source in sources:
            if folder + source not in objects:
                objects.add(folder + source)
                # Tests share a precompiled prefix: the compiler spends most of its time on their headers.
                is_test = source.endswith("_test.cpp")
                needs = " | prefix.h.gch" if is_test else ""
                lines.append(f"build {folder}{source}.o: compile ../{source}{needs}")
                lines.append("  includes = " + " ".join(f"-I../{name}" for name in includes))
                if is_test:
                    lines.append("  extra = -include prefix.h")
        return " ".join(f"{folder}{source}.o" for source in sources)

    def add_archive(name, sources):
        lines.append(f"build {name}.a: archive {compile_all(sources)}")

    for folder in FOLDERS["calculators"]:
        add_archive(folder, sorted(f"lumo/{folder}/{p.name}" for p in (ROOT / "lumo" / folder).glob("*.cpp")))
    add_archive("support", [f"tests/{source}" for source in read_support_sources()])
    for folder, libraries in FOLDERS.items():
        programs = read_test_programs(folder)
        for whole in programs:
            archives = (["support"] if whole.needs_support else []) + libraries[::-1]
            linked = "" if whole.without_lumo else " ".join(f"{name}.a" for name in archives)
            for program in [whole, *whole.split()]:
                compiled = compile_all(program.sources, program.includes)
                lines.append(f"build {program.name}: link {compiled} {linked}")
        parts = [part for program in programs for part in program.split()]
        lines.append(f"build {folder}: phony " + " ".join(program.name for program in [*programs, *parts]))
    build.mkdir(parents=True, exist_ok=True)
    write_if_changed(build / "build.ninja", "\n".join(lines) + "\n")
    write_if_changed(build / "prefix.h", "#include <functional>\n#include <string>\n#include <vector>\n"
                     "#include <gmp.h>\n#include <gtest/gtest.h>\n")


def write_if_changed(path, text):
    if not path.exists() or path.read_text() != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


def run(command, folder, limit=None):
    """(status, output) of a command; the status is None if it took too long."""
    environment = {**os.environ, "LSAN_OPTIONS": SANITIZER_OPTIONS, "ASAN_OPTIONS": SANITIZER_OPTIONS}
    process = subprocess.Popen(command, cwd=folder, env=environment, start_new_session=True, text=True,
                               errors="replace", stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT)
    try:
        output, _ = process.communicate(timeout=limit)
        return process.returncode, output
    except BaseException as e:
        os.killpg(process.pid, signal.SIGKILL)
        output, _ = process.communicate()
        if isinstance(e, subprocess.TimeoutExpired):
            return None, output
        raise


class Worker:
    """A copy of the sources with its builds, in which one mutant at a time is tried."""

    def __init__(self, number, builds):
        self.number = number
        self.copy = OUT / f"worker-{number}"
        self.builds = builds
        self.timing = {}  # (build, program): (names of slow tests, time limit)
        self.parts = {}  # folder: the names of its programs split up, those that noticed most lately first
        self.mutated = None

    def prepare(self, folders):
        tracked = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "--", *COPIED],
                                 cwd=ROOT, check=True, capture_output=True, text=True).stdout.split("\n")
        wanted = {path for path in tracked if path.endswith((".cpp", ".h")) and (ROOT / path).exists()}
        for path in wanted:
            write_if_changed(self.copy / path, (ROOT / path).read_text())
        for folder in COPIED:
            for path in (self.copy / folder).rglob("*"):
                if path.is_file() and str(path.relative_to(self.copy)) not in wanted:
                    path.unlink()
        for build in self.builds:
            write_ninja(self.copy / build, BUILDS[build])
            for folder in folders:
                if not self.build(build, folder):
                    raise Failure(f"the tests of {folder}/ do not build without a mutant:\n{self.output[-4000:]}")

    def build(self, build, target):
        status, self.output = run(["ninja", "-j1", target], self.copy / build)
        return status == 0

    def measure(self, folders):
        """The time of the tests without a mutant; they must all pass."""
        for build in self.builds:
            for folder in folders:
                for program in read_test_programs(folder):
                    begin = time.monotonic()
                    report = self.copy / build / f"{program.name}.json"
                    status, output = run([f"./{program.name}", "--gtest_brief=1", f"--gtest_output=json:{report}"],
                                         self.copy / build)
                    if status != 0:
                        raise Failure(f"{program.name} fails without a mutant ({build}):\n{output[-4000:]}")
                    slow = [f"{suite['name']}.{test['name']}"
                            for suite in json.loads(report.read_text())["testsuites"]
                            for test in suite["testsuite"] if float(test["time"].rstrip("s")) > SLOW_TEST]
                    limit = 20 + 10 * (time.monotonic() - begin)
                    for timed in [program, *program.split()]:
                        self.timing[build, timed.name] = (slow, limit)

    def attempt(self, mutant):
        """(status, the test that noticed, or the builds in which none did) of a mutant."""
        self.put(mutant)
        for build in self.builds:
            for program in self.order_programs(mutant):
                if not self.build(build, program):
                    return "not compiling", ""
                status, note = self.test(build, program)
                if status != "survived":
                    self.prefer(mutant, program)
                    return status, note
        return "survived", " ".join(self.builds)

    def order_programs(self, mutant):
        """The smallest first, for which the least is built. Most tests include a mutated header, so it is first
        tried on programs with one source of tests each."""
        folder = get_room(mutant.path)
        programs = read_test_programs(folder)
        whole = [program.name for program in programs]
        if not mutant.path.endswith(".h"):
            return whole
        if folder not in self.parts:
            self.parts[folder] = [part.name for program in programs for part in program.split() or [program]]
        return [*self.parts[folder], *(name for name in whole if name not in self.parts[folder])]

    def prefer(self, mutant, program):
        parts = self.parts.get(get_room(mutant.path), [])
        if program in parts:
            parts.remove(program)
            parts.insert(0, program)

    def put(self, mutant):
        if self.mutated and self.mutated != mutant.path:
            (self.copy / self.mutated).write_text((ROOT / self.mutated).read_text())
        self.mutated = mutant.path
        (self.copy / mutant.path).write_text(mutant.apply((ROOT / mutant.path).read_text()))

    def restore(self):
        if self.mutated:
            (self.copy / self.mutated).write_text((ROOT / self.mutated).read_text())
            self.mutated = None

    def test(self, build, program):
        slow, limit = self.timing[build, program]
        filters = ["-" + ":".join(slow), ":".join(slow)] if slow else ["*"]
        for chosen in filters:
            status, output = run([f"./{program}", "--gtest_fail_fast", "--gtest_brief=1",
                                  f"--gtest_filter={chosen}"], self.copy / build, limit)
            if status is None:
                return "timed out", program
            if status != 0:
                found = re.search(r"\[  FAILED  \] ([^\s,]+)|ERROR: \w+: [\w-]+|Assertion|runtime error", output)
                return "killed", (found.group(1) or found.group(0)) if found else f"{program}: status {status}"
        return "survived", ""


# ------------------------------------------------------------------------------------------- results and lists


class Results:
    """The results of earlier runs, in a file to which each result is added immediately."""

    def __init__(self, builds):
        self.path = OUT / "results.tsv"
        self.builds = builds
        self.lock = threading.Lock()
        self.known = {}  # (key, digest of the file): (status, note, digest of the tests)
        self.file_digests, self.test_digests = {}, {}
        if self.path.exists():
            for line in self.path.read_text().split("\n"):
                fields = line.split("\t")
                if len(fields) == 8:
                    self.known[tuple(fields[:4]), fields[4]] = (fields[6], fields[7], fields[5])

    def get_digests(self, mutant):
        folder = get_room(mutant.path)
        if mutant.path not in self.file_digests:
            self.file_digests[mutant.path] = digest(ROOT / mutant.path)
        if folder not in self.test_digests:
            self.test_digests[folder] = digest(*(path for path in (ROOT / "tests" / folder).rglob("*")
                                                 if path.is_file()))
        return self.file_digests[mutant.path], self.test_digests[folder]

    def find(self, mutant):
        """(status, note), or None if the mutant must be tried."""
        of_file, of_tests = self.get_digests(mutant)
        found = self.known.get((mutant.key(), of_file))
        if not found:
            return None
        status, note, known_tests = found
        if status == "survived" and (known_tests != of_tests or not set(self.builds) <= set(note.split())):
            return None
        return status, note

    def add(self, mutant, status, note):
        of_file, of_tests = self.get_digests(mutant)
        with self.lock:
            self.known[mutant.key(), of_file] = (status, note, of_tests)
            with self.path.open("a") as file:
                file.write("\t".join([*mutant.key(), of_file, of_tests, status, note]) + "\n")


class EquivalentMutants:
    """The list of mutants that are equivalent to the source.

    An entry begins with `FILE: LINE`, the line being the text of the source without indentation, or `FILE#N: LINE`
    for the N-th of several equal lines. Indented lines below it have `change: ...`, at least one of them, and then
    `reason: ...`, which may go on in lines that are indented further; and so again. `#` begins a comment.
    """

    def __init__(self, path):
        self.listed = set()  # (file, line, repetition or null, change)
        entry, changes, is_reason = None, [], False
        for number, line in enumerate(path.read_text().split("\n") if path.exists() else [], 1):
            stripped = line.strip()
            if not stripped or line.startswith("#"):
                continue
            head = re.fullmatch(r"([\w/.]+)(?:#(\d+))?: (.*)", line)
            if head:
                entry, changes, is_reason = (head.group(1), head.group(3), head.group(2)), [], False
            elif entry and line.startswith("  change: "):
                changes.append(stripped.removeprefix("change: "))
                is_reason = False
            elif changes and line.startswith("  reason: "):
                self.listed.update((*entry, change) for change in changes)
                changes, is_reason = [], True
            elif not (is_reason and line.startswith("    ")):
                raise Failure(f"{path.name}:{number}: neither a `FILE: LINE` nor a change or a reason of one")
        self.unused = set(self.listed)

    def match(self, mutant):
        path, line_text, repetition, change = mutant.key()
        keys = {(path, line_text, None, change), (path, line_text, repetition, change)} & self.listed
        self.unused -= keys
        return bool(keys)


# ----------------------------------------------------------------------------------------------------- the run


def get_room(path):
    """The room of a source, or an empty string."""
    folder, _, rest = path.partition("/")
    return rest.partition("/")[0] if folder == "lumo" else ""


def collect_mutants(paths):
    mutants = []
    for path in paths:
        full = (ROOT / path).resolve()
        files = sorted(p for p in full.iterdir() if p.suffix in (".cpp", ".h")) if full.is_dir() else [full]
        for file in files:
            name = str(file.relative_to(ROOT))
            if not file.exists() or get_room(name) not in FOLDERS:
                raise Failure(f"{path}: no source of {' or '.join(f'lumo/{folder}' for folder in FOLDERS)}")
            mutants += make_mutants(name, file.read_text())
    return mutants


def arrange(mutants):
    """The workers take mutants from both ends, so one worker handles one file; headers, which take the longest,
    come last."""
    first_folder = get_room(mutants[0].path)

    def place(mutant):
        if mutant.path.endswith(".h"):
            return 1
        return 0 if get_room(mutant.path) == first_folder else 2

    return deque(sorted(mutants, key=place))


def try_all(mutants, results, jobs):
    """Tries the mutants without a result."""
    remaining = [mutant for mutant in mutants if not results.find(mutant)]
    if not remaining:
        return
    folders = sorted({get_room(mutant.path) for mutant in remaining})
    print(f"{len(remaining)} of {len(mutants)} mutants to try; building", file=sys.stderr)
    workers = [Worker(number, results.builds) for number in range(1, min(jobs, len(remaining)) + 1)]
    waiting = arrange(remaining)
    failures, stop, begin = [], threading.Event(), time.monotonic()

    def work(worker):
        try:
            worker.prepare(folders)
            worker.measure(folders)
            while not stop.is_set():
                try:
                    mutant = waiting.popleft() if worker.number % 2 else waiting.pop()
                except IndexError:
                    break
                status, note = worker.attempt(mutant)
                results.add(mutant, status, note)
                if status == "survived":
                    print(f"{mutant.path}:{mutant.line}: {mutant.change}: {mutant.line_text}", file=sys.stderr)
                done = len(remaining) - len(waiting)
                if done % 50 == 0:
                    print(f"{done} of {len(remaining)} after {time.monotonic() - begin:.0f} s", file=sys.stderr)
            worker.restore()
        except Exception as e:  # of a thread, to be told by the main one
            failures.append(e)
            stop.set()

    threads = [threading.Thread(target=work, args=(worker,)) for worker in workers]
    for thread in threads:
        thread.start()
    try:
        for thread in threads:
            thread.join()
    except KeyboardInterrupt:
        stop.set()
        print("stopping after the mutants that are being tried", file=sys.stderr)
        for thread in threads:
            thread.join()
        raise
    if failures:
        raise failures[0]


def report(mutants, results, equivalent):
    """Prints survivors and the table; returns whether the run succeeded."""
    table, is_good = {}, True
    for mutant in mutants:
        status, note = results.find(mutant)
        place = f"{mutant.path}:{mutant.line}: {mutant.change}: {mutant.line_text}"
        if equivalent.match(mutant):
            if status == "survived":
                status = "equivalent"
            else:
                print(f"listed as equivalent, but {status} ({note}): {place}")
                is_good = False
        elif status == "survived":
            print(f"survived: {place}")
            is_good = False
        counts = table.setdefault(mutant.path, dict.fromkeys(STATUSES, 0))
        counts[status] += 1
    print_table(table)
    return is_good


def print_table(table):
    total = {status: sum(counts[status] for counts in table.values()) for status in STATUSES}
    width = max(len(path) for path in [*table, "total"])
    print(f"{'':{width}}  mutants" + "".join(f"  {status:>13}" for status in STATUSES))
    for path, counts in [*table.items(), ("total", total)]:
        print(f"{path:{width}}  {sum(counts.values()):7}" + "".join(f"  {counts[s]:13}" for s in STATUSES))


def parse_arguments():
    description, _, rest = __doc__.partition("\n\n")
    parser = argparse.ArgumentParser(description=description, epilog=rest.partition("\n\n")[2],
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="*", metavar="PATH", default=[f"lumo/{folder}" for folder in FOLDERS])
    parser.add_argument("--list", action="store_true", help="print the mutants instead of trying them")
    parser.add_argument("--sample", type=int, metavar="N", help="try N mutants, chosen at random")
    parser.add_argument("--seed", type=int, default=1, help="what they are chosen by (default: 1)")
    parser.add_argument("--sanitize", action="store_true", help="try survivors with sanitizers, too")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="mutants tried at a time")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    all_mutants = collect_mutants(arguments.paths)
    mutants = all_mutants
    if arguments.sample is not None and arguments.sample < len(mutants):
        chosen = sorted(random.Random(arguments.seed).sample(range(len(mutants)), arguments.sample))
        mutants = [mutants[i] for i in chosen]
    if arguments.list:
        for mutant in mutants:
            print(f"{mutant.path}:{mutant.line}: {mutant.change}: {mutant.line_text}")
        return 0

    equivalent = EquivalentMutants(EQUIVALENT)
    OUT.mkdir(parents=True, exist_ok=True)
    results = Results(list(BUILDS) if arguments.sanitize else ["plain"])
    try_all(mutants, results, arguments.jobs)
    is_good = report(mutants, results, equivalent)
    for mutant in collect_mutants(f"lumo/{folder}" for folder in FOLDERS):
        equivalent.match(mutant)
    for path, line, _, change in sorted(equivalent.unused):
        print(f"{EQUIVALENT.name}: no mutant fits: {path}: {line}: {change}")
    return 0 if is_good and not equivalent.unused else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as failure:
        sys.exit(f"mutate.py: {failure}")
    except KeyboardInterrupt:
        sys.exit(130)
