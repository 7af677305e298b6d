#!/usr/bin/env python3
"""Times whole conversations: z3 alone, and lumo in front of z3.

    bench/conversations.py LUMO [--repetitions N] [--branches N] [--steps N]

Prints a row for each kind of conversation, with seconds of processor time, medians of the repetitions, which alternate:

client     what yosys-smtbmc says when it checks the circuits of examples/circuits/, recorded once and replayed
explore    symbolic execution as a generator makes it up; see make_exploration
again      each constant is used again after the query that it was taken away for, so every step is restored

and at last which part of the time of `again` lumo itself takes: the rest is that of z3 on what lumo sent, replayed.
Answers of both sides are compared. Needs z3; yosys too, or `client` is left out.
"""

import argparse
import pathlib
import random
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile

CIRCUITS = pathlib.Path(__file__).resolve().parents[1] / "examples" / "circuits"
HEAD = "(set-option :produce-models true)\n(set-logic QF_BV)\n"


def make_exploration(num_branches, seed=1):
    """Symbolic execution of a made-up program that reads two words of 16 bits before each branch.

    The program scales each word by an odd constant, adds an offset, combines the two by one operation, and compares
    the result with a bound that depends on a state of 16 bits. Each fourth branch instead tests a bit of a multiple of
    the state, which is used by all branches. Both sides of each branch are asked for, and one that is possible is
    entered; now and then the exploration goes back some branches. No input of a branch is used again: this is the case that
    elimination is made for, and programs that use their inputs more than once gain less.
    """
    numbers = random.Random(seed)
    text = [HEAD, "(declare-const s0 (_ BitVec 16))\n"]
    state, level = "s0", 0
    for i in range(num_branches):
        a, b = f"a{i}", f"b{i}"
        text.append(f"(push 1)\n(declare-const {a} (_ BitVec 16))\n(declare-const {b} (_ BitVec 16))\n")
        left = f"(bvadd (bvmul {a} #x{2 * numbers.randrange(2 ** 15) + 1:04x}) #x{numbers.randrange(2 ** 16):04x})"
        right = f"(bvmul (bvxor {b} {state}) #x{2 * numbers.randrange(2 ** 15) + 1:04x})"
        operation = numbers.choice(["bvadd", "bvsub", "bvxor"])
        order = numbers.choice(["bvult", "bvslt", "bvule", "="])
        condition = f"({order} ({operation} {left} {right}) (bvor {state} #x0100))"
        if i % 4 == 3:
            place = numbers.randrange(16)
            condition = f"(= ((_ extract {place} {place}) (bvmul {state} #x{numbers.randrange(2 ** 16):04x})) #b1)"
        text.append(f"(push 1)\n(assert {condition})\n(check-sat)\n(pop 1)\n")
        text.append(f"(push 1)\n(assert (not {condition}))\n(check-sat)\n(pop 1)\n")
        side = condition if numbers.random() < 0.5 else f"(not {condition})"
        text.append(f"(assert {side})\n")
        level += 1
        if numbers.random() < 0.1:
            back = numbers.randrange(1, min(level, 5) + 1)
            text.append(f"(pop {back})\n")
            level -= back
        if numbers.random() < 0.2:
            text.append(f"(assert (bvult (bvand {state} #x{numbers.randrange(2 ** 16):04x}) #xff00))\n(check-sat)\n")
    return "".join(text)


def make_repeated_uses(num_rounds):
    """Each round asserts an order of two sums, asks, and then asserts something else about their inputs, and asks."""
    text = [HEAD]
    for i in range(num_rounds):
        x, y = f"x{i}", f"y{i}"
        text.append(f"(declare-const {x} (_ BitVec 16))\n(declare-const {y} (_ BitVec 16))\n"
                    f"(assert (bvult (bvadd {x} #x0003) (bvxor {y} #x{i % 65536:04x})))\n(check-sat)\n"
                    f"(assert (bvule {x} (bvadd {y} #x0100)))\n(check-sat)\n")
    return "".join(text)


def record_client(folder, steps):
    """The commands of yosys-smtbmc for each circuit, checked from the start and by induction."""
    for circuit in sorted(CIRCUITS.glob("*.v")):
        name = circuit.stem
        commands = (f"read_verilog -formal {circuit}; prep -top {name}; async2sync; dffunmap; "
                    f"write_smt2 -stbv -wires {name}.smt2")
        subprocess.run(["yosys", "-q", "-p", commands], cwd=folder, check=True)
        for mode in ([], ["-i"]):
            record = folder / f"{name}{''.join(mode)}-talk.smt2"
            subprocess.run(["yosys-smtbmc", "-s", "z3", "-t", str(steps), "--noprogress", "--dump-smt2", record, *mode,
                            f"{name}.smt2"], cwd=folder, check=False, stdout=subprocess.DEVNULL)
            yield record.read_text(encoding="utf-8")


def run(command, text):
    """The words sat, unsat and unknown that a command answers, and its seconds of processor time."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    output = subprocess.run(command, input=text, stdout=subprocess.PIPE, text=True, check=False).stdout
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return [line for line in output.splitlines() if line in ("sat", "unsat", "unknown")], seconds


def compare(name, texts, lumo, repetitions):
    alone, behind, num_queries = [], [], 0
    for _ in range(repetitions):
        alone.append(0)
        behind.append(0)
        num_queries = 0
        for text in texts:
            expected, seconds = run(["z3", "-in"], text)
            alone[-1] += seconds
            found, seconds = run([lumo, "shell", "--solver", "z3 -in"], text)
            behind[-1] += seconds
            num_queries += len(expected)
            if found != expected:
                raise SystemExit(f"{name}: lumo answers otherwise than z3 alone")
    alone, behind = statistics.median(alone), statistics.median(behind)
    print(f"{name:8} {num_queries:8} {alone:10.3f} {behind:10.3f} {behind / alone:8.3f}", flush=True)


def measure_share(text, lumo, repetitions, folder):
    """The part of lumo's processor time in that of lumo and its solver."""
    sent = folder / "sent.smt2"
    run([lumo, "shell", "--solver", f"tee '{sent}' | z3 -in"], text)
    shares = []
    for _ in range(repetitions):
        _, total = run([lumo, "shell", "--solver", "z3 -in"], text)
        _, solver = run(["z3", "-in"], sent.read_text(encoding="utf-8"))
        shares.append(1 - solver / total)
    return statistics.median(shares)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("lumo", help="the program")
    parser.add_argument("--repetitions", type=int, default=3)
    parser.add_argument("--branches", type=int, default=200, help="of the exploration")
    parser.add_argument("--steps", type=int, default=16, help="of the client's model checking")
    options = parser.parse_args()
    if shutil.which("z3") is None:
        sys.exit("conversations.py: there is no z3")
    lumo = str(pathlib.Path(options.lumo).resolve())

    print(f"{'':8} {'queries':>8} {'z3':>10} {'with lumo':>10} {'ratio':>8}")
    again = make_repeated_uses(options.branches)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        if shutil.which("yosys-smtbmc") is not None:
            compare("client", list(record_client(folder, options.steps)), lumo, options.repetitions)
        compare("explore", [make_exploration(options.branches)], lumo, options.repetitions)
        compare("again", [again], lumo, options.repetitions)
        print(f"lumo's part of the time of again: {measure_share(again, lumo, options.repetitions, folder):.3f}")


if __name__ == "__main__":
    main()
