#!/usr/bin/env python3
"""What elimination is good for: runs a folder of scripts with solvers alone and behind lumo.

    bench/effect.py LUMO FOLDER --solver COMMAND [--solver COMMAND]... [--limit SECONDS] [--tsv FILE] [--plot FILE]

Each script has one query. Each is given to each solver in its standard input, and to `lumo solve --solver COMMAND`.
Prints a line for each solver:

    files     how many scripts the solver reads alone
    answered  alone and behind lumo, within the limit of wall time
    won, lost answered only behind lumo, and only alone
    seconds   of processor time, alone and behind lumo; a run that reaches the limit counts with the limit
    left      applications that elimination leaves, in percent

--tsv writes a line for each file and solver, --plot a scatter plot of the times (SVG, by gnuplot). It ends with an error
if two answers to one script contradict each other.
"""

import argparse
import dataclasses
import json
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys

SMALLEST = 0.001  # seconds, for logarithmic axes


@dataclasses.dataclass
class Run:
    answer: str
    seconds: float
    output: str = ""


@dataclasses.dataclass
class Pair:
    file: str
    before: int
    after: int
    alone: Run
    behind: Run


def run(command, file, limit):
    """What a command line prints; it is ended after the limit, with what it has started."""
    with open(file, "rb") as script, subprocess.Popen(
            ["/bin/sh", "-c", command], stdin=script, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            start_new_session=True) as process:
        try:
            return process.communicate(timeout=limit)[0].decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGTERM)
            process.communicate()
            return None


def measure(command, file, limit):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    output = run(command, file, limit)
    if output is None:
        return Run("late", limit)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    answer = next((word for word in output.split() if word in ("sat", "unsat", "unknown")), "none")
    return Run(answer, seconds, output)


def count_applications(lumo, file):
    """Before and after elimination, or nothing if lumo refuses the script."""
    done = subprocess.run([lumo, "solve", "--json", "--solver", "echo unknown", file], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True, check=False)
    if done.returncode != 0:
        return None
    statistics = json.loads(done.stdout)["stats"]
    return statistics["before"]["applications"], statistics["after"]["applications"]


def compare(lumo, solver, files, limit):
    quoted = json.dumps(solver)
    for file in files:
        counts = count_applications(lumo, file)
        if counts is None:
            print(f"left out, since lumo refuses it: {file}", file=sys.stderr)
            continue
        alone = measure(solver, file, limit)
        if alone.answer == "none" and "error" in alone.output:
            continue  # The solver does not read the script.
        behind = measure(f"'{lumo}' solve --solver {quoted} '{file}'", file, limit)
        if {alone.answer, behind.answer} == {"sat", "unsat"}:
            raise SystemExit(f"{file}: {solver} answers {alone.answer} alone and {behind.answer} behind lumo")
        yield Pair(str(file), counts[0], counts[1], alone, behind)


def is_answered(one):
    return one.answer in ("sat", "unsat")


def print_sum(solver, pairs):
    alone = sum(is_answered(pair.alone) for pair in pairs)
    behind = sum(is_answered(pair.behind) for pair in pairs)
    won = sum(is_answered(pair.behind) and not is_answered(pair.alone) for pair in pairs)
    lost = sum(is_answered(pair.alone) and not is_answered(pair.behind) for pair in pairs)
    seconds = [sum(pair.alone.seconds for pair in pairs), sum(pair.behind.seconds for pair in pairs)]
    left = 100 * sum(pair.after for pair in pairs) / max(1, sum(pair.before for pair in pairs))
    print(f"{solver:32} {len(pairs):5} {alone:8} {behind:6} {won:4} {lost:4} {seconds[0]:9.2f} {seconds[1]:9.2f} "
          f"{left:5.1f} %", flush=True)


def write_table(file, results):
    with open(file, "w", encoding="utf-8") as out:
        out.write("solver\tfile\tbefore\tafter\tanswer alone\tbehind\tseconds alone\tbehind\n")
        for solver, pairs in results.items():
            for pair in pairs:
                out.write(f"{solver}\t{pathlib.Path(pair.file).name}\t{pair.before}\t{pair.after}\t"
                          f"{pair.alone.answer}\t{pair.behind.answer}\t"
                          f"{pair.alone.seconds:.3f}\t{pair.behind.seconds:.3f}\n")


def draw(file, results):
    """A point for each script and solver: its time alone to the right, behind lumo upwards."""
    if shutil.which("gnuplot") is None:
        raise SystemExit("effect.py: there is no gnuplot")
    commands = [f"set terminal svg size 560,520 dynamic background 'white'; set output {json.dumps(str(file))}",
                "set logscale xy; set key left top; set grid; set size square",
                "set xlabel 'seconds, the solver alone'; set ylabel 'seconds, the solver behind lumo'"]
    plots = ["x with lines lc rgb '#888888' notitle"]
    for i, (solver, pairs) in enumerate(results.items()):
        points = "\n".join(f"{max(SMALLEST, pair.alone.seconds)} {max(SMALLEST, pair.behind.seconds)}"
                           for pair in pairs)
        commands.append(f"$solver{i} << END\n{points}\nEND")
        plots.append(f"$solver{i} with points pt {5 + 2 * i} ps 0.6 title {json.dumps(solver)} noenhanced")
    commands.append("plot " + ", ".join(plots))
    subprocess.run(["gnuplot"], input="\n".join(commands), text=True, check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("lumo", help="the program")
    parser.add_argument("folder", type=pathlib.Path, help="a folder of scripts")
    parser.add_argument("--solver", action="append", required=True, metavar="COMMAND")
    parser.add_argument("--limit", type=float, default=20, metavar="SECONDS")
    parser.add_argument("--tsv", metavar="FILE", help="write a line for each file and solver")
    parser.add_argument("--plot", metavar="FILE", help="draw a scatter plot (SVG)")
    options = parser.parse_args()
    lumo = str(pathlib.Path(options.lumo).resolve())
    files = sorted(options.folder.glob("*.smt2"))

    print(f"{'':32} {'':>5} {'answered':>15} {'':>9} {'seconds':>19}")
    print(f"{'solver':32} {'files':>5} {'alone':>8} {'behind':>6} {'won':>4} {'lost':>4} {'alone':>9} {'behind':>9} "
          f"{'left':>7}")
    results = {}
    for solver in options.solver:
        results[solver] = list(compare(lumo, solver, files, options.limit))
        print_sum(solver, results[solver])
    if options.tsv:
        write_table(options.tsv, results)
    if options.plot:
        draw(options.plot, results)


if __name__ == "__main__":
    main()
