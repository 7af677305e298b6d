#!/usr/bin/env python3
"""A model checker, yosys-smtbmc, that talks to lumo as to a solver.

Each circuit of examples/circuits/ is checked up to a number of steps and by induction: by z3 alone, and by lumo in front
of z3, of cvc5 and of the solver within it; once with bit-vectors only, and once with a declared sort and functions for
the states, as yosys writes them without an option. Verdicts and the lengths of counterexamples must be the same, and z3 must
find that the circuit fails in the same step along each trace that lumo made. Ends with status 77 if yosys or z3 is
missing.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

CIRCUITS = pathlib.Path(__file__).resolve().parents[2] / "examples" / "circuits"
SKIPPED = 77
STEPS = 8
SECONDS = 300


def run(command, folder, path=None):
    environment = dict(os.environ)
    if path is not None:
        environment["PATH"] = f"{path}:{environment['PATH']}"
    done = subprocess.run(command, cwd=folder, env=environment, timeout=SECONDS, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return done.returncode, done.stdout


def write_smt2(circuit, name, option, folder):
    commands = (f"read_verilog -formal {circuit}; prep -top {circuit.stem}; async2sync; dffunmap; "
                f"write_smt2 {option} -wires {name}.smt2")
    status, output = run(["yosys", "-q", "-p", commands], folder)
    if status != 0:
        raise SystemExit(f"yosys cannot read {circuit.name}:\n{output}")


def make_wrapper(folder, lumo, solver):
    """A folder with a program that is called z3 and is lumo: yosys-smtbmc knows solvers by their names."""
    folder.mkdir()
    program = folder / "z3"
    option = f" --solver '{solver}'" if solver else ""
    program.write_text(f"#!/bin/sh\nexec '{lumo}' shell{option}\n", encoding="utf-8")
    program.chmod(0o755)
    return folder


def check(name, folder, options, path=None):
    """The verdict of a run, and the step in which it was reached."""
    command = ["yosys-smtbmc", "-s", "z3", "-t", str(STEPS), "--noprogress", *options, f"{name}.smt2"]
    status, output = run(command, folder, path)
    verdict = re.search(r"Status: (\w+)", output)
    steps = re.findall(r"(?:assertions|induction) in step (\d+)", output)
    if verdict is None or not steps:
        return f"status {status} and no verdict:\n{output}", None
    return verdict.group(1), int(steps[-1])


def compare(name, folder, wrappers):
    faults = []
    for mode in ([], ["-i"]):
        expected = check(name, folder, mode)
        print(name, *mode, *expected)
        for title, path in wrappers.items():
            trace = f"{name}-{title}.smtc"
            found = check(name, folder, [*mode, "--dump-smtc", trace], path)
            if found != expected:
                faults.append(f"{name} {mode}: {title} found {found}, z3 alone {expected}")
            elif not mode and found[0] == "FAILED" and check(name, folder, ["--smtc", trace]) != expected:
                faults.append(f"{name}: z3 does not accept the trace of {title}")
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--lumo", required=True)
    lumo = pathlib.Path(parser.parse_args().lumo).resolve()
    z3, cvc5 = shutil.which("z3"), shutil.which("cvc5")
    if z3 is None or shutil.which("yosys-smtbmc") is None:
        print("yosys or z3 is missing")
        return SKIPPED
    solvers = {"lumo-z3": f"{z3} -in", "lumo": None}
    if cvc5 is not None:
        solvers["lumo-cvc5"] = f"{cvc5} --incremental"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        wrappers = {title: make_wrapper(folder / title, lumo, solver) for title, solver in solvers.items()}
        faults = []
        for circuit in sorted(CIRCUITS.glob("*.v")):
            for suffix, option in (("", "-stbv"), ("-functions", "")):
                write_smt2(circuit, circuit.stem + suffix, option, folder)
                faults += compare(circuit.stem + suffix, folder, wrappers)
    print(*faults, sep="\n")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
